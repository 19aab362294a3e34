// Internal to the transcoder: the routines that convert many characters at once, for each level of instructions.

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

/// How many units after the end of its result a routine may overwrite.
inline constexpr std::size_t kBlockSlack = 64;

/// The greatest length of a short text, in units.
inline constexpr std::size_t kShort = 64;

/// The routines of one level.
struct TranscoderBlocks {
  /// Decodes from `in` on and advances `in` and `out`, always by whole characters. Stops at a block with characters
  /// that it doesn't support, and at `stop` or after it, by less than kBlockSlack bytes and the rest of a character.
  /// Reads nothing at or after `end`. Returns false if it found something that isn't UTF-8.
  bool (*decode)(const Byte*& in, const Byte* stop, const Byte* end, wchar*& out);

  /// Encodes from `in` on and advances `in` and `out`. Stops at a block with characters that it doesn't support, and at
  /// `stop`. Reads nothing at or after `stop`.
  void (*encode)(const wchar*& in, const wchar* stop, Byte*& out);

  /// Set `out` to the whole of a text of one to kShort units, whatever `out` contains. Return false with `out`
  /// unchanged if the text is invalid or contains characters that they don't support.
  bool (*decodeShort)(const Byte* in, const Byte* end, wstring& out);
  bool (*encodeShort)(const wchar* in, const wchar* end, string& out);

  /// Return the size of the text in the other encoding, approximate if the text is invalid.
  std::size_t (*decodedSize)(const Byte* in, const Byte* end);
  std::size_t (*encodedSize)(const wchar* in, const wchar* end);
};

/// For the levels without a faster way: these convert only ASCII.
bool decodeShortAscii(const Byte* in, const Byte* end, wstring& out);
bool encodeShortAscii(const wchar* in, const wchar* end, string& out);
std::size_t decodedSize(const Byte* in, const Byte* end);
std::size_t encodedSize(const wchar* in, const wchar* end);

/// Each may be used only on a processor that offers its instructions.
extern const TranscoderBlocks kSse41Blocks;
extern const TranscoderBlocks kAvx2Blocks;
extern const TranscoderBlocks kAvx512Blocks;

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_
