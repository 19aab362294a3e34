// The number of a job: 64 bits, signed.

#ifndef KDXCOMMON_BASE_JOB_ID_H_
#define KDXCOMMON_BASE_JOB_ID_H_

#include <cstdint>

namespace kdx {

/// No job.
inline constexpr std::int64_t UNDEFINED_JOB_ID = -123456;

}  // namespace kdx

#endif  // KDXCOMMON_BASE_JOB_ID_H_
