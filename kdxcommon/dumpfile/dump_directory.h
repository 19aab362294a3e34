// The files of a dump directory: the parts of a dump's name, the dumps with their sizes and dates, and what the
// retention rules do to each file.
//
//   std::vector<kdx::DumpRecord> dumps;
//   if (kdx::listDumps("/var/lib/agent/dumps", dumps).IsErrorSet()) ...
//   for (const kdx::DumpRecord& dump : dumps) use(dump.parts.jobId, dump.size);
//
//   kdx::CDumpFile dump(kdx::ITERATION_JOB, appIdPart1, appIdPart2, jobId, 0);      // dump_file.h
//   std::vector<kdx::DumpFate> fates;
//   if (dump.explainDumpXMLBlob(fates)) print(fates.front().name, fates.front().reason);   // nothing is deleted
//
// Thread-safe. Throws only std::bad_alloc.

#ifndef KDXCOMMON_DUMPFILE_DUMP_DIRECTORY_H_
#define KDXCOMMON_DUMPFILE_DUMP_DIRECTORY_H_

#include <compare>
#include <cstdint>
#include <optional>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/dumpfile/job_type.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"

namespace kdx {

/// The parts of a dump's name. Names are ordered by these parts in turn, so that jobs and iterations stand in numeric
/// order.
struct DumpName {
  string_view beginName;   ///< the prefix of the application's type, such as "KDXSQLDump"; valid for ever
  std::uint32_t scId = 0;  ///< the subclient's id, above 0
  ZQBkpLevel jobType{};    ///< `DISCOVERY_JOB` or `ITERATION_JOB`
  std::int64_t jobId = 0;  ///< at least 1
  std::int64_t itrId = 0;  ///< the iteration id; 0 for a discovery job, whose names have none
  bool failed = false;     ///< whether the name is that of a failed dump
  std::strong_ordering operator<=>(const DumpName&) const = default;
};

/// Returns the parts of a file's name, without a directory, or nothing if `name` isn't exactly a name that CDumpFile
/// writes: `KDXSQLDump_SC_7_JOB_3456_ITR_2.txt`, `KDXSQLDump_SC_7_DISCOVERY_JOB_3456.txt`, or one of these followed by
/// `.failed`. Numbers have no leading zeros.
KDX_EXPORT std::optional<DumpName> parseDumpName(string_view name);

/// Returns the lowest application type whose dumps have this prefix, or 0 if none has.
KDX_EXPORT std::uint32_t applicationTypeOf(string_view beginName);

/// One dump of a directory.
struct DumpRecord {
  string name;                ///< the file's name
  DumpName parts;             ///< as read from `name`
  std::int64_t size = -1;     ///< bytes; -1 if size and date can't be read, such as those of a file deleted meanwhile
  std::int64_t modified = 0;  ///< last change of the content, in seconds since 1970-01-01 00:00:00 UTC
};

/// Adds the dumps in `directory` (UTF-8) to `dumps`, in the directory's order: regular files, failed or not, of any
/// application type, whose names `parseDumpName` accepts. Size and date come from the operating system
/// (`OperatingSystem::_stat64`). If the directory can't be opened, returns the error and leaves `dumps` unchanged; if
/// it can't be read to its end, returns the error and adds the dumps found so far. Logs nothing.
KDX_EXPORT CJxError listDumps(const char* directory, std::vector<DumpRecord>& dumps);

/// What an operation of CDumpFile does to a file, or has done to it.
struct DumpFate {
  /// How the file fares.
  enum Kind : std::uint8_t {
    kStays,
    kGoes,     ///< is deleted
    kMarked,   ///< is renamed to its failed name
    kRefused,  ///< should be deleted or renamed, but the system refused
  };

  string name;         ///< any name that begins with the prefix and an underscore, also one that is not a dump's
  Kind kind = kStays;  ///< how this file fares
  string reason;       ///< in English, such as "job 10 is the lowest of 2 that must go"
};

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DUMP_DIRECTORY_H_
