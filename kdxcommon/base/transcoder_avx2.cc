#include "kdxcommon/base/transcoder_shuffles.h"

#if KDX_X86_BLOCKS

#include <immintrin.h>

#include <bit>
#include <cstddef>

#define KDX_AVX2 __attribute__((target("avx2,popcnt")))

namespace kdx {
namespace {

constexpr std::ptrdiff_t kBlock = 32;

KDX_AVX2 inline __m128i loadHalf(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

KDX_AVX2 inline __m256i load(const void* from) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(from));
}

KDX_AVX2 inline void storeHalf(void* to, __m128i value) {
  _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

KDX_AVX2 inline void store(void* to, __m256i value) {
  _mm256_storeu_si256(static_cast<__m256i*>(to), value);
}

KDX_AVX2 inline __m256i bytes(int value) {
  return _mm256_set1_epi8(static_cast<char>(value));
}

KDX_AVX2 inline __m256i units(int value) {
  return _mm256_set1_epi16(static_cast<short>(value));
}

KDX_AVX2 inline unsigned mask(__m256i value) {
  return static_cast<unsigned>(_mm256_movemask_epi8(value));
}

KDX_AVX2 inline __m256i atLeast(__m256i value, int limit) {
  return _mm256_cmpeq_epi8(_mm256_max_epu8(value, bytes(limit)), value);
}

// Shuffles each half of 16 bytes with its own shuffle.
KDX_AVX2 inline __m256i shuffleHalves(__m256i value, const Shuffles& shuffles, unsigned low, unsigned high) {
  const __m256i shuffle = _mm256_set_m128i(loadHalf(shuffles[high].data()), loadHalf(shuffles[low].data()));
  return _mm256_shuffle_epi8(value, shuffle);
}

// Decodes each of the 16 bytes at `in` as the lead of a character of up to three bytes and writes those that are
// `kept`.
KDX_AVX2 inline wchar* decodeSixteen(const Byte* in, unsigned kept, wchar* out) {
  const __m256i lead = _mm256_cvtepu8_epi16(loadHalf(in));
  const __m256i second = _mm256_and_si256(_mm256_cvtepu8_epi16(loadHalf(in + 1)), units(0x3F));
  const __m256i third = _mm256_and_si256(_mm256_cvtepu8_epi16(loadHalf(in + 2)), units(0x3F));
  const __m256i two = _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(lead, units(0x1F)), 6), second);
  const __m256i three =
      _mm256_or_si256(_mm256_or_si256(_mm256_slli_epi16(lead, 12), _mm256_slli_epi16(second, 6)), third);
  const __m256i upToTwo = _mm256_blendv_epi8(lead, two, _mm256_cmpgt_epi16(lead, units(0xBF)));
  const __m256i decoded = _mm256_blendv_epi8(upToTwo, three, _mm256_cmpgt_epi16(lead, units(0xDF)));
  const unsigned low = kept & 0xFF;
  const unsigned high = kept >> 8 & 0xFF;
  const __m256i closed = shuffleHalves(decoded, kKeepLanes, low, high);
  storeHalf(out, _mm256_castsi256_si128(closed));
  out += std::popcount(low);
  storeHalf(out, _mm256_extracti128_si256(closed, 1));
  return out + std::popcount(high);
}

// Sets all bits of a byte if `first` and the byte after it begin an overlong form (C0, C1, E0 before 80 to 9F) or a
// surrogate (ED before A0 to BF).
KDX_AVX2 inline __m256i misencoded(__m256i first, __m256i second) {
  const __m256i upper = atLeast(second, 0xA0);
  const __m256i overlongTwo = _mm256_cmpeq_epi8(_mm256_and_si256(first, bytes(0xFE)), bytes(0xC0));
  const __m256i overlongThree = _mm256_andnot_si256(upper, _mm256_cmpeq_epi8(first, bytes(0xE0)));
  const __m256i surrogate = _mm256_and_si256(upper, _mm256_cmpeq_epi8(first, bytes(0xED)));
  return _mm256_or_si256(_mm256_or_si256(overlongTwo, overlongThree), surrogate);
}

// Encodes eight units, none of them a surrogate.
KDX_AVX2 inline Byte* encodeEight(__m128i eight, Byte* out) {
  const __m256i lanes = _mm256_cvtepu16_epi32(eight);
  const __m256i multiple = _mm256_cmpgt_epi32(lanes, _mm256_set1_epi32(0x7F));
  const __m256i three = _mm256_cmpgt_epi32(lanes, _mm256_set1_epi32(0x7FF));
  const __m256i last = _mm256_slli_epi32(lanes, 16);
  const __m256i bits = _mm256_or_si256(
      _mm256_or_si256(_mm256_srli_epi32(lanes, 12), _mm256_and_si256(last, _mm256_set1_epi32(0x3F0000))),
      _mm256_and_si256(_mm256_slli_epi32(lanes, 2), _mm256_set1_epi32(0x3F00)));
  const __m256i marks =
      _mm256_or_si256(_mm256_set1_epi32(0x8080E0), _mm256_andnot_si256(three, _mm256_set1_epi32(0x4000)));
  const __m256i encoded = _mm256_blendv_epi8(last, _mm256_or_si256(bits, marks), multiple);
  const auto twoOrMore = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(multiple)));
  const auto threeOrMore = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(three)));
  const unsigned low = (twoOrMore & 0x0F) | (threeOrMore & 0x0F) << 4;
  const unsigned high = twoOrMore >> 4 | (threeOrMore & 0xF0);
  const __m256i closed = shuffleHalves(encoded, kCloseGaps, low, high);
  storeHalf(out, _mm256_castsi256_si128(closed));
  out += 4 + std::popcount(low);
  storeHalf(out, _mm256_extracti128_si256(closed, 1));
  return out + 4 + std::popcount(high);
}

// Decodes each of the 32 bytes as a lead, with the two bytes after it, and discards the results of continuation bytes.
KDX_AVX2 bool decode(const Byte*& inOut, const Byte* stop, const Byte* end, wchar*& outOut) {
  constexpr std::ptrdiff_t kLookahead = 2;
  const Byte* in = inOut;
  wchar* out = outOut;
  std::uint64_t due = 0;   // bit n: byte n of what follows must be a continuation byte
  unsigned misplaced = 0;  // continuation bytes that were not due, or other bytes where one was
  __m256i wrong = _mm256_setzero_si256();
  for (; in < stop && end - in >= kBlock; in += kBlock) {
    const __m256i first = load(in);
    const unsigned notAscii = mask(first);
    if ((notAscii | due) == 0) {
      store(out, _mm256_cvtepu8_epi16(loadHalf(in)));
      store(out + 16, _mm256_cvtepu8_epi16(loadHalf(in + 16)));
      out += kBlock;
      continue;
    }
    if (end - in < kBlock + kLookahead || mask(atLeast(first, 0xF0)) != 0) break;
    const unsigned continuations = mask(_mm256_cmpgt_epi8(bytes(0xC0), first));
    due |= std::uint64_t{notAscii & ~continuations} << 1 | std::uint64_t{mask(atLeast(first, 0xE0))} << 2;
    misplaced |= static_cast<unsigned>(due) ^ continuations;
    due >>= 32;
    wrong = _mm256_or_si256(wrong, misencoded(first, load(in + 1)));
    out = decodeSixteen(in, ~continuations & 0xFFFF, out);
    out = decodeSixteen(in + 16, ~continuations >> 16, out);
  }
  // The last character is written already; only its bytes after the block remain to be checked.
  for (; due != 0; due >>= 1) misplaced |= static_cast<unsigned>((*in++ & 0xC0) != 0x80);
  inOut = in;
  outOut = out;
  return (misplaced | mask(wrong)) == 0;
}

KDX_AVX2 void encode(const wchar*& inOut, const wchar* stop, Byte*& outOut) {
  const wchar* in = inOut;
  Byte* out = outOut;
  for (; stop - in >= 16; in += 16) {
    const __m256i lanes = load(in);
    const __m128i low = _mm256_castsi256_si128(lanes);
    const __m128i high = _mm256_extracti128_si256(lanes, 1);
    if (_mm256_testz_si256(lanes, units(0xFF80)) != 0) {
      storeHalf(out, _mm_packus_epi16(low, high));
      out += 16;
      continue;
    }
    if (mask(_mm256_cmpeq_epi16(_mm256_and_si256(lanes, units(0xF800)), units(0xD800))) != 0) break;
    out = encodeEight(low, out);
    out = encodeEight(high, out);
  }
  inOut = in;
  outOut = out;
}

}  // namespace

constinit const TranscoderBlocks kAvx2Blocks{decode,           encode,      decodeShortAscii,
                                             encodeShortAscii, decodedSize, encodedSize};

}  // namespace kdx

#endif
