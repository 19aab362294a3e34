// A job's id: a signed 64-bit number.
//
//   const bool hasJob = kdx::getJobIDForCurrentThread() != kdx::UNDEFINED_JOB_ID;

#ifndef KDXCOMMON_BASE_JOB_ID_H_
#define KDXCOMMON_BASE_JOB_ID_H_

#include <cstdint>

namespace kdx {

/// The value of an id that means no job.
inline constexpr std::int64_t UNDEFINED_JOB_ID = -123456;

}  // namespace kdx

#endif  // KDXCOMMON_BASE_JOB_ID_H_
