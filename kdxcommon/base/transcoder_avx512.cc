#include "kdxcommon/base/transcoder_blocks.h"

#if KDX_X86_BLOCKS

#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"  // in the compiler's own header
#endif
#include <immintrin.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#define KDX_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi,avx512vbmi2,bmi2,popcnt")))

namespace kdx {
namespace {

using Table = std::array<Byte, 64>;

template <typename Entry>
constexpr Table table(Entry entry) {
  Table result{};
  for (std::size_t i = 0; i != result.size(); ++i) result[i] = static_cast<Byte>(entry(i));
  return result;
}

// For byte n the byte n + 1.
constexpr Table kNext = table([](std::size_t i) { return i + 1; });

// For lane n of 16 bits the bytes n and n + 1, or n + 1 and n + 2.
constexpr Table kPairs = table([](std::size_t i) { return i / 2 + i % 2; });
constexpr Table kNextPairs = table([](std::size_t i) { return i / 2 + i % 2 + 1; });

// For the lower six bits of a lead, the least and the greatest value of the byte after it; the least is out of reach if
// the byte isn't a lead.
constexpr Table kLeastSecond = table([](std::size_t lead) {
  return lead < 0x02 || lead > 0x34 ? 0xFF : lead == 0x20 ? 0xA0 : lead == 0x30 ? 0x90 : 0x80;
});
constexpr Table kMostSecond = table([](std::size_t lead) { return lead == 0x2D ? 0x9F : lead == 0x34 ? 0x8F : 0xBF; });

// The shifts for the groups of six bits, highest first: two for each lane of 16 bits, four for each of 32.
constexpr Table kTwoGroups = table([](std::size_t i) { return i / 2 * 16 % 64 + 6 * (1 - i % 2); });
constexpr Table kFourGroups = table([](std::size_t i) { return i / 4 * 32 % 64 + 6 * (3 - i % 4); });

constexpr int kAAndBOrC = 0xEA;  // for _mm512_ternarylogic_epi32

KDX_AVX512 inline __m512i load(const Table& table) {
  return _mm512_loadu_si512(table.data());
}

KDX_AVX512 inline __m512i bytes(int value) {
  return _mm512_set1_epi8(static_cast<char>(value));
}

KDX_AVX512 inline __m512i units(int value) {
  return _mm512_set1_epi16(static_cast<short>(value));
}

KDX_AVX512 inline __m256i lowHalf(__m512i value) {
  return _mm512_castsi512_si256(value);
}

KDX_AVX512 inline __m256i highHalf(__m512i value) {
  return _mm512_extracti64x4_epi64(value, 1);
}

// Returns a mask of the bits below `count`, which is 0 to 255.
KDX_AVX512 inline std::uint64_t bitsBelow(std::ptrdiff_t count) {
  return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));
}

// Loads zeros from `end` on.
KDX_AVX512 inline __m512i load(const Byte* from, const Byte* end) {
  if (end - from >= 64) return _mm512_loadu_si512(from);
  return _mm512_maskz_loadu_epi8(bitsBelow(end - from), from);
}

KDX_AVX512 inline __m512i load(const wchar* from, const wchar* end) {
  if (end - from >= 32) return _mm512_loadu_si512(from);
  return _mm512_maskz_loadu_epi16(static_cast<__mmask32>(bitsBelow(end - from)), from);
}

// The kinds of 64 bytes, bit n for byte n.
struct Kinds {
  std::uint64_t continuations;
  std::uint64_t multiple;  // leads of two bytes or more
  std::uint64_t three;     // leads of three bytes
  std::uint64_t wrong;
};

KDX_AVX512 inline bool hasFour(__m512i block) {
  return _mm512_cmpge_epu8_mask(block, bytes(0xF0)) != 0;
}

// The block must have no lead of four bytes. `next` are the bytes that follow each; those that are `due` belong to a
// character before the block.
KDX_AVX512 inline Kinds kindsOf(__m512i block, __m512i next, std::uint64_t due) {
  Kinds kinds;
  kinds.continuations = _mm512_cmplt_epi8_mask(block, bytes(0xC0));
  kinds.multiple = _mm512_cmpge_epu8_mask(block, bytes(0xC0));
  kinds.three = _mm512_cmpge_epu8_mask(block, bytes(0xE0));
  kinds.wrong = (kinds.continuations ^ (kinds.multiple << 1 | kinds.three << 2 | due)) |
                _mm512_mask_cmplt_epu8_mask(kinds.multiple, next, _mm512_permutexvar_epi8(block, load(kLeastSecond))) |
                _mm512_mask_cmpgt_epu8_mask(kinds.multiple, next, _mm512_permutexvar_epi8(block, load(kMostSecond)));
  return kinds;
}

// The first units of a vector.
struct Units {
  __m512i lanes;
  int count;
};

// Decodes the characters that begin in the lower half of the block.
KDX_AVX512 inline Units decodeHalf(__m512i block, const Kinds& kinds, int shift, std::uint64_t present) {
  const auto multiple = static_cast<__mmask32>(kinds.multiple >> shift);
  const auto three = static_cast<__mmask32>(kinds.three >> shift);
  const auto kept = static_cast<__mmask32>((present & ~kinds.continuations) >> shift);
  const __m512i first = _mm512_cvtepu8_epi16(lowHalf(block));
  // The two bytes with the lower twelve bits.
  const __m512i indexes = _mm512_mask_blend_epi16(three, load(kPairs), load(kNextPairs));
  const __m512i pairs = _mm512_and_si512(_mm512_permutexvar_epi8(indexes, block), bytes(0x3F));
  const __m512i upToTwo = _mm512_mask_maddubs_epi16(first, multiple, pairs, units(0x0140));
  const __m512i decoded = _mm512_mask_add_epi16(upToTwo, three, upToTwo, _mm512_slli_epi16(first, 12));
  return {_mm512_maskz_compress_epi16(kept, decoded), std::popcount(kept)};
}

KDX_AVX512 bool decode(const Byte*& inOut, const Byte* stop, const Byte* end, wchar*& outOut) {
  const Byte* in = inOut;
  wchar* out = outOut;
  std::uint64_t due = 0;  // bit n: byte n of what follows must be a continuation byte
  std::uint64_t wrong = 0;
  while (in < stop) {
    const std::ptrdiff_t count = std::min<std::ptrdiff_t>(end - in, 64);
    const __m512i block = load(in, end);
    if ((_mm512_movepi8_mask(block) | due) == 0) {
      _mm512_storeu_si512(out, _mm512_cvtepu8_epi16(lowHalf(block)));
      _mm512_storeu_si512(out + 32, _mm512_cvtepu8_epi16(highHalf(block)));
      out += count;
    } else {
      if (hasFour(block)) break;
      const Kinds kinds = kindsOf(block, load(in + 1, end), due);
      due = kinds.multiple >> 63 | kinds.three >> 62;
      wrong |= kinds.wrong;
      for (const int half : {0, 32}) {
        const Units decoded = decodeHalf(load(std::min(in + half, end), end), kinds, half, bitsBelow(count));
        _mm512_storeu_si512(out, decoded.lanes);
        out += decoded.count;
      }
    }
    in += count;
  }
  // The last character is written already; only its bytes after the block remain to be checked.
  for (; due != 0; due >>= 1) {
    if (in == end || (*in++ & 0xC0) != 0x80) return false;
  }
  inOut = in;
  outOut = out;
  return wrong == 0;
}

KDX_AVX512 inline void storeFirst(wchar* out, Units decoded) {
  _mm512_mask_storeu_epi16(out, static_cast<__mmask32>(bitsBelow(decoded.count)), decoded.lanes);
}

KDX_AVX512 bool decodeShort(const Byte* in, const Byte* end, wstring& out) {
  const __m512i block = load(in, end);
  Units low;
  Units high;
  if (_mm512_movepi8_mask(block) == 0) {
    const auto count = static_cast<int>(end - in);
    low = {_mm512_cvtepu8_epi16(lowHalf(block)), std::min(count, 32)};
    high = {_mm512_cvtepu8_epi16(highHalf(block)), count - low.count};
  } else {
    if (hasFour(block)) return false;
    const __m512i next = _mm512_maskz_permutexvar_epi8(bitsBelow(63), load(kNext), block);
    const Kinds kinds = kindsOf(block, next, 0);
    if ((kinds.wrong | kinds.multiple >> 63 | kinds.three >> 62) != 0) return false;
    low = decodeHalf(block, kinds, 0, bitsBelow(end - in));
    high = decodeHalf(_mm512_zextsi256_si512(highHalf(block)), kinds, 32, bitsBelow(end - in));
  }
  out.resize(static_cast<std::size_t>(low.count) + static_cast<std::size_t>(high.count));
  storeFirst(out.data(), low);
  storeFirst(out.data() + low.count, high);
  return true;
}

// The first bytes of a vector.
struct Encoded {
  __m512i bytes;
  int count;
};

// Closes the gaps that shorter characters leave, whose groups lie at the end of their lanes. `marks` are the bits that
// mark leads and continuation bytes, none in ASCII; `last` the last byte of each lane that contains a unit.
KDX_AVX512 inline Encoded closeGaps(__m512i encoded, __m512i marks, std::uint64_t last) {
  const __mmask64 kept = _kor_mask64(_mm512_test_epi8_mask(marks, marks), _cvtu64_mask64(last));
  return {_mm512_maskz_compress_epi8(kept, encoded), std::popcount(_cvtmask64_u64(kept))};
}

// Encodes up to 32 units below U+0800.
KDX_AVX512 inline Encoded encodeUpToTwo(__m512i lanes, std::ptrdiff_t count) {
  const __mmask32 multiple = _mm512_test_epi16_mask(lanes, units(0xFF80));
  const __m512i groups = _mm512_multishift_epi64_epi8(load(kTwoGroups), lanes);
  const __m512i marks = _mm512_maskz_mov_epi16(multiple, units(0x80C0));
  const __m512i two = _mm512_ternarylogic_epi32(groups, bytes(0x3F), marks, kAAndBOrC);
  const __m512i encoded = _mm512_mask_slli_epi16(two, ~multiple, lanes, 8);
  return closeGaps(encoded, marks, bitsBelow(2 * count) & 0xAAAAAAAAAAAAAAAA);
}

// Encodes up to 16 units, none of them a surrogate.
KDX_AVX512 inline Encoded encodeUpToThree(__m256i narrowLanes, std::ptrdiff_t count) {
  const __m512i lanes = _mm512_cvtepu16_epi32(narrowLanes);
  const __mmask16 multiple = _mm512_cmpgt_epu32_mask(lanes, _mm512_set1_epi32(0x7F));
  const __mmask16 three = _mm512_cmpgt_epu32_mask(lanes, _mm512_set1_epi32(0x7FF));
  const __m512i groups = _mm512_multishift_epi64_epi8(load(kFourGroups), lanes);
  const __m512i marksOfTwo = _mm512_maskz_set1_epi32(multiple, static_cast<int>(0x80C00000));
  const __m512i marks = _mm512_mask_set1_epi32(marksOfTwo, three, static_cast<int>(0x8080E000));
  const __m512i upToThree = _mm512_ternarylogic_epi32(groups, bytes(0x3F), marks, kAAndBOrC);
  const __m512i encoded = _mm512_mask_slli_epi32(upToThree, static_cast<__mmask16>(~multiple), lanes, 24);
  return closeGaps(encoded, marks, bitsBelow(4 * count) & 0x8888888888888888);
}

// Up to 32 units in two parts, of which the second may be empty.
struct EncodedBlock {
  Encoded low;
  Encoded high;

  std::size_t size() const { return static_cast<std::size_t>(low.count) + static_cast<std::size_t>(high.count); }
};

// Returns false if one of the units is a surrogate.
KDX_AVX512 inline bool encodeBlock(__m512i lanes, std::ptrdiff_t count, EncodedBlock& block) {
  const __m512i upperBits = _mm512_and_si512(lanes, units(0xF800));
  block.high = {_mm512_setzero_si512(), 0};
  if (_mm512_test_epi16_mask(lanes, units(0xFF80)) == 0) {
    block.low = {_mm512_zextsi256_si512(_mm512_maskz_cvtepi16_epi8(~0U, lanes)), static_cast<int>(count)};
  } else if (_mm512_test_epi16_mask(upperBits, upperBits) == 0) {
    block.low = encodeUpToTwo(lanes, count);
  } else {
    if (_mm512_cmpeq_epi16_mask(upperBits, units(0xD800)) != 0) return false;
    block.low = encodeUpToThree(lowHalf(lanes), std::min<std::ptrdiff_t>(count, 16));
    block.high = encodeUpToThree(highHalf(lanes), std::max<std::ptrdiff_t>(count - 16, 0));
  }
  return true;
}

KDX_AVX512 void encode(const wchar*& inOut, const wchar* stop, Byte*& outOut) {
  const wchar* in = inOut;
  Byte* out = outOut;
  while (in < stop) {
    const std::ptrdiff_t count = std::min<std::ptrdiff_t>(stop - in, 32);
    EncodedBlock block;
    if (!encodeBlock(load(in, stop), count, block)) break;
    _mm512_storeu_si512(out, block.low.bytes);
    if (block.high.count != 0) _mm512_storeu_si512(out + block.low.count, block.high.bytes);
    out += block.size();
    in += count;
  }
  inOut = in;
  outOut = out;
}

KDX_AVX512 inline Byte* storeFirst(Byte* out, const Encoded& encoded) {
  _mm512_mask_storeu_epi8(out, bitsBelow(encoded.count), encoded.bytes);
  return out + encoded.count;
}

KDX_AVX512 inline Byte* storeFirst(Byte* out, const EncodedBlock& block) {
  out = storeFirst(out, block.low);
  return block.high.count == 0 ? out : storeFirst(out, block.high);
}

KDX_AVX512 bool encodeShort(const wchar* in, const wchar* end, string& out) {
  const std::ptrdiff_t count = end - in;
  const __m512i low = load(in, end);
  const __m512i high = load(std::min(in + 32, end), end);
  if (_mm512_test_epi16_mask(_mm512_or_si512(low, high), units(0xFF80)) == 0) {
    out.resize(static_cast<std::size_t>(count));
    const __m512i both =
        _mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtepi16_epi8(low)), _mm512_cvtepi16_epi8(high), 1);
    storeFirst(reinterpret_cast<Byte*>(out.data()), Encoded{both, static_cast<int>(count)});
    return true;
  }
  EncodedBlock first;
  EncodedBlock second{};
  if (!encodeBlock(low, std::min<std::ptrdiff_t>(count, 32), first)) return false;
  if (count > 32 && !encodeBlock(high, count - 32, second)) return false;
  out.resize(first.size() + second.size());
  Byte* const next = storeFirst(reinterpret_cast<Byte*>(out.data()), first);
  if (count > 32) storeFirst(next, second);
  return true;
}

KDX_AVX512 std::size_t countDecoded(const Byte* in, const Byte* end) {
  std::ptrdiff_t size = 0;
  for (; in < end; in += 64) {
    const __m512i block = load(in, end);
    const std::uint64_t kept =
        bitsBelow(std::min<std::ptrdiff_t>(end - in, 64)) & ~_mm512_cmplt_epi8_mask(block, bytes(0xC0));
    size += std::popcount(kept) + std::popcount(_mm512_cmpge_epu8_mask(block, bytes(0xF0)));
  }
  return static_cast<std::size_t>(size);
}

KDX_AVX512 std::size_t countEncoded(const wchar* in, const wchar* end) {
  std::ptrdiff_t size = end - in;
  for (; in < end; in += 32) {
    const __m512i lanes = load(in, end);
    const __m512i upperBits = _mm512_and_si512(lanes, units(0xF800));
    size += std::popcount(_mm512_test_epi16_mask(lanes, units(0xFF80))) +
            std::popcount(_mm512_test_epi16_mask(upperBits, upperBits)) -
            std::popcount(_mm512_cmpeq_epi16_mask(upperBits, units(0xD800)));
  }
  return static_cast<std::size_t>(size);
}

}  // namespace

constinit const TranscoderBlocks kAvx512Blocks{decode, encode, decodeShort, encodeShort, countDecoded, countEncoded};

}  // namespace kdx

#endif
