#include "kdxcommon/dumpfile/dump_writing.h"

#include "kdxcommon/os/operating_system.h"

namespace kdx {

DumpWriting writeDump(CJxFile& file, const char* path, const string& text, std::size_t largest) {
  constexpr int kOverwrite = os::kOpenReadWrite | os::kOpenCreate | os::kOpenTruncate;
  DumpWriting result;
  if (text.size() > largest) {
    result.writeFailed = true;
    return result;
  }
  result.openFailed = file.Open(path, kOverwrite, os::kModeWrite).IsErrorSet();
  if (result.openFailed) return result;
  const auto length = static_cast<std::uint32_t>(text.size());
  result.writeFailed = file.Write(text.data(), length, &result.written).IsErrorSet();
  result.closeFailed = file.Close().IsErrorSet();
  return result;
}

}  // namespace kdx
