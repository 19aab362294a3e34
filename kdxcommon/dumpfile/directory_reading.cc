#include "kdxcommon/dumpfile/directory_reading.h"

#include <algorithm>
#include <utility>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/dumpfile/operation_log.h"
#include "kdxcommon/inhouse/jxutils/jx_directory.h"
#include "kdxcommon/inhouse/jxutils/jx_utf_os_api.h"
#include "kdxcommon/inhouse/jxutils/wildcard.h"

namespace kdx {
namespace {

long codeOf(const CJxError& error) {
  return static_cast<long>(error.GetErrorCode());
}

}  // namespace

CJxError CDumpFile::getFilesOfPattern(const char* directory, CJxString pattern, std::vector<CJxString>& files) {
  return DirectoryReading(directory, pattern).list(pattern, files);
}

CJxError CDumpFile::delFilesOfPattern(const char* directory, CJxString pattern) {
  return DirectoryReading(directory, pattern).deleteFiles(pattern);
}

void DirectoryReading::read() {
  if (std::exchange(isRead_, true)) return;
  CJxDirectory entries;
  openError_ = entries.Open(directory_, pattern_, true);
  if (openError_.IsErrorSet()) return;
  SJxDirEntry entry;
  bool end = false;
  while (true) {
    readError_ = entries.GetEntry(&entry, end);
    if (readError_.IsErrorSet() || end) break;
    if (isFailedName(string_view(entry.name))) failed_.push_back(count());
    starts_.push_back(names_.size());
    names_.append(entry.name).push_back('\0');
  }
  deleted_.resize(count());
}

string_view DirectoryReading::name(std::size_t position) const {
  const std::size_t end = position + 1 < count() ? starts_[position + 1] : names_.size();
  return string_view(names_).substr(starts_[position], end - starts_[position] - 1);
}

DirectoryReading::Positions DirectoryReading::matches(const CJxString& pattern) const {
  const Wildcard wildcard{string_view(pattern)};
  Positions found;
  const auto addIfMatching = [&](std::size_t position) {
    if (!deleted_[position] && wildcard.matches(name(position))) found.push_back(position);
  };
  if (isFailedName(string_view(pattern))) {  // then only failed names match
    for (const std::size_t position : failed_) addIfMatching(position);
  } else {
    for (std::size_t position = 0; position < count(); ++position) addIfMatching(position);
  }
  return found;
}

CJxError DirectoryReading::list(const CJxString& pattern, std::vector<CJxString>& files) {
  const EvEvent event;
  const OperationLog log(event, "CDumpFile::getFilesOfPattern");
  read();
  if (openError_.IsErrorSet()) {
    log.line(-1, "Error Opening file [%s]\\[%s], ErrorCode :: [%ld] ", directory_.c_str(), pattern.c_str(),
             codeOf(openError_));
    return openError_;
  }
  const Positions found = matches(pattern);
  if (found.empty()) {
    log.line(4, "No File Found. Pattern [%s] in dir [%s]. Error [%ld]", pattern.c_str(), directory_.c_str(),
             codeOf(readError_));
    return readError_;
  }
  for (const std::size_t position : found) files.emplace_back(name(position).data());
  if (readError_.IsErrorSet()) {
    log.line(-1, "Error getting a File. Error [%ld], Current Entry [%s]", codeOf(readError_), files.back().c_str());
  } else {
    log.line(4, "Files of pattern [%s] in dir [%s] stored in a vector", pattern.c_str(), directory_.c_str());
  }
  return readError_;
}

CJxError DirectoryReading::deleteFiles(const CJxString& pattern) {
  read();
  return deleteFound(pattern, matches(pattern));
}

std::vector<DirectoryReading::Choice> DirectoryReading::deleteFiles(const CJxString& covering,
                                                                    const std::vector<CJxString>& patterns,
                                                                    bool rehearses) {
  read();
  const std::vector<JobFile> files = byJob(matches(covering));
  std::vector<Choice> choices;
  for (std::size_t pattern = 0; pattern < patterns.size(); ++pattern) {
    const Positions found = matches(patterns[pattern], files);
    for (const std::size_t position : found) choices.push_back({position, pattern});
    if (!rehearses) {
      deleteFound(patterns[pattern], found);
    } else {
      for (const std::size_t position : found) deleted_[position] = true;
    }
  }
  return choices;
}

// `files` are those of `byJob`.
DirectoryReading::Positions DirectoryReading::matches(const CJxString& pattern,
                                                      const std::vector<JobFile>& files) const {
  const std::vector<std::int64_t> jobs = jobIdsIn(string_view(pattern));
  if (jobs.empty()) return matches(pattern);
  const Wildcard wildcard{string_view(pattern)};
  Positions found;
  auto file = std::lower_bound(files.begin(), files.end(), jobs.front(),
                               [](const JobFile& left, std::int64_t job) { return left.job < job; });
  for (; file != files.end() && file->job == jobs.front(); ++file) {
    if (!deleted_[file->position] && wildcard.matches(name(file->position))) found.push_back(file->position);
  }
  return found;
}

// Returns the files sorted by job, within a job in the directory's order. A file is listed once for each job id in its
// name.
std::vector<DirectoryReading::JobFile> DirectoryReading::byJob(const Positions& files) const {
  std::vector<JobFile> sorted;
  for (const std::size_t position : files) {
    for (const std::int64_t job : jobIdsIn(name(position))) sorted.push_back({job, position});
  }
  std::sort(sorted.begin(), sorted.end());
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  return sorted;
}

CJxError DirectoryReading::deleteFound(const CJxString& pattern, const Positions& files) {
  const EvEvent event;
  const OperationLog log(event, "CDumpFile::delFilesOfPattern");
  if (openError_.IsErrorSet()) {
    log.line(-1, "Error Opening file [%s\\%s], ErrorCode :: [%ld] ", directory_.c_str(), pattern.c_str(),
             codeOf(openError_));
    return openError_;
  }
  log.line(2, "Deleting Files of pattern [%s\\%s] ", directory_.c_str(), pattern.c_str());
  if (files.empty()) {
    log.line(4, "No File Deleted of type [%s\\%s]. Error [%ld]", directory_.c_str(), pattern.c_str(),
             codeOf(readError_));
    return readError_;
  }
  for (const std::size_t position : files) {
    const CJxString path = joinPath(directory_, name(position).data());
    const CJxError removed = CJxUTFOSAPI::remove(path);
    if (removed.IsErrorSet()) {
      log.line(-1, "File [%s] is Not Deleted, ERROR = [%ld]", path.c_str(), codeOf(removed));
    } else {
      log.line(4, "File Deleted [%s]", path.c_str());
      deleted_[position] = true;
    }
  }
  if (readError_.IsErrorSet()) log.line(-1, "Error Happened in GetEntry()");
  return readError_;
}

}  // namespace kdx
