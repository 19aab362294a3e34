#include "kdxcommon/base/transcoder_shuffles.h"

#if KDX_X86_BLOCKS

#include <immintrin.h>

#include <bit>
#include <cstddef>

#define KDX_SSE41 __attribute__((target("sse4.1,popcnt")))

namespace kdx {
namespace {

constexpr std::ptrdiff_t kBlock = 32;

KDX_SSE41 inline __m128i load(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

KDX_SSE41 inline void store(void* to, __m128i value) {
  _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

KDX_SSE41 inline __m128i bytes(int value) {
  return _mm_set1_epi8(static_cast<char>(value));
}

KDX_SSE41 inline __m128i units(int value) {
  return _mm_set1_epi16(static_cast<short>(value));
}

KDX_SSE41 inline unsigned mask(__m128i value) {
  return static_cast<unsigned>(_mm_movemask_epi8(value));
}

KDX_SSE41 inline __m128i atLeast(__m128i value, int limit) {
  return _mm_cmpeq_epi8(_mm_max_epu8(value, bytes(limit)), value);
}

// Decodes every lane as the lead of a character of up to three bytes and writes those lanes that are `kept`.
KDX_SSE41 inline wchar* decodeEight(__m128i lead, __m128i second, __m128i third, unsigned kept, wchar* out) {
  const __m128i two = _mm_or_si128(_mm_slli_epi16(_mm_and_si128(lead, units(0x1F)), 6), second);
  const __m128i three = _mm_or_si128(_mm_or_si128(_mm_slli_epi16(lead, 12), _mm_slli_epi16(second, 6)), third);
  const __m128i upToTwo = _mm_blendv_epi8(lead, two, _mm_cmpgt_epi16(lead, units(0xBF)));
  const __m128i decoded = _mm_blendv_epi8(upToTwo, three, _mm_cmpgt_epi16(lead, units(0xDF)));
  store(out, _mm_shuffle_epi8(decoded, load(kKeepLanes[kept].data())));
  return out + std::popcount(kept);
}

// Sets all bits of a byte if `first` and the byte after it begin an overlong form (C0, C1, E0 before 80 to 9F) or a
// surrogate (ED before A0 to BF).
KDX_SSE41 inline __m128i misencoded(__m128i first, __m128i second) {
  const __m128i upper = atLeast(second, 0xA0);
  const __m128i overlongTwo = _mm_cmpeq_epi8(_mm_and_si128(first, bytes(0xFE)), bytes(0xC0));
  const __m128i overlongThree = _mm_andnot_si128(upper, _mm_cmpeq_epi8(first, bytes(0xE0)));
  const __m128i surrogate = _mm_and_si128(upper, _mm_cmpeq_epi8(first, bytes(0xED)));
  return _mm_or_si128(_mm_or_si128(overlongTwo, overlongThree), surrogate);
}

// Encodes four units, none of them a surrogate.
KDX_SSE41 inline Byte* encodeFour(__m128i lanes, Byte* out) {
  const __m128i multiple = _mm_cmpgt_epi32(lanes, _mm_set1_epi32(0x7F));
  const __m128i three = _mm_cmpgt_epi32(lanes, _mm_set1_epi32(0x7FF));
  const __m128i last = _mm_slli_epi32(lanes, 16);
  const __m128i bits =
      _mm_or_si128(_mm_or_si128(_mm_srli_epi32(lanes, 12), _mm_and_si128(last, _mm_set1_epi32(0x3F0000))),
                   _mm_and_si128(_mm_slli_epi32(lanes, 2), _mm_set1_epi32(0x3F00)));
  const __m128i marks = _mm_or_si128(_mm_set1_epi32(0x8080E0), _mm_andnot_si128(three, _mm_set1_epi32(0x4000)));
  const __m128i encoded = _mm_blendv_epi8(last, _mm_or_si128(bits, marks), multiple);
  const auto index = static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(multiple)) |
                                           _mm_movemask_ps(_mm_castsi128_ps(three)) << 4);
  store(out, _mm_shuffle_epi8(encoded, load(kCloseGaps[index].data())));
  return out + 4 + std::popcount(index);
}

// Decodes each of the 16 bytes as a lead, with the two bytes after it, and discards the results of continuation bytes.
KDX_SSE41 bool decode(const Byte*& inOut, const Byte* stop, const Byte* end, wchar*& outOut) {
  constexpr std::ptrdiff_t kLookahead = 2;
  constexpr std::ptrdiff_t kHalf = kBlock / 2;
  const __m128i zero = _mm_setzero_si128();
  const Byte* in = inOut;
  wchar* out = outOut;
  unsigned due = 0;        // bit n: byte n of what follows must be a continuation byte
  unsigned misplaced = 0;  // continuation bytes that were not due, or other bytes where one was
  __m128i wrong = zero;
  for (; in < stop && end - in >= kBlock; in += kBlock) {
    const __m128i low = load(in);
    const __m128i high = load(in + kHalf);
    const __m128i most = _mm_max_epu8(low, high);
    if ((mask(most) | due) == 0) {
      store(out, _mm_unpacklo_epi8(low, zero));
      store(out + 8, _mm_unpackhi_epi8(low, zero));
      store(out + 16, _mm_unpacklo_epi8(high, zero));
      store(out + 24, _mm_unpackhi_epi8(high, zero));
      out += kBlock;
      continue;
    }
    if (end - in < kBlock + kLookahead || mask(atLeast(most, 0xF0)) != 0) break;
    for (std::ptrdiff_t half = 0; half != kBlock; half += kHalf) {
      const __m128i first = load(in + half);
      const __m128i second = load(in + half + 1);
      const __m128i secondBits = _mm_and_si128(second, bytes(0x3F));
      const __m128i thirdBits = _mm_and_si128(load(in + half + 2), bytes(0x3F));
      const unsigned continuations = mask(_mm_cmplt_epi8(first, bytes(0xC0)));
      due |= (mask(first) & ~continuations) << 1 | mask(atLeast(first, 0xE0)) << 2;
      misplaced |= (due & 0xFFFF) ^ continuations;
      due >>= 16;
      wrong = _mm_or_si128(wrong, misencoded(first, second));
      out = decodeEight(_mm_unpacklo_epi8(first, zero), _mm_unpacklo_epi8(secondBits, zero),
                        _mm_unpacklo_epi8(thirdBits, zero), ~continuations & 0xFF, out);
      out = decodeEight(_mm_unpackhi_epi8(first, zero), _mm_unpackhi_epi8(secondBits, zero),
                        _mm_unpackhi_epi8(thirdBits, zero), ~continuations >> 8 & 0xFF, out);
    }
  }
  // The last character is written already; only its bytes after the block remain to be checked.
  for (; due != 0; due >>= 1) misplaced |= static_cast<unsigned>((*in++ & 0xC0) != 0x80);
  inOut = in;
  outOut = out;
  return (misplaced | mask(wrong)) == 0;
}

KDX_SSE41 void encode(const wchar*& inOut, const wchar* stop, Byte*& outOut) {
  const __m128i zero = _mm_setzero_si128();
  const wchar* in = inOut;
  Byte* out = outOut;
  for (; stop - in >= 16; in += 16) {
    const __m128i low = load(in);
    const __m128i high = load(in + 8);
    if (_mm_testz_si128(_mm_or_si128(low, high), units(0xFF80)) != 0) {
      store(out, _mm_packus_epi16(low, high));
      out += 16;
      continue;
    }
    const __m128i surrogates = _mm_or_si128(_mm_cmpeq_epi16(_mm_and_si128(low, units(0xF800)), units(0xD800)),
                                            _mm_cmpeq_epi16(_mm_and_si128(high, units(0xF800)), units(0xD800)));
    if (mask(surrogates) != 0) break;
    out = encodeFour(_mm_unpacklo_epi16(low, zero), out);
    out = encodeFour(_mm_unpackhi_epi16(low, zero), out);
    out = encodeFour(_mm_unpacklo_epi16(high, zero), out);
    out = encodeFour(_mm_unpackhi_epi16(high, zero), out);
  }
  inOut = in;
  outOut = out;
}

}  // namespace

constinit const TranscoderBlocks kSse41Blocks{decode,           encode,      decodeShortAscii,
                                              encodeShortAscii, decodedSize, encodedSize};

}  // namespace kdx

#endif
