// Internal: a lock on a file for a scope. If the file can't be locked, the work in the scope is done all the same.

#ifndef KDXCOMMON_SINKS_FILE_LOCK_H_
#define KDXCOMMON_SINKS_FILE_LOCK_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx {

class FileLock {
 public:
  FileLock(os::OperatingSystem& system, int descriptor, bool wanted)
      : system_(system), descriptor_(descriptor), locked_(wanted && system.LockFile(descriptor)) {}
  ~FileLock() {
    if (locked_) system_.UnlockFile(descriptor_);
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  bool locked() const { return locked_; }

 private:
  os::OperatingSystem& system_;
  int descriptor_;
  bool locked_;
};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_FILE_LOCK_H_
