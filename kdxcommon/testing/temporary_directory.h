// A directory for one test, made empty and removed with all that it holds.

#ifndef KDXCOMMON_TESTING_TEMPORARY_DIRECTORY_H_
#define KDXCOMMON_TESTING_TEMPORARY_DIRECTORY_H_

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace kdx::testing {

/// Paths in UTF-8, as the library has them, whatever narrow texts are on this system; on POSIX any bytes.
inline std::filesystem::path utf8Path(std::string_view text) {
  return std::u8string(text.begin(), text.end());
}
inline std::string utf8Text(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

class TemporaryDirectory {
 public:
  /// The directory's name ends with `ending`.
  explicit TemporaryDirectory(const std::string& ending = {}) {
    // Several test programs may run at once: what counts is whose call makes the directory.
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / utf8Path("kdxcommon_" + std::to_string(random()) + ending);
    } while (!std::filesystem::create_directory(path_));
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  /// The directory itself, and the path of a name in it; the bytes of a name are taken as they are.
  std::string path() const { return utf8Text(path_); }
  std::string path(std::string_view name) const { return utf8Text(path_ / utf8Path(name)); }

  /// Makes a file, or gives it a new content; its path.
  std::string write(std::string_view name, std::string_view content = {}) const {
    std::ofstream(path_ / utf8Path(name), std::ios::binary) << content;
    return path(name);
  }

  /// The content of a file; the empty text if there is none.
  std::string read(std::string_view name) const {
    std::ifstream file(path_ / utf8Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  bool has(std::string_view name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(path_ / utf8Path(name)));
  }

 private:
  std::filesystem::path path_;
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_TEMPORARY_DIRECTORY_H_
