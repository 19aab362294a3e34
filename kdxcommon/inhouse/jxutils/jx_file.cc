#include "kdxcommon/inhouse/jxutils/jx_file.h"

#include <utility>

#include "kdxcommon/inhouse/jxutils/system_error.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

CJxFile::CJxFile(const CJxFile& other) : name_(other.name_) {}

CJxFile& CJxFile::operator=(const CJxFile& other) {
  if (this == &other) return *this;
  Close();
  name_ = other.name_;
  return *this;
}

CJxFile::~CJxFile() {
  Close();
}

CJxError CJxFile::Open(const char* name, int flags, int mode) {
  Close();
  descriptor_ = os::OperatingSystem::current()._open(name, flags, mode);
  return errorUnless(descriptor_ != kClosed);
}

CJxError CJxFile::Write(const void* data, std::uint32_t length, std::uint32_t* written) {
  std::uint32_t ignored = 0;
  std::uint32_t& done = written ? *written : ignored;
  done = 0;
  if (descriptor_ == kClosed) return CJxError(CJxError::kNoSystemCode);
  const char* bytes = static_cast<const char*>(data);
  while (done < length) {
    const std::int64_t taken = os::OperatingSystem::current()._write(descriptor_, bytes + done, length - done);
    if (taken < 0) return lastSystemError();
    if (taken == 0) return CJxError(CJxError::kNoSystemCode);
    done += static_cast<std::uint32_t>(taken);
  }
  return {};
}

CJxError CJxFile::Close() {
  if (descriptor_ == kClosed) return CJxError(CJxError::kNoSystemCode);
  return errorUnless(os::OperatingSystem::current()._close(std::exchange(descriptor_, kClosed)) == 0);
}

CJxError CJxFile::GetTimes(const char* path, std::int64_t* modified, std::int64_t* accessed, std::int64_t* attributes) {
  os::FileTimes times;
  if (os::OperatingSystem::current()._stat64(path, times) != 0) return lastSystemError();
  if (modified) *modified = times.modified;
  if (accessed) *accessed = times.accessed;
  if (attributes) *attributes = times.attributes;
  return {};
}

}  // namespace kdx
