// CDumpFile: the XML dump of a data-collection job, as a file of the subclient's directory. It names the file, writes
// it as UTF-8, and keeps the directory within its limits: whole jobs go, lowest job id first, and the running job's
// dumps stay. The dumps of a failed job take names of their own and follow rules of their own.
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
// a job type, and "nDAYSTOKEEPFAILEDJOBDUMPFILES" (default 30), how many days a failed dump may grow old.
//
// Each operation on a directory reads it once, at its first need, and works from that reading: a file that comes
// meanwhile is left alone, and one that goes meanwhile is logged as not deleted.
//
// Thread safety: not safe for concurrent use of one object. Objects of one directory see each other's files, and
// nothing keeps them from disturbing each other. Errors: operations return false and log the reason under the job's id;
// a file that can't be deleted or renamed is reported in the log alone. Throws only std::bad_alloc.

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
struct DumpSeries;

/// One dump: one subclient, one job, and for jobs that run in iterations one iteration.
class KDX_EXPORT CDumpFile : public CJxFile {
 public:
  /// Makes a dump of the subclient that `appIdPart1` and `appIdPart2` stand for, in the directory that the application
  /// manager has for it. The object is initialised if the job type is one of the two, the application's type leaves
  /// dumps (11, 13, 17, 19, 21, 29, 33, 34, 42, 43, 53, 600 to 607), the subclient's id is above 0, the job id at least
  /// 1, the iteration id at least -1 and the directory not empty. Otherwise one line of level -1 is logged, and every
  /// operation that touches files logs "Object Not Initialized" at level -1, returns false and changes nothing.
  CDumpFile(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
            std::int64_t itrId);

  /// The same, in `directory` (UTF-8).
  CDumpFile(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
            std::int64_t itrId, const char* directory);

  /// A copy is initialised if its source is, and logs under the same job. A file that is open stays the source's.
  CDumpFile(const CDumpFile& other);
  CDumpFile& operator=(const CDumpFile& other);
  ~CDumpFile();

  // Identity. On an object that isn't initialised, each returns what the constructor came to store.

  CJxString getBeginName() const { return beginName_; }  ///< the prefix of all dumps of the application's type
  ZQBkpLevel getJobType() const { return jobType_; }
  std::uint32_t getScId() const { return scId_; }  ///< the subclient's own id
  std::int64_t getJobId() const { return dumpJobId_; }
  std::int64_t getItrId() const { return itrId_; }

  /// Moves on to another iteration, without a check. The file's name follows at the next dump or `setName()`.
  void setItrId(std::int64_t itrId) { itrId_ = itrId; }

  /// Sets the file's name, until the next dump or `setName()`.
  void setName(CJxString name) { SetName(name); }

  /// Builds the name from job and iteration. Returns false and leaves the name unchanged for a job type without dumps.
  bool setName();

  /// Returns the directory, the system's path separator and the name. Empty, with a log line, on an object that isn't
  /// initialised.
  string getFullName();

  // Settings.

  /// Returns how many dump files a subclient may keep of a job type. 0 turns dumping off.
  std::uint32_t getDumpFileLimit();
  /// Returns how many whole days old a failed dump may become.
  std::uint32_t getDaysToKeepFailedJobDumpFiles();

  // Writing.

  /// Writes `xml` as UTF-8 into the file of this job and iteration, in place of an earlier one, after making room as
  /// `pruneDumpXMLBlob` and `pruneTimeExceededFailedDumpFiles` do. The file holds the text up to its first zero unit
  /// and nothing else, and nothing at all if the text is not valid UTF-16.
  ///
  /// Returns false on an object that isn't initialised, and if the file can't be opened: a name that stands for a link,
  /// a FIFO or anything else but a regular file can't, and stays as it is. With a limit of 0 writes nothing and returns
  /// true. A write or close that fails is reported in the log alone, and returns true; what was written stays. A text
  /// whose UTF-8 form has 4 GiB or more fails to be written before the file is opened, so that an earlier dump stays.
  bool dumpXMLBlob(wstring xml);

  // Retention.

  /// Deletes dumps of other jobs of this subclient and job type, whole jobs, lowest job id first, until at most one
  /// file less than the limit stands or only this job's are left. With a limit of 0 deletes every dump of the prefix in
  /// the directory, this job's too, but nothing if this subclient and job type have no dump. Never touches failed
  /// dumps. Returns false, with nothing deleted, if the directory can't be read to its end.
  bool pruneDumpXMLBlob();

  /// Renames this job's dumps to their failed names, in place of older failed dumps of these names. Before that, it
  /// deletes failed dumps as `pruneFailedDumpXMLBlob` and `pruneTimeExceededFailedDumpFiles` do. Returns true also if
  /// the job has no dump, and false, with nothing deleted or renamed, if the directory can't be read to its end.
  bool markAsFailed();

  /// Deletes the failed dumps of all other jobs that have one of this subclient and job type, with those that such a
  /// job has of any other subclient and job type of the prefix. Returns false, with nothing deleted, if the directory
  /// can't be read to its end.
  bool pruneFailedDumpXMLBlob();

  /// Deletes failed dumps of this prefix, of any subclient and job type, that are older than the days limit (by their
  /// last change of content), with all failed dumps of the same job. A file whose times can't be read counts as new,
  /// and one dated a day or more ahead of the clock as too old. Returns false, with nothing deleted, if the directory
  /// can't be read to its end.
  bool pruneTimeExceededFailedDumpFiles();

  // What stands on disk of this job; failed dumps don't count.

  /// Sets `itrId` to the highest iteration id among this job's dumps, -1 without a dump or after a failure. Dumps of a
  /// discovery job have no iteration and count as 0. Returns false if the directory can't be read to its end.
  bool getLastItrIdUsedForDumping(std::int64_t& itrId);

  /// Adds this job's dumps to `files`, name by iteration id (0 for a discovery job), in place of what stood there for
  /// that id. An id outside `int` counts as the nearest that isn't. Returns false and leaves `files` unchanged if the
  /// directory can't be read to its end.
  bool getAllXmlDumpFilesCreated(std::map<int, CJxString>& files);

  // Directories. Each logs under no job id. `*` in a pattern is any run of bytes; only regular files count.

  /// Adds the names in `directory` that match to `files`, in the directory's own order. Returns the error of a
  /// directory that can't be opened, with `files` unchanged, or of one that can't be read to its end, with the names
  /// found so far.
  static CJxError getFilesOfPattern(const char* directory, CJxString pattern, std::vector<CJxString>& files);

  /// Deletes the files in `directory` that match. Returns the error of a directory that can't be opened, or of one that
  /// can't be read to its end; files found before that are deleted. A file that can't be deleted is reported in the log
  /// alone.
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
  // Of the dumps of whole jobs, and of the failed dumps of all jobs.
  void getDeleteFilePatterns(std::map<std::int64_t, int> jobs, std::int64_t filesToDelete,
                             std::vector<CJxString>& patterns);
  void getDeleteFilePatterns(std::map<std::int64_t, int> jobs, std::vector<CJxString>& patterns);

  // The rules, each over a reading that others may share.
  DirectoryReading readDirectory() const;
  void makeRoom();
  bool pruneDumps(DirectoryReading& reading);
  bool pruneFailedDumps(DirectoryReading& reading);
  bool pruneExpiredDumps(DirectoryReading& reading);

  // Steps of several operations. Each writes the lines of its failure to the operation's own log.
  bool checkInitialized(const OperationLog& log) const;
  bool getPattern(const OperationLog& log, CJxString& pattern, bool thisJobOnly);
  bool listFiles(const OperationLog& log, DirectoryReading& reading, const CJxString& pattern,
                 std::vector<CJxString>& files) const;
  bool listDumpsOfThisJob(const OperationLog& log, std::vector<CJxString>& files);
  bool listFailedDumps(const OperationLog& log, DirectoryReading& reading, const CJxString& pattern,
                       std::vector<CJxString>& files) const;
  std::map<std::int64_t, int> countOtherJobs(const OperationLog& log, const std::vector<CJxString>& files,
                                             const char* insertedEnding);
  bool deleteFailedJobs(const OperationLog& log, DirectoryReading& reading, std::map<std::int64_t, int> jobs);

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
