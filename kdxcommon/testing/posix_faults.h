// Calls of the C library that fail as they do on a machine in trouble. The linker puts the test program's own functions
// in their places (cmake/KDXTests.cmake); without a fault they call the C library.

#ifndef KDXCOMMON_TESTING_POSIX_FAULTS_H_
#define KDXCOMMON_TESTING_POSIX_FAULTS_H_

#include <cstddef>
#include <string_view>

namespace kdx::testing {

/// The thread's next `times` calls of `call` fail with `error` or, if they report failures by a number, return `code`.
struct Fault {
  std::string_view call = {};
  int error = 0;
  int times = 0;
  int code = 0;
  std::size_t memory = 0;     // what `gethostbyname_r` needs if `code` is 0
  bool withoutTypes = false;  // the entries of directories
};
inline thread_local Fault fault;

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_POSIX_FAULTS_H_
