// Internal: the library's only transcoder between UTF-8 and UTF-16. Every conversion between a `string` and a `wstring`
// uses it; callers outside the library use CWideString.
//
//   kdx::wstring wide;
//   if (!kdx::utf8ToUtf16(bytes, wide)) return false;   // not UTF-8: `wide` is empty
//
// The input is validated: UTF-8 must have the shortest form, with no surrogate, nothing above U+10FFFF, no truncated
// sequence and no stray continuation byte; UTF-16 must have its surrogates in pairs. A NUL is a character like any
// other. The cost is linear in the input, whatever it contains.
//
// The output's memory is reused if it suffices; if not, the size of the remaining text is counted first, so that the
// output grows once and to no more than is needed. A reused output is fastest if it isn't cleared before.
//
// Thread safety: pure functions, thread-safe. On failure they return false and leave the output empty. They throw only
// std::bad_alloc or std::length_error, and then leave the output unspecified. The input must not overlap the output.

#ifndef KDXCOMMON_BASE_TRANSCODER_H_
#define KDXCOMMON_BASE_TRANSCODER_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The level of instructions that a conversion uses. Every processor has kBaseline; kAvx512 includes VBMI2; kBest is
/// the highest level that this processor offers. All levels return the same results.
enum class Instructions { kBaseline, kSse41, kAvx2, kAvx512, kBest };

/// Returns whether this processor and this build have the level.
bool offered(Instructions instructions);

/// Sets `out` to the UTF-16 form of `in`. Returns false with `out` empty if `in` isn't UTF-8. `instructions` must be
/// offered.
bool utf8ToUtf16(string_view in, wstring& out, Instructions instructions = Instructions::kBest);

/// Sets `out` to the UTF-8 form of `in`. Returns false with `out` empty if `in` contains an unpaired surrogate.
bool utf16ToUtf8(wstring_view in, string& out, Instructions instructions = Instructions::kBest);

/// Sets `out` to the UTF-8 form of `in`, with U+FFFD in place of each unpaired surrogate.
void utf16ToUtf8Replacing(wstring_view in, string& out, Instructions instructions = Instructions::kBest);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_H_
