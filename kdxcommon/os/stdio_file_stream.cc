#include "kdxcommon/os/stdio_file_stream.h"

#include <utility>

namespace kdx::os {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

class StdioFileStream : public FileStream {
 public:
  explicit StdioFileStream(OpenFile file) : file_(std::move(file)) {}

  std::size_t fread(void* data, std::size_t count) override { return std::fread(data, 1, count, file_.get()); }
  std::size_t fwrite(const void* data, std::size_t count) override { return std::fwrite(data, 1, count, file_.get()); }
  int feof() override { return std::feof(file_.get()); }
  int ferror() override { return std::ferror(file_.get()); }

 private:
  OpenFile file_;
};

}  // namespace

std::unique_ptr<FileStream> stdioFileStream(std::FILE* file, const char* mode) {
  if (!file) return nullptr;
  OpenFile open(file);
  if (string_view(mode).find_first_of("wa+") != string_view::npos) std::setvbuf(file, nullptr, _IONBF, 0);
  return std::make_unique<StdioFileStream>(std::move(open));
}

}  // namespace kdx::os
