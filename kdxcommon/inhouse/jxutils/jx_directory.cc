#include "kdxcommon/inhouse/jxutils/jx_directory.h"

#include "kdxcommon/inhouse/jxutils/system_error.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

CJxDirectory::CJxDirectory() = default;

CJxDirectory::~CJxDirectory() = default;

CJxError CJxDirectory::Open(const char* directory, const char* pattern, bool filesOnly) {
  stream_.reset();
  pattern_ = Wildcard(pattern ? pattern : "");
  filesOnly_ = filesOnly;
  stream_ = os::OperatingSystem::current().opendir(directory);
  return errorUnless(stream_ != nullptr);
}

CJxError CJxDirectory::GetEntry(SJxDirEntry* entry, bool& end) {
  if (!stream_ || !entry) return CJxError(CJxError::kNoSystemCode);
  os::DirectoryEntry next;
  int result = 0;
  while ((result = stream_->readdir(next)) > 0) {
    if (filesOnly_ && !next.regularFile) continue;
    if (!pattern_.matches(next.name)) continue;
    entry->name = next.name;
    return {};
  }
  if (result < 0) return lastSystemError();
  end = true;
  return {};
}

CJxError CJxDirectory::Close() {
  if (!stream_) return CJxError(CJxError::kNoSystemCode);
  stream_.reset();
  return {};
}

}  // namespace kdx
