#include "kdxcommon/platform/files_and_clock.h"

#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/os/system_message.h"
#include "kdxcommon/platform/failure.h"
#include "kdxcommon/platform/time_zone_reading.h"

namespace kdx {
namespace {

constexpr std::uint32_t kSystemFileNotFound = 2;  // ENOENT, ERROR_FILE_NOT_FOUND

}  // namespace

std::uint32_t platformGetLastError() {
  return os::OperatingSystem::current().GetLastError();
}

bool winGetOSErrorMessage(std::uint32_t code, string& message) {
  std::optional<string> text = os::systemMessage(code);
  if (text) message = std::move(*text);
  return text.has_value();
}

bool platformAccessW(const wstring& path, int mode, ZQLastError* lastError) {
  if (path.empty()) return failWith(kErrorInvalidArgument, lastError);
  os::OperatingSystem& system = os::OperatingSystem::current();
  if (system._waccess(path.c_str(), mode) == 0) return true;
  const std::uint32_t error = system.GetLastError();
  return failWith(error == kSystemFileNotFound ? kErrorFileNotFound : error, lastError);
}

bool platformWriteEntireFileContent(const string& fileName, const string& contents, int& error) {
  const std::unique_ptr<os::FileStream> file = os::OperatingSystem::current().fopen(fileName.c_str(), "w");
  if (!file) return false;
  std::size_t written = 0;
  do {
    written += file->fwrite(contents.data() + written, contents.size() - written);
  } while (written != contents.size() && file->ferror() == 0);
  const int failure = file->ferror();
  if (failure != 0) error = failure;
  return failure == 0;
}

bool platformReadEntireFileContents(const string& fileName, string& contents, int& error) try {
  constexpr std::size_t kLargestChunk = 32768;
  os::OperatingSystem& system = os::OperatingSystem::current();
  std::int32_t size = 0;
  if (system._stat64i32(fileName.c_str(), size) != 0) return false;
  const auto fileSize = static_cast<std::size_t>(size);
  // A small file is read in one call; the additional byte detects its end in the same call.
  const std::size_t chunkSize = fileSize < kLargestChunk ? fileSize + 1 : kLargestChunk;
  const std::unique_ptr<char[]> chunk(new char[chunkSize + 1]);  // not zeroed
  const std::unique_ptr<os::FileStream> file = system.fopen(fileName.c_str(), "rb");
  if (!file) return false;
  contents.reserve(contents.size() + fileSize + 2);
  do {
    const std::size_t count = file->fread(chunk.get(), chunkSize);
    chunk[count] = '\0';
    contents += chunk.get();  // up to a NUL byte
  } while (file->feof() == 0 && file->ferror() == 0);
  const int failure = file->ferror();
  if (failure != 0) error = failure;
  return failure == 0;
} catch (const std::bad_alloc&) {
  return false;
}

std::int64_t platformTime(std::int64_t* seconds) {
  return os::OperatingSystem::current()._time64(seconds);
}

std::int32_t platformTimezone() {
  return -readTimeZone().biasSeconds;
}

void platformTZName(string& standardName, string& daylightName) {
  constexpr std::size_t kLongestName = 250;
  os::OperatingSystem& system = os::OperatingSystem::current();
  system._tzset();
  char standard[kLongestName];
  char daylight[kLongestName];
  if (system._get_tzname(standard, sizeof standard, 0) != 0) return;
  if (system._get_tzname(daylight, sizeof daylight, 1) != 0) return;
  standardName = standard;
  daylightName = daylight;
}

bool platformGetTimeZone(TimeZone_t& zone, ZQLastError* lastError) {
  // The names come first: they have the zone read anew, and the bias must be that of the same zone.
  string standardName = zone.standardName, daylightName = zone.daylightName;
  platformTZName(standardName, daylightName);
  const TimeZoneReading reading = readTimeZone();
  if (!reading.readable) return failWithSystemError(lastError);
  zone.standardName = std::move(standardName);
  zone.daylightName = std::move(daylightName);
  zone.biasSeconds = reading.biasSeconds;
  zone.daylightActive = reading.daylightActive;
  zone.daylightBiasSeconds = reading.daylightBiasSeconds;
  return true;
}

}  // namespace kdx
