#include "kdxcommon/base/transcoder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kdxcommon/base/transcoder_blocks.h"

// The existing content of the output is overwritten as long as its size surely suffices, which saves filling and
// copying. The rest of a text is converted a piece at a time into a buffer on the stack, which the first-level cache
// holds, and each piece is appended. The block routines of a level convert as much as they support; the routine for one
// character converts the rest.

namespace kdx {
namespace {

// Counts of input units.
constexpr std::size_t kPiece = 4096;
constexpr std::size_t kLeastOver = 256;        // the least that is worth overwriting existing content
constexpr std::ptrdiff_t kCharactersRun = 64;  // converted one by one before blocks are tried again

constexpr bool isContinuation(Byte byte) {
  return (byte & 0xC0) == 0x80;
}

constexpr bool isSurrogate(std::uint32_t unit) {
  return (unit & 0xF800) == 0xD800;
}

constexpr bool isSurrogatePair(std::uint32_t first, std::uint32_t second) {
  return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

template <typename Unit>
std::size_t length(const Unit* begin, const Unit* end) {
  return static_cast<std::size_t>(end - begin);
}

// Copies blocks of ASCII until one contains something else. A byte pointer may alias anything, even the two pointers,
// so the loop advances copies of them.
template <std::size_t size, typename From, typename To>
void copyAsciiBlocks(const From*& inOut, const From* end, To*& outOut) {
  constexpr std::uint64_t kNotAscii = sizeof(From) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
  const From* in = inOut;
  To* out = outOut;
  for (; end - in >= static_cast<std::ptrdiff_t>(size); in += size, out += size) {
    std::array<std::uint64_t, size * sizeof(From) / 8> words;
    std::memcpy(words.data(), in, sizeof(words));
    std::uint64_t all = 0;
    for (const std::uint64_t word : words) all |= word;
    if ((all & kNotAscii) != 0) break;
    for (std::size_t i = 0; i != size; ++i) out[i] = static_cast<To>(in[i]);
  }
  inOut = in;
  outOut = out;
}

// Copies what is left before `stop`, less than a block, if it ends a block of ASCII: the units before it, which are in
// `out` already, are copied again with it. None of them lies before `begin`.
template <std::size_t size, typename From, typename To>
void copyAsciiTail(const From* begin, const From*& in, const From* stop, To*& out) {
  constexpr auto kSize = static_cast<std::ptrdiff_t>(size);
  if (in >= stop || stop - in >= kSize || stop - begin < kSize) return;
  const From* block = stop - kSize;
  To* to = out - (in - block);
  copyAsciiBlocks<size>(block, stop, to);
  if (block != stop) return;
  in = stop;
  out = to;
}

// Decodes the character at `in` and advances past it. Returns false if there is none.
inline bool decode(const Byte*& in, const Byte* end, wchar*& out) {
  const std::uint32_t lead = *in;
  const auto continues = [&](std::size_t count) {
    if (length(in, end) <= count) return false;
    return std::all_of(in + 1, in + 1 + count, isContinuation);
  };
  if (lead < 0x80) {
    *out++ = static_cast<wchar>(lead);
    in += 1;
    return true;
  }
  if (lead < 0xE0) {
    if (lead < 0xC2 || !continues(1)) return false;
    *out++ = static_cast<wchar>((lead & 0x1F) << 6 | (in[1] & 0x3FU));
    in += 2;
    return true;
  }
  if (lead < 0xF0) {
    if (!continues(2)) return false;
    const std::uint32_t unit = (lead & 0x0F) << 12 | (in[1] & 0x3FU) << 6 | (in[2] & 0x3FU);
    if (unit < 0x800 || isSurrogate(unit)) return false;
    *out++ = static_cast<wchar>(unit);
    in += 3;
    return true;
  }
  if (!continues(3)) return false;
  const std::uint32_t character = (lead & 0x0F) << 18 | (in[1] & 0x3FU) << 12 | (in[2] & 0x3FU) << 6 | (in[3] & 0x3FU);
  if (character < 0x10000 || character > 0x10FFFF) return false;
  *out++ = static_cast<wchar>(0xD7C0 + (character >> 10));
  *out++ = static_cast<wchar>(0xDC00 | (character & 0x3FF));
  in += 4;
  return true;
}

// Encodes the character at `in` and advances past it. Returns false if it is an unpaired surrogate.
inline bool encode(const wchar*& in, const wchar* end, Byte*& out) {
  const auto trail = [](std::uint32_t bits) { return static_cast<Byte>(0x80 | (bits & 0x3F)); };
  const std::uint32_t unit = *in;
  if (unit < 0x80) {
    *out++ = static_cast<Byte>(unit);
  } else if (unit < 0x800) {
    *out++ = static_cast<Byte>(0xC0 | unit >> 6);
    *out++ = trail(unit);
  } else if (!isSurrogate(unit)) {
    *out++ = static_cast<Byte>(0xE0 | unit >> 12);
    *out++ = trail(unit >> 6);
    *out++ = trail(unit);
  } else {
    if (length(in, end) < 2 || !isSurrogatePair(unit, in[1])) return false;
    const std::uint32_t character = 0x10000 + ((unit & 0x3FF) << 10 | (in[1] & 0x3FFU));
    *out++ = static_cast<Byte>(0xF0 | character >> 18);
    *out++ = trail(character >> 12);
    *out++ = trail(character >> 6);
    *out++ = trail(character);
    in += 1;
  }
  in += 1;
  return true;
}

// Returns the sum of `count` over the units, which is 1 for ASCII. A block's sum has the units' own width, so that the
// compiler adds many at once.
template <typename Unit, typename Count>
std::size_t sumOf(const Unit* in, const Unit* end, Count count) {
  constexpr std::ptrdiff_t kBlock = 64;
  std::size_t total = 0;
  for (; end - in >= kBlock; in += kBlock) {
    Unit all = 0;
    for (std::ptrdiff_t i = 0; i != kBlock; ++i) all = static_cast<Unit>(all | in[i]);
    if (all < 0x80) {
      total += kBlock;
      continue;
    }
    Unit sum = 0;
    for (std::ptrdiff_t i = 0; i != kBlock; ++i) sum = static_cast<Unit>(sum + count(in[i]));
    total += sum;
  }
  for (; in != end; ++in) total += count(*in);
  return total;
}

// The level of every processor.

bool decodeBaseline(const Byte*& in, const Byte* stop, const Byte*, wchar*& out) {
  copyAsciiBlocks<32>(in, stop, out);
  return true;
}

void encodeBaseline(const wchar*& in, const wchar* stop, Byte*& out) {
  copyAsciiBlocks<32>(in, stop, out);
}

template <typename From, typename Text>
bool copyIfAscii(const From* in, const From* end, Text& out) {
  if (*in >= 0x80) return false;  // tells most texts in other scripts
  From all = 0;
  for (const From* unit = in; unit != end; ++unit) all |= *unit;
  if (all >= 0x80) return false;
  out.resize(length(in, end));
  std::copy(in, end, out.data());
  return true;
}

constinit const TranscoderBlocks kBaselineBlocks{decodeBaseline,   encodeBaseline, decodeShortAscii,
                                                 encodeShortAscii, decodedSize,    encodedSize};

// Indexed by Instructions; null if the processor lacks them.
using Levels = std::array<const TranscoderBlocks*, 5>;

Levels findLevels() {
  Levels levels{&kBaselineBlocks};
#if KDX_X86_BLOCKS
  const bool counts = __builtin_cpu_supports("popcnt");
  const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi") &&
                      __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("bmi2");
  if (counts && __builtin_cpu_supports("sse4.1")) levels[1] = &kSse41Blocks;
  if (counts && __builtin_cpu_supports("avx2")) levels[2] = &kAvx2Blocks;
  if (counts && avx512) levels[3] = &kAvx512Blocks;
#endif
  levels.back() = *std::find_if(levels.rbegin(), levels.rend(), [](const auto* level) { return level != nullptr; });
  return levels;
}

const TranscoderBlocks* blocksOf(Instructions instructions) {
  static const Levels levels = findLevels();
  return levels[static_cast<std::size_t>(instructions)];
}

// The two directions, as `convert` needs them.

struct Decoder {
  using From = Byte;
  using To = wchar;
  static constexpr auto kShortText = &TranscoderBlocks::decodeShort;
  static constexpr auto kSize = &TranscoderBlocks::decodedSize;
  static constexpr std::size_t kMostPerUnit = 1;

  static bool convertBlocks(const TranscoderBlocks& blocks, const Byte*& in, const Byte* stop, const Byte* end,
                            wchar*& out) {
    return blocks.decode(in, stop, end, out);
  }
  static bool character(const Byte*& in, const Byte* end, wchar*& out) { return decode(in, end, out); }
};

struct Encoder {
  using From = wchar;
  using To = Byte;
  static constexpr auto kShortText = &TranscoderBlocks::encodeShort;
  static constexpr auto kSize = &TranscoderBlocks::encodedSize;
  static constexpr std::size_t kMostPerUnit = 3;

  static bool convertBlocks(const TranscoderBlocks& blocks, const wchar*& in, const wchar* stop, const wchar*,
                            Byte*& out) {
    blocks.encode(in, stop, out);
    return true;
  }
  static bool character(const wchar*& in, const wchar* end, Byte*& out) { return encode(in, end, out); }
};

struct ReplacingEncoder : Encoder {
  static bool character(const wchar*& in, const wchar* end, Byte*& out) {
    if (!encode(in, end, out)) {
      ++in;
      const wchar replacement = 0xFFFD;
      const wchar* next = &replacement;
      encode(next, next + 1, out);
    }
    return true;
  }
};

// Converts the characters that begin before `stop`.
template <typename Codec>
bool convertPiece(const TranscoderBlocks& blocks, const typename Codec::From*& in, const typename Codec::From* stop,
                  const typename Codec::From* end, typename Codec::To*& out) {
  const auto* const begin = in;
  while (in < stop) {
    if (!Codec::convertBlocks(blocks, in, stop, end, out)) return false;
    if (in >= stop) break;
    copyAsciiBlocks<8>(in, stop, out);
    copyAsciiTail<8>(begin, in, stop, out);
    const auto* const resume = stop - in <= kCharactersRun ? stop : in + kCharactersRun;
    while (in < resume) {
      if (!Codec::character(in, end, out)) return false;
    }
  }
  return true;
}

// Sets `out`, whatever it contains, to the converted text. Returns false if the text can't be converted.
template <typename Codec, typename Text>
bool convertAll(const TranscoderBlocks& blocks, const typename Codec::From* in, const typename Codec::From* end,
                Text& out) {
  using To = typename Codec::To;
  constexpr std::size_t kMost = Codec::kMostPerUnit;
  std::array<To, kPiece * kMost + kBlockSlack> buffer;
  std::size_t done = 0;  // units of `out`; those after them are its former content
  while (in != end) {
    const std::size_t rest = length(in, end);
    const std::size_t sure = (std::max(out.size() - done, kBlockSlack) - kBlockSlack) / kMost;
    const bool over = std::min(sure, rest) >= kLeastOver;
    To* const begin = over ? reinterpret_cast<To*>(out.data()) + done : buffer.data();
    To* next = begin;
    if (!convertPiece<Codec>(blocks, in, in + std::min(over ? sure : kPiece, rest), end, next)) return false;
    const std::size_t size = length<To>(begin, next);
    if (!over) {
      out.resize(done);
      if (out.capacity() - done < size) out.reserve(done + size + (blocks.*Codec::kSize)(in, end));
      out.append(reinterpret_cast<const typename Text::value_type*>(begin), size);
    }
    done += size;
  }
  if (out.size() != done) out.resize(done);
  return true;
}

template <typename Codec, typename View, typename Text>
bool convert(View text, Text& out, Instructions instructions) {
  const TranscoderBlocks& blocks = *blocksOf(instructions);
  const auto* const in = reinterpret_cast<const typename Codec::From*>(text.data());
  const auto* const end = in + text.size();
  if (!text.empty() && text.size() <= kShort && (blocks.*Codec::kShortText)(in, end, out)) return true;
  if (convertAll<Codec>(blocks, in, end, out)) return true;
  out.clear();
  return false;
}

}  // namespace

bool decodeShortAscii(const Byte* in, const Byte* end, wstring& out) {
  return copyIfAscii(in, end, out);
}

bool encodeShortAscii(const wchar* in, const wchar* end, string& out) {
  return copyIfAscii(in, end, out);
}

std::size_t decodedSize(const Byte* in, const Byte* end) {
  // One unit for each lead, two for a lead of four bytes.
  return sumOf(in, end, [](Byte byte) { return static_cast<Byte>(!isContinuation(byte) + (byte >= 0xF0)); });
}

std::size_t encodedSize(const wchar* in, const wchar* end) {
  // A surrogate is half of a character of four bytes.
  return sumOf(in, end, [](wchar unit) {
    return static_cast<std::uint16_t>(1 + (unit >= 0x80) + (unit >= 0x800) - isSurrogate(unit));
  });
}

bool offered(Instructions instructions) {
  return blocksOf(instructions) != nullptr;
}

bool utf8ToUtf16(string_view in, wstring& out, Instructions instructions) {
  return convert<Decoder>(in, out, instructions);
}

bool utf16ToUtf8(wstring_view in, string& out, Instructions instructions) {
  return convert<Encoder>(in, out, instructions);
}

void utf16ToUtf8Replacing(wstring_view in, string& out, Instructions instructions) {
  convert<ReplacingEncoder>(in, out, instructions);
}

}  // namespace kdx
