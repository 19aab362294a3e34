// CDumpFile: the XML dump of a data-collection job, a file in the subclient's directory. It names the file, writes it
// as UTF-8, and keeps the directory within its limits: whole jobs are deleted, lowest job id first, and the running
// job's dumps are kept. The dumps of failed jobs have names and rules of their own.
//
//   kdx::CDumpFile dump(kdx::ITERATION_JOB, appIdPart1, appIdPart2, jobId, 0);
//   std::int64_t iteration = 0;
//   for (const kdx::wstring& text : texts) {
//     dump.setItrId(iteration++);
//     dump.dumpXMLBlob(text);                  // KDXSQLDump_SC_7_JOB_3456_ITR_0.txt, ..._ITR_1.txt
//   }
//   if (jobFailed) dump.markAsFailed();        // KDXSQLDump_SC_7_JOB_3456_ITR_0.txt.failed, ...
//
// Settings, section "KDX", read at each use: "nDUMPFILELIMIT" (default 1), how many dump files a subclient may keep of
// a job type, and "nDAYSTOKEEPFAILEDJOBDUMPFILES" (default 30), the greatest age of a failed dump in days.
//
// Each operation on a directory reads it once, when it first needs it, and works from that reading: a file that is
// created meanwhile is ignored, and a file that is deleted meanwhile is logged as not deleted.
//
// Thread safety: not safe for concurrent use of one object. Objects of the same directory see each other's files and
// are not synchronised. Errors: operations return false and log the reason under the job's id; a file that can't be
// deleted or renamed is only logged. Throws only std::bad_alloc.

#ifndef KDXCOMMON_DUMPFILE_DUMP_FILE_H_
#define KDXCOMMON_DUMPFILE_DUMP_FILE_H_

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/dumpfile/job_type.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_file.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"

namespace kdx {

class DirectoryReading;
class OperationLog;
enum class DumpRule : std::uint8_t;
struct DumpFate;
struct DumpSeries;
struct Pruning;

/// One dump: one subclient, one job, and for jobs that run in iterations one iteration.
class KDX_EXPORT CDumpFile : public CJxFile {
 public:
  /// A dump of the subclient that `appIdPart1` and `appIdPart2` identify, in the directory that the application manager
  /// has for it. The object is initialised if the job type is one of the two, the application's type has dumps (11, 13,
  /// 17, 19, 21, 29, 33, 34, 42, 43, 53, 600 to 607), the subclient's id is above 0, the job id at least 1, the
  /// iteration id at least -1 and the directory not empty. Otherwise one line of level -1 is logged, and every
  /// operation that accesses files logs "Object Not Initialized" at level -1, returns false and changes nothing.
  CDumpFile(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
            std::int64_t itrId);

  /// The same, in `directory` (UTF-8).
  CDumpFile(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
            std::int64_t itrId, const char* directory);

  /// A copy is initialised if its source is, and logs under the same job. An open file remains with the source.
  CDumpFile(const CDumpFile& other);
  CDumpFile& operator=(const CDumpFile& other);
  ~CDumpFile();

  // Identity. On an object that isn't initialised, each returns the value that the constructor had stored before it
  // failed.

  CJxString getBeginName() const { return beginName_; }  ///< the prefix of all dumps of the application's type
  ZQBkpLevel getJobType() const { return jobType_; }     ///< iteration or discovery
  std::uint32_t getScId() const { return scId_; }        ///< the subclient's own id
  std::int64_t getJobId() const { return dumpJobId_; }   ///< the job's id
  std::int64_t getItrId() const { return itrId_; }       ///< the iteration's id

  /// Sets the iteration id, without a check. The file's name changes at the next dump or `setName()`.
  void setItrId(std::int64_t itrId) { itrId_ = itrId; }

  /// Sets the file's name; the next dump or `setName()` replaces it.
  void setName(CJxString name) { SetName(name); }

  /// Sets the name from job and iteration. Returns false and leaves the name unchanged if the job type has no dumps.
  bool setName();

  /// Returns the directory, the system's path separator and the name. On an object that isn't initialised, logs a line
  /// and returns an empty text.
  string getFullName();

  // Settings.

  /// Returns how many dump files a subclient may keep of a job type. 0 disables dumping.
  std::uint32_t getDumpFileLimit();
  /// Returns the greatest age of a failed dump, in whole days.
  std::uint32_t getDaysToKeepFailedJobDumpFiles();

  // Writing.

  /// Writes `xml` as UTF-8 to the file of this job and iteration and replaces an earlier dump. First deletes dumps as
  /// `pruneDumpXMLBlob` and `pruneTimeExceededFailedDumpFiles` do. The file contains the text up to its first zero unit
  /// and nothing else; it is empty if the text is not valid UTF-16.
  ///
  /// Returns false if the object isn't initialised or the file can't be opened. A link, a FIFO or anything else but a
  /// regular file can't be opened and is left unchanged. With a limit of 0 writes nothing and returns true. A write or
  /// close that fails is only logged, and the call returns true; the bytes that were written remain. For a text whose
  /// UTF-8 form has 4 GiB or more the write fails before the file is opened, so that an earlier dump is kept.
  bool dumpXMLBlob(wstring xml);

  // Retention.

  /// Deletes dumps of other jobs of this subclient and job type, whole jobs, lowest job id first, until at most one
  /// file less than the limit remains or only this job's dumps are left. With a limit of 0 deletes every dump of the
  /// prefix in the directory, including this job's, but nothing if this subclient and job type have no dump. Never
  /// deletes failed dumps. Returns false and deletes nothing if the directory can't be read to its end.
  bool pruneDumpXMLBlob();

  /// Renames this job's dumps to their failed names and replaces older failed dumps of these names. First deletes
  /// failed dumps as `pruneFailedDumpXMLBlob` and `pruneTimeExceededFailedDumpFiles` do. Returns true also if the job
  /// has no dump. Returns false and deletes or renames nothing if the directory can't be read to its end.
  bool markAsFailed();

  /// Deletes all failed dumps of each other job that has a failed dump of this subclient and job type, including that
  /// job's failed dumps of any other subclient and job type of the prefix. Returns false and deletes nothing if the
  /// directory can't be read to its end.
  bool pruneFailedDumpXMLBlob();

  /// Deletes failed dumps of this prefix, of any subclient and job type, that are older than the days limit (by their
  /// last change of content), together with all failed dumps of the same job. A file whose times can't be read counts
  /// as new, and a file dated a day or more ahead of the clock as too old. Returns false and deletes nothing if the
  /// directory can't be read to its end.
  bool pruneTimeExceededFailedDumpFiles();

  // The fate of each file and its reason (`DumpFate` in dump_directory.h). Each operation sets `fates` to all regular
  // files in the directory whose names begin with the prefix and an underscore, in the directory's order. Each returns
  // false and leaves `fates` unchanged if the object isn't initialised or the directory can't be read to its end.

  /// Explains what `dumpXMLBlob` would now delete, without deleting it. The rules are the same and log their decisions;
  /// only the deletions and their lines are left out. A dump of the name that would be written stays: only its content
  /// would be replaced.
  bool explainDumpXMLBlob(std::vector<DumpFate>& fates);
  /// Explains what `markAsFailed` would now delete and rename, without doing it.
  bool explainMarkAsFailed(std::vector<DumpFate>& fates);

  /// Deletes what `dumpXMLBlob` would delete, without writing a dump, and reports it.
  bool makeRoom(std::vector<DumpFate>& fates);
  /// Does the same as `markAsFailed()` and reports it.
  bool markAsFailed(std::vector<DumpFate>& fates);

  // This job's dumps in the directory; failed dumps are not counted.

  /// Sets `itrId` to the highest iteration id among this job's dumps, or to -1 if there is no dump or the call fails. A
  /// dump of a discovery job has no iteration and counts as 0. Returns false if the directory can't be read to its end.
  bool getLastItrIdUsedForDumping(std::int64_t& itrId);

  /// Adds the names of this job's dumps to `files`, by iteration id (0 for a discovery job), and replaces earlier
  /// entries of these ids. An id outside the range of `int` becomes the nearest limit. Returns false and leaves `files`
  /// unchanged if the directory can't be read to its end.
  bool getAllXmlDumpFilesCreated(std::map<int, CJxString>& files);

  // Directories. These operations log without a job id. `*` in a pattern matches any run of bytes; only regular files
  // match.

  /// Adds the names in `directory` that match to `files`, in the directory's order. If the directory can't be opened,
  /// returns the error and leaves `files` unchanged; if it can't be read to its end, returns the error and adds the
  /// names found so far.
  static CJxError getFilesOfPattern(const char* directory, CJxString pattern, std::vector<CJxString>& files);

  /// Deletes the files in `directory` that match. Returns the error if the directory can't be opened or can't be read
  /// to its end; the files found before that are deleted. A file that can't be deleted is only logged.
  static CJxError delFilesOfPattern(const char* directory, CJxString pattern);

 private:
  bool init(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
            std::int64_t itrId, const char* directory);

  bool setBeginName(std::uint32_t applicationType);
  void setBeginName(CJxString beginName) { beginName_ = std::move(beginName); }
  void setJobType(ZQBkpLevel jobType) { jobType_ = jobType; }
  void setScId(std::uint32_t scId) { scId_ = scId; }
  void setJobId(std::int64_t jobId) { dumpJobId_ = jobId; }

  DumpSeries series() const;
  bool getSearchFilePattern(CJxString& pattern, bool thisJobOnly);
  CJxString parseJobIdFromFileName(CJxString name);
  CJxString parseItrIdFromFileName(CJxString name);
  // Append the patterns of the dumps to delete from `jobs`, and of the failed dumps of all `jobs`.
  void getDeleteFilePatterns(std::map<std::int64_t, int> jobs, std::int64_t filesToDelete,
                             std::vector<CJxString>& patterns);
  void getDeleteFilePatterns(std::map<std::int64_t, int> jobs, std::vector<CJxString>& patterns);

  // The retention rules. Each works on a reading that others may share.
  Pruning startPruning(bool rehearses = false) const;
  bool pruneDumps(Pruning& pruning);
  bool pruneFailedDumps(Pruning& pruning);
  bool pruneExpiredDumps(Pruning& pruning);

  // The operations that apply the rules, and their report.
  bool makeRoom(Pruning& pruning);
  bool makeRoom(Pruning pruning, std::vector<DumpFate>& fates);
  bool markAsFailed(Pruning& pruning);
  std::vector<DumpFate> fatesAfter(const Pruning& pruning, bool marks);

  // Steps that several operations share. Each logs its failure to the operation's log.
  bool checkInitialized(const OperationLog& log) const;
  bool getPattern(const OperationLog& log, CJxString& pattern, bool thisJobOnly);
  bool listFiles(const OperationLog& log, DirectoryReading& reading, const CJxString& pattern,
                 std::vector<CJxString>& files) const;
  bool listDumpsOfThisJob(const OperationLog& log, std::vector<CJxString>& files);
  bool listFailedDumps(const OperationLog& log, DirectoryReading& reading, const CJxString& pattern,
                       std::vector<CJxString>& files) const;
  std::map<std::int64_t, int> countOtherJobs(const OperationLog& log, const std::vector<CJxString>& files,
                                             const char* insertedEnding);
  bool deleteFailedJobs(const OperationLog& log, Pruning& pruning, DumpRule rule, std::map<std::int64_t, int> jobs);
  bool chooseDumpsToMark(const OperationLog& log, Pruning& pruning, std::vector<CJxString>& files);

  bool initialized_ = false;
  CJxString beginName_;
  ZQBkpLevel jobType_{};
  std::uint32_t scId_ = 0;
  std::int64_t dumpJobId_ = 0;
  std::int64_t itrId_ = 0;
  CJxString dumpDir_;
  EvEvent debug_;
};

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DUMP_FILE_H_
