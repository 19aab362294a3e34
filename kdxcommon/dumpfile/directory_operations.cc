// Listing and deleting by pattern.

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/inhouse/jxutils/jx_directory.h"
#include "kdxcommon/inhouse/jxutils/jx_utf_os_api.h"

namespace kdx {
namespace {

long codeOf(const CJxError& error) {
  return static_cast<long>(error.GetErrorCode());
}

}  // namespace

CJxError CDumpFile::getFilesOfPattern(const char* directory, CJxString pattern, std::vector<CJxString>& files) {
  constexpr char kFunction[] = "CDumpFile::getFilesOfPattern";
  if (!directory) directory = "";
  EvEvent log;
  CJxDirectory entries;
  CJxError error = entries.Open(directory, pattern, true);
  if (error.IsErrorSet()) {
    log.DebugLvl(kFunction, -1, "Error Opening file [%s]\\[%s], ErrorCode :: [%ld] ", directory, pattern.c_str(),
                 codeOf(error));
    return error;
  }
  SJxDirEntry entry;
  bool end = false;
  error = entries.GetEntry(&entry, end);
  if (error.IsErrorSet() || end) {
    log.DebugLvl(kFunction, 4, "No File Found. Pattern [%s] in dir [%s]. Error [%ld]", pattern.c_str(), directory,
                 codeOf(error));
    return error;
  }
  while (!end) {
    if (error.IsErrorSet()) {
      log.DebugLvl(kFunction, -1, "Error getting a File. Error [%ld], Current Entry [%s]", codeOf(error),
                   entry.name.c_str());
      break;
    }
    files.push_back(entry.name);
    error = entries.GetEntry(&entry, end);
  }
  if (!error.IsErrorSet()) {
    log.DebugLvl(kFunction, 4, "Files of pattern [%s] in dir [%s] stored in a vector", pattern.c_str(), directory);
  }
  return error;
}

CJxError CDumpFile::delFilesOfPattern(const char* directory, CJxString pattern) {
  constexpr char kFunction[] = "CDumpFile::delFilesOfPattern";
  if (!directory) directory = "";
  EvEvent log;
  CJxDirectory entries;
  CJxError error = entries.Open(directory, pattern, true);
  if (error.IsErrorSet()) {
    log.DebugLvl(kFunction, -1, "Error Opening file [%s\\%s], ErrorCode :: [%ld] ", directory, pattern.c_str(),
                 codeOf(error));
    return error;
  }
  log.DebugLvl(kFunction, 2, "Deleting Files of pattern [%s\\%s] ", directory, pattern.c_str());
  SJxDirEntry entry;
  bool end = false;
  error = entries.GetEntry(&entry, end);
  if (error.IsErrorSet() || end) {
    log.DebugLvl(kFunction, 4, "No File Deleted of type [%s\\%s]. Error [%ld]", directory, pattern.c_str(),
                 codeOf(error));
    return error;
  }
  while (!end) {
    if (error.IsErrorSet()) {
      log.DebugLvl(kFunction, -1, "Error Happened in GetEntry()");
      break;
    }
    const CJxString path = joinPath(directory, entry.name);
    const CJxError removed = CJxUTFOSAPI::remove(path);
    if (removed.IsErrorSet()) {
      log.DebugLvl(kFunction, -1, "File [%s] is Not Deleted, ERROR = [%ld]", path.c_str(), codeOf(removed));
    } else {
      log.DebugLvl(kFunction, 4, "File Deleted [%s]", path.c_str());
    }
    error = entries.GetEntry(&entry, end);
  }
  return error;
}

}  // namespace kdx
