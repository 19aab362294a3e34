// Internal: one reading of a directory, out of which any number of patterns are listed and deleted. It logs as
// `CDumpFile::getFilesOfPattern` and `CDumpFile::delFilesOfPattern` do, which are a reading for one pattern each.
//
//   kdx::DirectoryReading reading(directory, "KDXSQLDump_*");
//   std::vector<kdx::CJxString> files;
//   if (!reading.list("KDXSQLDump_SC_7_JOB_*_*.txt", files).IsErrorSet()) reading.deleteFiles(oneOfThem);
//
// A file that came after the reading isn't found; one that went is still found, and deleting it fails. Thread safety:
// not safe for concurrent use of one object. Throws only std::bad_alloc.

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
  /// Of the regular files in `directory` that match `pattern`. The directory is read by the first call below; null is
  /// the empty name, which no directory has.
  DirectoryReading(const char* directory, const CJxString& pattern) : directory_(directory), pattern_(pattern) {}

  /// Adds the names that match to `files`, in the directory's order. Returns the error of a directory that can't be
  /// opened, with `files` unchanged, or of one that can't be read to its end, with the names found so far.
  CJxError list(const CJxString& pattern, std::vector<CJxString>& files);

  /// Deletes the files that match, in the directory's order; they are no longer found afterwards. A file that can't be
  /// deleted is reported in the log alone. Returns the same errors; what was found so far is deleted.
  CJxError deleteFiles(const CJxString& pattern);

  /// Does that for each pattern. A pattern that names a job must be narrower than `covering` and is looked up among the
  /// files of that job, so that many jobs cost no more than one pass over the names.
  void deleteFiles(const CJxString& covering, const std::vector<CJxString>& patterns);

 private:
  using Positions = std::vector<std::size_t>;

  /// A file under a job that its name holds.
  struct JobFile {
    std::int64_t job;
    std::size_t position;
    auto operator<=>(const JobFile&) const = default;
  };

  void read();
  std::size_t count() const { return starts_.size(); }
  string_view name(std::size_t position) const;
  Positions matches(const CJxString& pattern) const;
  std::vector<JobFile> byJob(const Positions& files) const;
  CJxError deleteFound(const CJxString& pattern, const Positions& files);

  CJxString directory_;
  CJxString pattern_;
  bool isRead_ = false;
  CJxError openError_;
  CJxError readError_;
  string names_;                     // one behind the other, each with a NUL
  std::vector<std::size_t> starts_;  // where each begins
  Positions failed_;                 // of failed dumps, so that nobody looks for these among all names
  std::vector<bool> deleted_;
};

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DIRECTORY_READING_H_
