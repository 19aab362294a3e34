// CJxFile: a file's name and, while it is open, the file itself.
//
//   kdx::CJxFile file;
//   if (file.Open(path, kdx::kOpenReadWrite | kdx::kOpenCreate | kdx::kOpenTruncate, kdx::kModeWrite).IsErrorSet()) ...
//   std::uint32_t written = 0;
//   kdx::CJxError failed = file.Write(text.data(), size, &written);
//
// Thread rule: one thread uses an object at a time. Failure rule: a failed operation gives the system's error number.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

class KDX_EXPORT CJxFile {
 public:
  CJxFile() = default;
  /// A copy takes over the name. What the source has open stays the source's.
  CJxFile(const CJxFile& other);
  CJxFile& operator=(const CJxFile& other);  ///< closes what this object has open
  ~CJxFile();                                ///< closes what is open

  /// Opens the file `name` (UTF-8), closing first what is open. Flags and mode are those of `OperatingSystem::_open`.
  /// The name that `GetName` gives does not change.
  CJxError Open(const char* name, int flags, int mode);

  /// Writes `length` bytes. `*written` holds how many reached the system, also after a failure.
  CJxError Write(const void* data, std::uint32_t length, std::uint32_t* written);

  /// Closes the file. An error when none is open, or when the system could not keep what was written.
  CJxError Close();

  const char* GetName() const { return name_.c_str(); }

  /// Times of the file `path`, in seconds since 1970-01-01 UTC: last change of its content (which a rename keeps), last
  /// read, last change of its attributes. On failure all three stay untouched.
  static CJxError GetTimes(const char* path, std::int64_t* modified, std::int64_t* accessed, std::int64_t* attributes);

 protected:
  void SetName(const CJxString& name) { name_ = name; }

 private:
  static constexpr int kClosed = -1;

  CJxString name_;
  int descriptor_ = kClosed;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_FILE_H_
