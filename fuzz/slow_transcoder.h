// The transcoder once more, slow and plain: one character at a time. Tests and fuzz targets hold each level of the fast
// one against it.

#ifndef KDXCOMMON_FUZZ_SLOW_TRANSCODER_H_
#define KDXCOMMON_FUZZ_SLOW_TRANSCODER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/base/transcoder.h"

namespace kdx::testing {

struct InstructionLevel {
  const char* name;
  Instructions instructions;
};

inline void PrintTo(const InstructionLevel& level, std::ostream* out) {
  *out << level.name;
}

inline constexpr InstructionLevel kInstructionLevels[] = {{"Baseline", Instructions::kBaseline},
                                                          {"Sse41", Instructions::kSse41},
                                                          {"Avx2", Instructions::kAvx2},
                                                          {"Avx512", Instructions::kAvx512}};

inline void appendUtf8(std::uint32_t character, string& out) {
  const auto add = [&](std::uint32_t byte) { out += static_cast<char>(byte); };
  const auto trail = [&](int shift) { add(0x80 + character / (1U << shift) % 64); };
  if (character < 0x80) return add(character);
  if (character < 0x800) return add(0xC0 + character / 64), trail(0);
  if (character < 0x10000) return add(0xE0 + character / 4096), trail(6), trail(0);
  add(0xF0 + character / 262144), trail(12), trail(6), trail(0);
}

inline void appendUtf16(std::uint32_t character, wstring& out) {
  if (character < 0x10000) return out.push_back(static_cast<wchar>(character));
  out += static_cast<wchar>(0xD800 + (character - 0x10000) / 1024);
  out += static_cast<wchar>(0xDC00 + (character - 0x10000) % 1024);
}

/// Nothing where `text` isn't UTF-8. Puts the bits together whatever they are and looks whether they give the same
/// bytes again.
inline std::optional<wstring> decodeSlowly(string_view text) {
  wstring out;
  while (!text.empty()) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint32_t character = size == 1 ? lead : lead & (0x7FU >> size);
    for (std::size_t i = 1; i < size && i < text.size(); ++i)
      character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
    string again;
    appendUtf8(character, again);
    if (again != text.substr(0, size) || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) {
      return std::nullopt;
    }
    appendUtf16(character, out);
    text.remove_prefix(size);
  }
  return out;
}

/// With U+FFFD in the place of each surrogate without its partner; `paired` tells whether there was none.
inline string encodeSlowly(wstring_view text, bool& paired) {
  string out;
  paired = true;
  for (; !text.empty(); text.remove_prefix(1)) {
    const std::uint32_t unit = text[0], next = text.size() == 1 ? 0 : text[1];
    const bool surrogate = unit >> 11 == 0x1B, pair = unit >> 10 == 0x36 && next >> 10 == 0x37;
    paired = paired && surrogate == pair;
    appendUtf8(pair ? 0x10000 + (unit - 0xD800) * 1024 + (next - 0xDC00) : surrogate ? 0xFFFD : unit, out);
    if (pair) text.remove_prefix(1);
  }
  return out;
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_FUZZ_SLOW_TRANSCODER_H_
