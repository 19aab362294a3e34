// CJxFile: a file's name and, while it is open, the file itself.
//
//   kdx::CJxFile file;
//   if (file.Open(path, kdx::kOpenReadWrite | kdx::kOpenCreate | kdx::kOpenTruncate, kdx::kModeWrite).IsErrorSet()) ...
//   std::uint32_t written = 0;
//   kdx::CJxError failed = file.Write(text.data(), size, &written);
//
// Thread safety: not safe for concurrent use of one object; different objects are independent. A failed operation
// returns the system's error number, or CJxError::kNoSystemCode if there is none. Throws only std::bad_alloc, from an
// operation that copies a name.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

/// A file of the operating system.
class KDX_EXPORT CJxFile {
 public:
  /// No name and no open file.
  CJxFile() = default;
  /// Copies the name. An open file remains with the source.
  CJxFile(const CJxFile& other);
  /// Copies the name and closes this object's open file. Self-assignment is a no-op.
  CJxFile& operator=(const CJxFile& other);
  /// Closes an open file and ignores an error.
  ~CJxFile();

  /// Opens the file `name` (UTF-8) after closing an open file. Flags and mode are those of `OperatingSystem::_open`; a
  /// null `name` is an invalid argument. After a failure no file is open. `GetName` is unchanged.
  CJxError Open(const char* name, int flags, int mode);

  /// Writes `length` bytes with as many system calls as necessary. Sets `*written`, unless it is null, to the number of
  /// bytes that the system wrote, also after a failure; to 0 if no file is open. It is an error if the system writes 0
  /// of the remaining bytes.
  CJxError Write(const void* data, std::uint32_t length, std::uint32_t* written);

  /// Closes the file. Returns an error if no file is open, or if the system couldn't store the data; no file is open
  /// afterwards in either case.
  CJxError Close();

  /// Returns the stored name, which a derived class sets; empty until then. Valid until the name is changed.
  const char* GetName() const { return name_.c_str(); }

  /// Sets its arguments to the times of the file `path`, following links, in seconds since 1970-01-01 00:00:00 UTC:
  /// last change of its content (unchanged by a rename), last read, and last change of its attributes (POSIX) or
  /// creation (Windows). They come from the operating system (`OperatingSystem::_stat64`). A null pointer is ignored.
  /// On failure all three are unchanged.
  static CJxError GetTimes(const char* path, std::int64_t* modified, std::int64_t* accessed, std::int64_t* attributes);

 protected:
  /// Sets the name that `GetName` returns; an open file stays open.
  void SetName(const CJxString& name) { name_ = name; }

 private:
  static constexpr int kClosed = -1;

  CJxString name_;
  int descriptor_ = kClosed;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_
