// Internal: the grammar of dump file names. Only this unit knows the names of dumps, the patterns that match them, and
// how to read job and iteration back from a name. A dump's identity is stored in its name alone.
//
//   kdx::DumpSeries series{"KDXSQLDump", kdx::ITERATION_JOB, 7};
//   kdx::dumpFileName(series, 3456, 2);      // KDXSQLDump_SC_7_JOB_3456_ITR_2.txt
//   kdx::patternOfJob(series, 3456);         // KDXSQLDump_SC_7_JOB_3456_*.txt
//
// Pure functions of their arguments. Thread-safe. Throws only std::bad_alloc.

#ifndef KDXCOMMON_DUMPFILE_DUMP_NAMES_H_
#define KDXCOMMON_DUMPFILE_DUMP_NAMES_H_

#include <array>
#include <cstdint>
#include <vector>

#include "kdxcommon/dumpfile/job_type.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

/// The common part of the names of one subclient's dumps of one job type.
struct DumpSeries {
  CJxString beginName;   ///< the prefix of the application type
  ZQBkpLevel jobType{};  ///< `DISCOVERY_JOB` or `ITERATION_JOB`, see `isDumpJobType`
  std::uint32_t scId = 0;
};

/// Returns the file name prefix of an application type, or null if the type has no dumps.
const char* beginNameOfApplicationType(std::uint32_t applicationType);

/// Returns whether this job type has dumps. A series that is passed to the functions below must be of such a type.
bool isDumpJobType(ZQBkpLevel jobType);

/// Returns the name of a dump.
CJxString dumpFileName(const DumpSeries& series, std::int64_t jobId, std::int64_t itrId);

/// Return patterns, in which `*` matches any run of characters. Failed dumps are matched only by the patterns of failed
/// dumps and by `patternOfPrefix`, which matches all files of a prefix.
CJxString patternOfPrefix(const CJxString& beginName);
CJxString patternOfAllJobs(const DumpSeries& series);
CJxString patternOfJob(const DumpSeries& series, std::int64_t jobId);
CJxString patternOfEveryDump(const CJxString& beginName);
CJxString patternOfEveryFailedDump(const CJxString& beginName);
/// Returns a pattern for each job type, discovery first, both for any subclient.
std::array<CJxString, 2> patternsOfFailedJob(const CJxString& beginName, std::int64_t jobId);

/// Returns the name or pattern of a failed dump for that of the dump.
CJxString failedNameOf(CJxString nameOrPattern);

/// Returns whether a name, or every name that a pattern matches, is that of a failed dump.
bool isFailedName(string_view nameOrPattern);

/// A piece of a file name: its start and length in bytes, and its text.
struct NamePiece {
  int start = 0;
  int length = 0;  ///< negative if the end of the piece isn't found; the text is then empty
  CJxString text;
};

/// Return the job id or the iteration id of a name of this grammar, as the rules read them. For any other name, returns
/// some piece of it, usually not a number. `parseDumpName` (dump_directory.h) rejects such names.
NamePiece jobIdInFileName(const CJxString& name);
NamePiece itrIdInFileName(const CJxString& name);

/// Returns the number after each "JOB_". For a pattern of one job, that is the job's id alone; for every name that the
/// pattern matches, the id is among the numbers.
std::vector<std::int64_t> jobIdsIn(string_view nameOrPattern);

/// Returns a piece's text as a decimal number: 0 if it doesn't begin with one, the nearest limit if it is out of range.
std::int64_t decimalNumber(const CJxString& text);

/// Returns the path of a name in a directory.
CJxString joinPath(const CJxString& directory, const char* name);

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DUMP_NAMES_H_
