// How the program ends.

#ifndef KDXCOMMON_EXAMPLES_FAILURE_H_
#define KDXCOMMON_EXAMPLES_FAILURE_H_

#include <stdexcept>
#include <string>

namespace collect_job {

/// The exit statuses. `--help` lists them.
enum ExitStatus : int {
  kDone = 0,
  kUnexpected = 1,
  kBadCommandLine = 2,
  kUnreadableInput = 3,
  kInvalidText = 4,
  kCannotWrite = 5,
  kRefusedJob = 6,
  kCollectionOff = 7,
  kDumpFailed = 8,
  kInputChanged = 9,
};

/// Ends the program with a status and a line that says why.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& reason) : std::runtime_error(reason), status_(status) {}
  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace collect_job

#endif  // KDXCOMMON_EXAMPLES_FAILURE_H_
