// Internal: one reading of a directory, from which the files of any number of patterns can be listed and deleted. It
// logs as `CDumpFile::getFilesOfPattern` and `CDumpFile::delFilesOfPattern`, which make a reading for one pattern each.
//
//   kdx::DirectoryReading reading(directory, "KDXSQLDump_*");
//   std::vector<kdx::CJxString> files;
//   if (!reading.list("KDXSQLDump_SC_7_JOB_*_*.txt", files).IsErrorSet()) reading.deleteFiles(oneOfThem);
//
// A file that is created after the reading isn't found. A file that is deleted after it is still found, and deleting it
// fails. Thread safety: not safe for concurrent use of one object. Throws only std::bad_alloc.

#ifndef KDXCOMMON_DUMPFILE_DIRECTORY_READING_H_
#define KDXCOMMON_DUMPFILE_DIRECTORY_READING_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

class DirectoryReading {
 public:
  /// A reading of the regular files in `directory` that match `pattern`. The first call below reads the directory. A
  /// null `directory` is the empty name, which no directory has.
  DirectoryReading(const char* directory, const CJxString& pattern) : directory_(directory), pattern_(pattern) {}

  /// Adds the names that match to `files`, in the directory's order. If the directory can't be opened, returns the
  /// error and leaves `files` unchanged; if it can't be read to its end, returns the error and adds the names found so
  /// far.
  CJxError list(const CJxString& pattern, std::vector<CJxString>& files);

  /// Deletes the files that match, in the directory's order; a deleted file is no longer found. A file that can't be
  /// deleted is only logged. Returns the same errors as `list`; the files found so far are deleted.
  CJxError deleteFiles(const CJxString& pattern);

  /// A file that matched a pattern: its position in the reading, and that of the pattern in its list.
  struct Choice {
    std::size_t position;
    std::size_t pattern;
  };

  /// Deletes the files that match each of `patterns`, in their order; errors are only logged. A pattern with a job id
  /// must match only names that `covering` matches; it is looked up among the files of that job, so that many jobs take
  /// no more than one pass over the names. Returns the files that matched. With `rehearses` nothing is deleted or
  /// logged, but a file that would be deleted counts as deleted from then on.
  std::vector<Choice> deleteFiles(const CJxString& covering, const std::vector<CJxString>& patterns, bool rehearses);

  /// The files of the reading, in the directory's order, once it was read.
  std::size_t count() const { return starts_.size(); }
  string_view name(std::size_t position) const;
  bool isDeleted(std::size_t position) const { return deleted_[position]; }

 private:
  using Positions = std::vector<std::size_t>;

  /// A file and a job id in its name.
  struct JobFile {
    std::int64_t job;
    std::size_t position;
    auto operator<=>(const JobFile&) const = default;
  };

  void read();
  Positions matches(const CJxString& pattern) const;
  Positions matches(const CJxString& pattern, const std::vector<JobFile>& files) const;
  std::vector<JobFile> byJob(const Positions& files) const;
  CJxError deleteFound(const CJxString& pattern, const Positions& files);

  CJxString directory_;
  CJxString pattern_;
  bool isRead_ = false;
  CJxError openError_;
  CJxError readError_;
  string names_;                     // one after the other, each with a NUL
  std::vector<std::size_t> starts_;  // the start of each name
  Positions failed_;                 // of failed dumps, so that these are found without a pass over all names
  std::vector<bool> deleted_;
};

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DIRECTORY_READING_H_
