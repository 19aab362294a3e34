#include "input_text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <functional>
#include <limits>
#include <system_error>

#include "failure.h"
#include "kdxcommon/strings/wide_string.h"

namespace collect_job {
namespace {

enum class Encoding { kUtf8, kUtf16LittleEndian, kUtf16BigEndian };

struct ByteOrderMark {
  std::string_view bytes;
  Encoding encoding;
};

constexpr std::array<ByteOrderMark, 3> kByteOrderMarks = {{
    {"\xEF\xBB\xBF", Encoding::kUtf8},
    {"\xFF\xFE", Encoding::kUtf16LittleEndian},
    {"\xFE\xFF", Encoding::kUtf16BigEndian},
}};

ByteOrderMark byteOrderMarkOf(std::string_view bytes) {
  for (const ByteOrderMark& mark : kByteOrderMarks) {
    if (bytes.starts_with(mark.bytes)) return mark;
  }
  return {"", Encoding::kUtf8};
}

[[noreturn]] void throwInvalid(const std::string& name, const char* what, std::size_t offset) {
  throw Failure(kInvalidText, name + ": " + what + " at byte " + std::to_string(offset));
}

// A dump's file takes a length of 32 bits.
constexpr std::uintmax_t kMaxDumpBytes = std::numeric_limits<std::uint32_t>::max();

// Where the first character starts that the library doesn't take; the length of the text if it takes all.
std::size_t firstInvalidByte(std::string_view utf8) {
  const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
  for (std::size_t start = 0; start < utf8.size();) {
    std::size_t end = start + 1;
    while (end < utf8.size() && continues(utf8[end])) ++end;
    if (!kdx::CWideString(kdx::string(utf8.substr(start, end - start))).initialized()) return start;
    start = end;
  }
  return utf8.size();
}

std::size_t firstInvalidUnit(kdx::wstring_view utf16) {
  for (std::size_t start = 0; start < utf16.size();) {
    const std::size_t length = (utf16[start] & 0xFC00) == 0xD800 ? 2 : 1;
    if (!kdx::CWideString(kdx::wstring(utf16.substr(start, length))).initialized()) return start;
    start += length;
  }
  return utf16.size();
}

// The offsets in messages count from the start of the file, so the mark's length comes on top.
InputText decodeUtf8(const std::string& name, std::string_view bytes, std::size_t markLength) {
  const std::size_t nul = bytes.find('\0');
  if (nul != bytes.npos) {
    const bool maybeUtf16 = markLength == 0 && nul < 2;
    throwInvalid(name, maybeUtf16 ? "NUL character (UTF-16 without a byte order mark?)" : "NUL character",
                 markLength + nul);
  }
  const kdx::CWideString converted{kdx::string(bytes)};
  if (!bytes.empty() && !converted.initialized()) {
    throwInvalid(name, "invalid UTF-8", markLength + firstInvalidByte(bytes));
  }
  return {converted.wString(), bytes.size()};
}

InputText decodeUtf16(const std::string& name, std::string_view bytes, std::size_t markLength, bool bigEndian) {
  const auto byte = [bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  kdx::wstring text(bytes.size() / 2, 0);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = byte(2 * i + (bigEndian ? 0 : 1));
    const int low = byte(2 * i + (bigEndian ? 1 : 0));
    text[i] = static_cast<kdx::wchar>(high << 8 | low);
  }
  const std::size_t nul = text.find(kdx::wchar{});
  if (nul != text.npos) throwInvalid(name, "NUL character", markLength + 2 * nul);
  const kdx::CWideString converted(text);
  if (!text.empty() && !converted.initialized()) {
    throwInvalid(name, "invalid UTF-16", markLength + 2 * firstInvalidUnit(text));
  }
  if (bytes.size() % 2 != 0) throwInvalid(name, "half a UTF-16 unit", markLength + bytes.size() - 1);
  return {std::move(text), converted.aString().size()};
}

[[noreturn]] void throwUnreadable(const std::string& file, const std::string& reason) {
  throw Failure(kUnreadableInput, "can't read '" + file + "': " + reason);
}

constexpr char kTooLarge[] = "a dump must stay below 4 GiB";

// Read to its end, whatever size the file system tells: a file may grow, and some tell none.
std::string readFile(const std::string& file) {
  const std::filesystem::path path = pathOf(file);
  std::error_code error;
  const auto size = static_cast<std::size_t>(std::filesystem::file_size(path, error));
  if (error) throwUnreadable(file, error.message());

  errno = 0;
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throwUnreadable(file, std::generic_category().message(errno));
  std::string bytes;
  std::size_t chunk = std::max<std::size_t>(size, 4096);
  while (stream) {
    if (bytes.size() / 2 > kMaxDumpBytes) throwUnreadable(file, kTooLarge);  // even UTF-16 shrinks to half at best
    const std::size_t before = bytes.size();
    bytes.resize(before + chunk);
    stream.read(bytes.data() + before, static_cast<std::streamsize>(chunk));
    bytes.resize(before + static_cast<std::size_t>(stream.gcount()));
    chunk = 1 << 20;
  }
  if (stream.bad()) throwUnreadable(file, std::generic_category().message(errno));
  return bytes;
}

}  // namespace

InputText decode(const std::string& name, std::string_view bytes) {
  const ByteOrderMark mark = byteOrderMarkOf(bytes);
  const std::string_view content = bytes.substr(mark.bytes.size());
  InputText input = mark.encoding == Encoding::kUtf8
                        ? decodeUtf8(name, content, mark.bytes.size())
                        : decodeUtf16(name, content, mark.bytes.size(), mark.encoding == Encoding::kUtf16BigEndian);
  if (input.utf8Bytes > kMaxDumpBytes) throwUnreadable(name, kTooLarge);
  return input;
}

void InputTexts::check(ProgressStyle progress) {
  Progress checked(progress, "checked", size());
  for (std::size_t i = 0; i < size(); ++i) {
    const std::string content = bytes(i);
    decode(name(i), content);
    fingerprints_.push_back(std::hash<std::string>()(content));
    checked.advance();
  }
}

InputText InputTexts::read(std::size_t index) const {
  const std::string content = bytes(index);
  if (std::hash<std::string>()(content) != fingerprints_.at(index)) {
    throw Failure(kInputChanged, name(index) + " changed while the job ran");
  }
  return decode(name(index), content);
}

std::string InputTexts::bytes(std::size_t index) const {
  return files_.empty() ? kSampleXml : readFile(files_[index]);
}

std::filesystem::path pathOf(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

}  // namespace collect_job
