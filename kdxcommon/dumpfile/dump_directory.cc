#include "kdxcommon/dumpfile/dump_directory.h"

#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/inhouse/jxutils/jx_directory.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

CJxError listDumps(const char* directory, std::vector<DumpRecord>& dumps) {
  CJxDirectory entries;
  const CJxError openError = entries.Open(directory, "*", true);
  if (openError.IsErrorSet()) return openError;
  string path = joinPath(directory, "").c_str();
  const std::size_t directoryLength = path.size();
  SJxDirEntry entry;
  bool end = false;
  while (true) {
    const CJxError readError = entries.GetEntry(&entry, end);
    if (readError.IsErrorSet() || end) return readError;
    const string_view name(entry.name);
    const std::optional<DumpName> parts = parseDumpName(name);
    if (!parts) continue;
    DumpRecord& dump = dumps.emplace_back(DumpRecord{.name = string(name), .parts = *parts});
    path.replace(directoryLength, path.npos, name);
    os::FileTimes times;
    if (os::OperatingSystem::current()._stat64(path.c_str(), times) != 0) continue;
    dump.size = times.size;
    dump.modified = times.modified;
  }
}

}  // namespace kdx
