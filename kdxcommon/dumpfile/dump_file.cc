#include "kdxcommon/dumpfile/dump_file.h"

#include <utility>

#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/dumpfile/dump_writing.h"
#include "kdxcommon/dumpfile/operation_log.h"
#include "kdxcommon/dumpfile/pruning.h"
#include "kdxcommon/inhouse/zqappmgr/application_id.h"
#include "kdxcommon/inhouse/zqbasiclib/platform_info.h"
#include "kdxcommon/inhouse/zqutils/subclient_dir.h"
#include "kdxcommon/strings/wide_string.h"

namespace kdx {
namespace {

constexpr char kSettingsSection[] = "KDX";

// Returns the directory that the application manager has for the subclient; empty if it has none.
CJxString directoryOfSubclient(std::uint32_t appIdPart1, std::uint32_t appIdPart2) {
  const ZQPI_Base readable;
  char directory[kSubclientDirSize] = {};
  GetSubclientDir(appIdPart1, appIdPart2, directory);
  return directory;
}

}  // namespace

CDumpFile::CDumpFile(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
                     std::int64_t itrId)
    : CDumpFile(jobType, appIdPart1, appIdPart2, jobId, itrId, directoryOfSubclient(appIdPart1, appIdPart2)) {}

CDumpFile::CDumpFile(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
                     std::int64_t itrId, const char* directory) {
  debug_.setJobId(jobId);
  initialized_ = init(jobType, appIdPart1, appIdPart2, jobId, itrId, directory);
  if (!initialized_) {
    debug_.DebugLvl("CDumpFile::CDumpFile", -1,
                    "Object Initialisation Failed. Please Check the constructor parameters.");
  }
}

CDumpFile::CDumpFile(const CDumpFile& other) = default;
CDumpFile& CDumpFile::operator=(const CDumpFile& other) = default;
CDumpFile::~CDumpFile() = default;

bool CDumpFile::init(ZQBkpLevel jobType, std::uint32_t appIdPart1, std::uint32_t appIdPart2, std::int64_t jobId,
                     std::int64_t itrId, const char* directory) {
  if (!isDumpJobType(jobType)) return false;
  setJobType(jobType);

  ApplicationId application(appIdPart1, appIdPart2);
  std::uint32_t applicationType = 0;
  if (application.getAppType(applicationType, nullptr) != 0) return false;
  if (!setBeginName(applicationType)) return false;

  const Subclient* subclient = application.getSubclient(nullptr);
  if (!subclient) return false;
  setScId(subclient->id());
  setJobId(jobId);
  setItrId(itrId);
  if (scId_ == 0 || dumpJobId_ < 1 || itrId_ < -1) return false;
  if (!setName()) return false;

  const CJxString dumpDir = directory;
  if (dumpDir == CJxString()) return false;
  dumpDir_ = dumpDir;
  return true;
}

bool CDumpFile::setBeginName(std::uint32_t applicationType) {
  const char* beginName = beginNameOfApplicationType(applicationType);
  if (!beginName) return false;
  setBeginName(CJxString(beginName));
  return true;
}

DumpSeries CDumpFile::series() const {
  return {beginName_, jobType_, scId_};
}

bool CDumpFile::setName() {
  if (!isDumpJobType(jobType_)) return false;
  setName(dumpFileName(series(), dumpJobId_, itrId_));
  return true;
}

string CDumpFile::getFullName() {
  if (!checkInitialized({debug_, "CDumpFile::getFullName"})) return {};
  return joinPath(dumpDir_, GetName()).c_str();
}

std::uint32_t CDumpFile::getDumpFileLimit() {
  std::uint32_t limit = 1;
  if (ZQPlatformInfo().getNumber(kSettingsSection, "nDUMPFILELIMIT", &limit)) {
    debug_.DebugLvl("CDumpFile::getDumpFileLimit", 4, "Loaded nDUMPFILELIMIT [%u]", limit);
  }
  return limit;
}

std::uint32_t CDumpFile::getDaysToKeepFailedJobDumpFiles() {
  std::uint32_t days = 30;
  if (ZQPlatformInfo().getNumber(kSettingsSection, "nDAYSTOKEEPFAILEDJOBDUMPFILES", &days)) {
    debug_.DebugLvl("CDumpFile::getDaysToKeepFailedJobDumpFiles", 4, "Loaded nDAYSTOKEEPFAILEDJOBDUMPFILES [%u]", days);
  }
  return days;
}

bool CDumpFile::makeRoom(Pruning& pruning) {
  const bool prunedDumps = pruneDumps(pruning);
  return pruneExpiredDumps(pruning) && prunedDumps;
}

bool CDumpFile::makeRoom(std::vector<DumpFate>& fates) {
  return makeRoom(startPruning(false), fates);
}

bool CDumpFile::explainDumpXMLBlob(std::vector<DumpFate>& fates) {
  return makeRoom(startPruning(true), fates);
}

bool CDumpFile::makeRoom(Pruning pruning, std::vector<DumpFate>& fates) {
  if (!checkInitialized({debug_, "CDumpFile::makeRoom"}) || !makeRoom(pruning)) return false;
  fates = fatesAfter(pruning, false);
  return true;
}

bool CDumpFile::dumpXMLBlob(wstring xml) {
  const ScopeLog log(debug_, "CDumpFile::dumpXMLBlob");
  if (!checkInitialized(log)) return false;
  setName();
  Pruning pruning = startPruning();
  makeRoom(pruning);
  const std::uint32_t limit = getDumpFileLimit();
  if (limit == 0) {
    log.line(2, "Dump Limit = [%u]... XML blob Dumping Not Done", limit);
    return true;
  }
  const string fullName = getFullName();
  log.line(2, "DUMPFILELIMIT = [%u]... Dumping xml blob size [%zu] to file [%s]", limit, xml.size(), fullName.c_str());
  const CWideString text(std::move(xml));  // before the file is truncated: a failure here must keep the earlier dump
  const DumpWriting writing = writeDump(*this, fullName.c_str(), text.aString());
  if (writing.openFailed) {
    log.line(-1, "Error Opening File [%s]", fullName.c_str());
    return false;
  }
  if (writing.writeFailed) log.line(-1, "Failed to write dump to file [%s]", fullName.c_str());
  log.line(2, "Bytes written :: [%u]", writing.written);
  if (writing.closeFailed) log.line(-1, "Error Closing file [%s]", fullName.c_str());
  return true;
}

}  // namespace kdx
