// Internal to the transcoder: what takes many characters at once, with instructions that not every processor has.

#ifndef KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_
#define KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

using Byte = unsigned char;

/// Whether this processor can do it. Where it can't, the two routines mustn't be called.
bool blocksOffered();

/// Decodes blocks of 32 bytes from `in` on and moves `in` and `out` forward, always by whole characters. Stops at a
/// block that holds a character of four bytes, near `end`, and at `stop` or at most 33 bytes behind it. False where it
/// met something that isn't UTF-8. Up to 32 units behind the last one in `out` are written over.
bool decodeBlocks(const Byte*& in, const Byte* stop, const Byte* end, wchar*& out);

/// Encodes blocks from `in` on and moves `in` and `out` forward. Stops at a block that holds a surrogate, or less than
/// 16 units from `stop`. Up to 16 bytes behind the last one in `out` are written over.
void encodeBlocks(const wchar*& in, const wchar* stop, Byte*& out);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_
