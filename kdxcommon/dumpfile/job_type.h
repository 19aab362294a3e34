// The job types that have dumps. Constants only: nothing fails or throws.
//
//   kdx::CDumpFile dump(kdx::DISCOVERY_JOB, appIdPart1, appIdPart2, jobId, 0);

#ifndef KDXCOMMON_DUMPFILE_JOB_TYPE_H_
#define KDXCOMMON_DUMPFILE_JOB_TYPE_H_

#include <cstdint>

namespace kdx {

/// The type of a job. Other values exist in the component; only these two have dumps.
enum ZQBkpLevel : std::uint32_t {
  ITERATION_JOB = 0x20000,  ///< one dump per job and iteration
  DISCOVERY_JOB = 0x40000,  ///< one dump per job
};

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_JOB_TYPE_H_
