// CJxDirectory: the entries of a directory whose names match a pattern.
//
//   kdx::CJxDirectory directory;
//   if (directory.Open("/var/dumps", "KDXSQLDump_*.txt", true).IsErrorSet()) ...
//   kdx::SJxDirEntry entry;
//   bool end = false;
//   while (!directory.GetEntry(&entry, end).IsErrorSet() && !end) use(entry.name);
//
// Thread rule: one thread uses an object at a time. Failure rule: a failed operation gives the system's error number,
// or CJxError::kNoSystemCode where the system has none. Open and GetEntry may throw what an allocation throws.

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
  CJxString name;  ///< without the directory, in the bytes that the system has for it
};

/// One reading of a directory. Closes it at its end.
class KDX_EXPORT CJxDirectory {
 public:
  /// Nothing open.
  CJxDirectory();
  ~CJxDirectory();  ///< closes what is open
  CJxDirectory(const CJxDirectory&) = delete;
  CJxDirectory& operator=(const CJxDirectory&) = delete;

  /// Opens `directory` (UTF-8) for the names that match `pattern`, closing first what is open: `*` is any run of bytes,
  /// every other byte is itself, and the whole name must match, on every system; null matches no name. With `filesOnly`
  /// only regular files count, otherwise every entry that the system has, "." and ".." too. After a failure nothing is
  /// open.
  CJxError Open(const char* directory, const char* pattern, bool filesOnly);

  /// Fills `*entry` with the next matching entry, in the system's own order, and leaves `end`. At the end sets `end`
  /// and leaves `*entry`. On failure gives the error and leaves both; so it does when nothing is open or `entry` is
  /// null. Reads each entry of the directory once; a name that came or went since Open may be told or not.
  CJxError GetEntry(SJxDirEntry* entry, bool& end);

  /// Closes the directory, so that the next GetEntry fails; an error when none is open.
  CJxError Close();

 private:
  std::unique_ptr<os::DirectoryStream> stream_;
  Wildcard pattern_;
  bool filesOnly_ = true;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_DIRECTORY_H_
