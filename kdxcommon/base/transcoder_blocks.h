// Internal to the transcoder: what takes many characters at once, for each level of instructions.

#ifndef KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_
#define KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_

#include <cstddef>

#include "kdxcommon/base/string_types.h"

#if defined(__x86_64__) && defined(__GNUC__)
#define KDX_X86_BLOCKS 1
#else
#define KDX_X86_BLOCKS 0
#endif

namespace kdx {

using Byte = unsigned char;

/// How many units behind the last one that counts a routine may write over.
inline constexpr std::size_t kBlockSlack = 64;

/// A text of up to so many units is short.
inline constexpr std::size_t kShort = 64;

/// The routines of one level.
struct TranscoderBlocks {
  /// Decodes from `in` on and moves `in` and `out` forward, always by whole characters. Stops where a block holds what
  /// it doesn't take, and at `stop` or behind it, by less than kBlockSlack bytes and the rest of a character. Reads
  /// nothing at `end` or behind it. Returns false if it met something that isn't UTF-8.
  bool (*decode)(const Byte*& in, const Byte* stop, const Byte* end, wchar*& out);

  /// Encodes from `in` on and moves `in` and `out` forward. Stops where a block holds what it doesn't take, and at
  /// `stop`, behind which it reads nothing.
  void (*encode)(const wchar*& in, const wchar* stop, Byte*& out);

  /// Set `out` to the whole of a text of one to kShort units, whatever `out` holds. Return false, with `out` unchanged,
  /// if it holds what they don't take or is invalid. Null for a level that has none.
  bool (*decodeShort)(const Byte* in, const Byte* end, wstring& out);
  bool (*encodeShort)(const wchar* in, const wchar* end, string& out);

  /// Return the size of the text in the other encoding, or about that if it is invalid.
  std::size_t (*decodedSize)(const Byte* in, const Byte* end);
  std::size_t (*encodedSize)(const wchar* in, const wchar* end);
};

/// For the levels that have no better way of counting.
std::size_t decodedSize(const Byte* in, const Byte* end);
std::size_t encodedSize(const wchar* in, const wchar* end);

/// Each is called only on a processor that offers its instructions.
extern const TranscoderBlocks kSse41Blocks;
extern const TranscoderBlocks kAvx2Blocks;
extern const TranscoderBlocks kAvx512Blocks;

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_
