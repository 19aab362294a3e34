#include "input_text.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "kdxcommon/inhouse/zqlib/utf_conversion.h"
#include "sample_xml.h"

namespace {

// On Windows the standard input is in text mode, which ends at a byte 0x1A and would truncate UTF-16.
constexpr bool kTextInput = std::filesystem::path::preferred_separator != '/';

// Uses the C library's streams since they set `errno`, for the standard input as well as for files and pipes.
std::string readBytes(const std::string& name) {
  constexpr std::size_t kChunk = 1 << 20;
  const auto close = [](std::FILE* file) { return file == stdin ? 0 : std::fclose(file); };
  const std::unique_ptr<std::FILE, decltype(close)> file(name == "-" ? stdin : std::fopen(name.c_str(), "rb"), close);
  std::string bytes;
  while (file && !std::feof(file.get()) && !std::ferror(file.get())) {
    const std::size_t size = bytes.size();
    bytes.resize(size + kChunk);
    bytes.resize(size + std::fread(&bytes[size], 1, kChunk, file.get()));
  }
  const int error = errno;
  if (file && !std::ferror(file.get())) return bytes;
  throw Failure(kUnreadable, "can't read '" + name + "': " + std::generic_category().message(error));
}

// Converts UTF-16 to UTF-8. Returns false if it isn't valid or contains a NUL character.
bool toUtf8(std::string& text, bool bigEndian) {
  const auto byte = [&text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  kdx::wstring units(text.size() / 2, 0);
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<kdx::wchar>(byte(2 * i + (bigEndian ? 0 : 1)) << 8 | byte(2 * i + (bigEndian ? 1 : 0)));
  }
  const bool whole = text.size() % 2 == 0 && units.find(kdx::wchar{}) == units.npos;
  std::string().swap(text);  // frees memory: two forms of a large text are enough
  return whole && kdx::WideChar2UTF8String(units, text) != 0;
}

// Returns the encoding named by the XML declaration, as a view into `text`; empty if none is named.
std::string_view declaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml") || text.find_first_of(" \t\r\n") != 5) return {};
  text = text.substr(0, text.find("?>"));
  const std::size_t open = text.find_first_of("\"'", text.find("encoding"));
  const std::size_t close = open == text.npos ? open : text.find(text[open], open + 1);
  return close == text.npos ? std::string_view() : text.substr(open + 1, close - open - 1);
}

// The dump will be UTF-8, so its XML declaration must not name another encoding. A wrong one is corrected if a byte
// order mark determines the encoding, or if the text is ASCII and the declared encoding contains ASCII. Returns false
// if the declared encoding may be the actual one.
bool declareUtf8(std::string& text, bool marked) {
  const std::string_view declared = declaredEncoding(text);
  std::string encoding(declared);
  for (char& c : encoding) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (encoding.empty() || encoding == "utf-8") return true;
  const auto ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  // In these, bytes of ASCII stand for other characters.
  const bool sevenBits = encoding == "utf-7" || encoding.starts_with("iso-2022") || encoding.starts_with("hz");
  if (!marked && (sevenBits || !std::ranges::all_of(text, ascii))) return false;
  text.replace(static_cast<std::size_t>(declared.data() - text.data()), declared.size(), "UTF-8");
  return true;
}

}  // namespace

InputText readInput(const std::string& name) {
  std::string text = name.empty() ? kSampleXml : readBytes(name);
  const auto invalid = [&name](const char* reason) { return Failure(kInvalid, "'" + name + "' " + reason); };
  const bool bigEndian = text.starts_with("\xFE\xFF");
  const bool utf16 = bigEndian || text.starts_with("\xFF\xFE");
  const bool marked = utf16 || text.starts_with("\xEF\xBB\xBF");
  if (marked) text.erase(0, utf16 ? 2 : 3);
  if (utf16 && name == "-" && kTextInput) throw invalid("is UTF-16, which can't be read from here: name the file");
  if (utf16 && !toUtf8(text, bigEndian)) throw invalid("is not valid UTF-16");
  if (text.find('\0') != text.npos) throw invalid("holds a NUL character: UTF-16 without a byte order mark?");
  if (!declareUtf8(text, marked)) throw invalid("declares another encoding: convert it to UTF-8");
  InputText input = {{}, text.size()};
  if (kdx::UTF8String2WideChar(input.text, text) == 0) throw invalid("is not valid UTF-8");
  return input;
}
