// The part of the transcoder that takes many characters at once, with instructions that not every processor has.
// Internal to transcoder.cc.

#ifndef KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_
#define KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

using Byte = unsigned char;

/// Whether this processor can do it. Where it can't, the two routines mustn't be called.
bool blocksOffered();

/// Decodes blocks from `in` on and moves `in` and `out` forward, always by whole characters. Stops at a block that
/// holds a character of four bytes, less than 32 bytes from `end`, or behind `stop` (by less than 32 bytes). False
/// where it met something that isn't UTF-8. Up to 32 units behind the last one in `out` are written over.
bool decodeBlocks(const Byte*& in, const Byte* stop, const Byte* end, wchar*& out);

/// Encodes blocks from `in` on and moves `in` and `out` forward. Stops at a block that holds a surrogate, or less than
/// 16 units from `stop`. Up to 16 bytes behind the last one in `out` are written over.
void encodeBlocks(const wchar*& in, const wchar* stop, Byte*& out);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_BLOCKS_H_
