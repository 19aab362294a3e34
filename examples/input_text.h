// The XML texts that a job dumps: read from files one at a time, checked and brought to UTF-16.

#ifndef KDXCOMMON_EXAMPLES_INPUT_TEXT_H_
#define KDXCOMMON_EXAMPLES_INPUT_TEXT_H_

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "console.h"
#include "kdxcommon/base/string_types.h"

namespace collect_job {

/// The sample that is compiled in, in UTF-8.
extern const char kSampleXml[];

struct InputText {
  kdx::wstring text;          ///< without a byte order mark
  std::size_t utf8Bytes = 0;  ///< the length of its UTF-8 form
};

/// The text in `bytes`: UTF-8 with or without a byte order mark, or UTF-16 with one. Throws a Failure of kInvalidText,
/// with `name` and the position, where it isn't valid or holds a NUL character, which would end a dump.
InputText decode(const std::string& name, std::string_view bytes);

/// The texts of one job. They are read twice, so that all are known to be good before the first is dumped and none has
/// to be kept.
class InputTexts {
 public:
  /// No file stands for the embedded sample.
  explicit InputTexts(std::vector<std::string> files) : files_(std::move(files)) {}

  std::size_t size() const { return files_.empty() ? 1 : files_.size(); }
  std::string name(std::size_t index) const { return files_.empty() ? "the embedded sample" : files_[index]; }

  /// Reads every text once. Throws a Failure of kUnreadableInput or kInvalidText.
  void check(ProgressStyle progress);

  /// A text, once more. Throws what `check` throws, and a Failure of kInputChanged if it isn't what was checked.
  InputText read(std::size_t index) const;

 private:
  std::string bytes(std::size_t index) const;

  std::vector<std::string> files_;
  std::vector<std::size_t> fingerprints_;  // of the bytes that were checked
};

/// A path of the file system from UTF-8.
std::filesystem::path pathOf(const std::string& utf8);

}  // namespace collect_job

#endif  // KDXCOMMON_EXAMPLES_INPUT_TEXT_H_
