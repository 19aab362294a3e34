// CJxDirectory: the entries of a directory whose names match a pattern.
//
//   kdx::CJxDirectory directory;
//   if (directory.Open("/var/dumps", "KDXSQLDump_*.txt", true).IsErrorSet()) ...
//   kdx::SJxDirEntry entry;
//   bool end = false;
//   while (!directory.GetEntry(&entry, end).IsErrorSet() && !end) use(entry.name);
//
// Thread safety: not safe for concurrent use of one object; different objects are independent. A failed operation
// returns the system's error number, or CJxError::kNoSystemCode if there is none. Open and GetEntry throw only
// std::bad_alloc; nothing else throws.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_DIRECTORY_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_DIRECTORY_H_

#include <memory>

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"
#include "kdxcommon/inhouse/jxutils/wildcard.h"

namespace kdx {

namespace os {
class DirectoryStream;
}

/// One entry of a directory.
struct SJxDirEntry {
  CJxString name;  ///< without the directory, byte for byte as the operating-system interface returns it
};

/// One reading of a directory.
class KDX_EXPORT CJxDirectory {
 public:
  /// No directory is open.
  CJxDirectory();
  ~CJxDirectory();  ///< closes an open directory
  CJxDirectory(const CJxDirectory&) = delete;
  CJxDirectory& operator=(const CJxDirectory&) = delete;

  /// Opens `directory` (UTF-8) for the names that match `pattern`, after closing an open directory. In `pattern` `*`
  /// matches any run of bytes, every other byte matches itself, and the whole name must match, on every system; a null
  /// `pattern` matches no name. With `filesOnly` only regular files match, otherwise every entry that the system
  /// returns, including "." and "..". After a failure no directory is open.
  CJxError Open(const char* directory, const char* pattern, bool filesOnly);

  /// Sets `*entry` to the next matching entry, in the system's order, and leaves `end` unchanged. At the end sets `end`
  /// to true and leaves `*entry` unchanged. Returns an error and leaves both unchanged if reading fails, no directory
  /// is open or `entry` is null. Each entry of the directory is read once; it is unspecified whether a name that was
  /// created or deleted since Open is returned.
  CJxError GetEntry(SJxDirEntry* entry, bool& end);

  /// Closes the directory, so that the next GetEntry fails. Returns an error if none is open.
  CJxError Close();

 private:
  std::unique_ptr<os::DirectoryStream> stream_;
  Wildcard pattern_;
  bool filesOnly_ = true;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_DIRECTORY_H_
