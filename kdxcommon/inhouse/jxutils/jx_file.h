// CJxFile: a file's name and, while it is open, the file itself.
//
//   kdx::CJxFile file;
//   if (file.Open(path, kdx::kOpenReadWrite | kdx::kOpenCreate | kdx::kOpenTruncate, kdx::kModeWrite).IsErrorSet()) ...
//   std::uint32_t written = 0;
//   kdx::CJxError failed = file.Write(text.data(), size, &written);
//
// Thread rule: one thread uses an object at a time. Failure rule: a failed operation gives the system's error number,
// or CJxError::kNoSystemCode where the system has none. Only copying a name may throw, what an allocation throws.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

/// A file of the operating system. Nothing throws but an allocation.
class KDX_EXPORT CJxFile {
 public:
  /// No name, and nothing open.
  CJxFile() = default;
  /// A copy takes over the name. What the source has open stays the source's.
  CJxFile(const CJxFile& other);
  /// As the copy; what this object has open is closed, unless it is assigned to itself.
  CJxFile& operator=(const CJxFile& other);
  /// Closes what is open, without a word about failure.
  ~CJxFile();

  /// Opens the file `name` (UTF-8), closing first what is open. Flags and mode are those of `OperatingSystem::_open`,
  /// null is a bad argument. After a failure nothing is open. The name that `GetName` gives does not change.
  CJxError Open(const char* name, int flags, int mode);

  /// Writes `length` bytes, in as many steps as the system takes. `*written`, unless null, holds how many the system
  /// took, also after a failure: 0 when nothing is open. A system that takes 0 bytes of what is left has failed.
  CJxError Write(const void* data, std::uint32_t length, std::uint32_t* written);

  /// Closes the file. An error when none is open, or when the system could not keep what was written; nothing is open
  /// afterwards in either case.
  CJxError Close();

  /// The stored name, which a derived class sets; empty until then. Valid until the next change of the name.
  const char* GetName() const { return name_.c_str(); }

  /// Times of the file `path`, links followed, in seconds since 1970-01-01 00:00:00 UTC: last change of its content
  /// (which a rename keeps), last read, and last change of its attributes (POSIX) or creation (Windows). They are those
  /// of `OperatingSystem::_stat64`. A null pointer takes nothing. On failure all three stay untouched.
  static CJxError GetTimes(const char* path, std::int64_t* modified, std::int64_t* accessed, std::int64_t* attributes);

 protected:
  /// Stores what `GetName` gives; what is open stays open.
  void SetName(const CJxString& name) { name_ = name; }

 private:
  static constexpr int kClosed = -1;

  CJxString name_;
  int descriptor_ = kClosed;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_
