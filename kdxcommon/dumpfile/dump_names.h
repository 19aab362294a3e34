// Internal: the grammar of dump file names, the one place that knows how a dump is called, which pattern finds which
// dumps, and how job and iteration are read back. A dump's name is the only store of its identity.
//
//   kdx::DumpSeries series{"KDXSQLDump", kdx::ITERATION_JOB, 7};
//   kdx::dumpFileName(series, 3456, 2);      // KDXSQLDump_SC_7_JOB_3456_ITR_2.txt
//   kdx::patternOfJob(series, 3456);         // KDXSQLDump_SC_7_JOB_3456_*.txt
//
// Pure functions of their arguments, thread-safe. They throw only std::bad_alloc.

#ifndef KDXCOMMON_DUMPFILE_DUMP_NAMES_H_
#define KDXCOMMON_DUMPFILE_DUMP_NAMES_H_

#include <array>
#include <cstdint>
#include <vector>

#include "kdxcommon/dumpfile/job_type.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

/// What the names of one subclient's dumps of one job type have in common.
struct DumpSeries {
  CJxString beginName;   ///< the prefix of the application type
  ZQBkpLevel jobType{};  ///< `DISCOVERY_JOB` or `ITERATION_JOB`, see `isDumpJobType`
  std::uint32_t scId = 0;
};

/// Returns the file name prefix of an application type, or null if the type leaves no dumps.
const char* beginNameOfApplicationType(std::uint32_t applicationType);

/// Returns whether dumps of this job type have names. The functions below that take a series need one that does.
bool isDumpJobType(ZQBkpLevel jobType);

CJxString dumpFileName(const DumpSeries& series, std::int64_t jobId, std::int64_t itrId);

/// Patterns in which `*` is any run of characters. Only the failed ones match failed dumps, and the first, which
/// matches all files of a prefix.
CJxString patternOfPrefix(const CJxString& beginName);
CJxString patternOfAllJobs(const DumpSeries& series);
CJxString patternOfJob(const DumpSeries& series, std::int64_t jobId);
CJxString patternOfEveryDump(const CJxString& beginName);
CJxString patternOfEveryFailedDump(const CJxString& beginName);
/// One for each job type, discovery first; both are for any subclient.
std::array<CJxString, 2> patternsOfFailedJob(const CJxString& beginName, std::int64_t jobId);

/// Returns the name or pattern of the failed dump that belongs to a dump's.
CJxString failedNameOf(CJxString nameOrPattern);

/// Returns whether a name, or every name that a pattern matches, is of a failed dump.
bool isFailedName(string_view nameOrPattern);

/// A piece of a file name: where it starts, how long it is, and its text.
struct NamePiece {
  int start = 0;
  int length = 0;  ///< negative if the name has no end for the piece; the text is then empty
  CJxString text;
};

/// The job id or iteration id of a name that the grammar made. Other names yield some piece, as a rule no number.
NamePiece jobIdInFileName(const CJxString& name);
NamePiece itrIdInFileName(const CJxString& name);

/// Returns the number behind each "JOB_". A pattern of one job has that job's alone, and the names that it matches have
/// it among theirs.
std::vector<std::int64_t> jobIdsIn(string_view nameOrPattern);

/// Returns a piece's text as a decimal number: 0 if it doesn't begin with one, the nearest limit if it is out of range.
std::int64_t decimalNumber(const CJxString& text);

/// Returns the path of a name in a directory.
CJxString joinPath(const CJxString& directory, const char* name);

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DUMP_NAMES_H_
