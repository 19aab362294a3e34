// CJxDirectory: the entries of a directory whose names match a pattern.
//
//   kdx::CJxDirectory directory;
//   if (directory.Open("/var/dumps", "KDXSQLDump_*.txt", true).IsErrorSet()) ...
//   kdx::SJxDirEntry entry;
//   bool end = false;
//   while (!directory.GetEntry(&entry, end).IsErrorSet() && !end) use(entry.name);
//
// Thread rule: one thread uses an object at a time. Failure rule: a failed operation gives the system's error number.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_DIRECTORY_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_DIRECTORY_H_

#include <memory>

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"
#include "kdxcommon/inhouse/jxutils/wildcard.h"

namespace kdx {

class DirectoryStream;

/// One entry of a directory.
struct SJxDirEntry {
  CJxString name;  ///< without the directory
};

class KDX_EXPORT CJxDirectory {
 public:
  CJxDirectory();
  ~CJxDirectory();
  CJxDirectory(const CJxDirectory&) = delete;
  CJxDirectory& operator=(const CJxDirectory&) = delete;

  /// Opens `directory` (UTF-8) for the names that match `pattern`: `*` is any run of bytes, every other byte is itself,
  /// and the whole name must match, on every system. With `filesOnly` only regular files count.
  CJxError Open(const char* directory, const char* pattern, bool filesOnly);

  /// Fills `*entry` with the next matching entry, in the system's own order. At the end sets `end` and leaves `*entry`;
  /// on failure gives the error and leaves both. Reads each entry of the directory once and asks nothing more about it.
  CJxError GetEntry(SJxDirEntry* entry, bool& end);

  /// Closes the directory; an error when none is open.
  CJxError Close();

 private:
  std::unique_ptr<DirectoryStream> stream_;
  Wildcard pattern_;
  bool filesOnly_ = true;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_DIRECTORY_H_
