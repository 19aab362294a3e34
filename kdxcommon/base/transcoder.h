// Internal: the library's one transcoder between UTF-8 and UTF-16. Whatever crosses from a `string` to a `wstring` or
// back goes through here; callers outside use CWideString.
//
//   kdx::wstring wide;
//   if (!kdx::utf8ToUtf16(bytes, wide)) return false;   // not UTF-8: `wide` is empty
//
// What is checked: UTF-8 must be of the shortest form, with no surrogate, nothing above U+10FFFF, no sequence cut short
// and no stray continuation byte; UTF-16 must have its surrogates in pairs. A NUL is a character like any other. The
// cost is linear in the input, whatever it holds.
//
// The memory of the output is used again where it suffices; where it doesn't, what is still to come is counted first,
// so that it grows once and to no more than is needed. An output that is reused is quickest if it isn't cleared before.
//
// Thread safety: pure functions, callable from any thread. On failure they return false and leave the output empty.
// They throw only std::bad_alloc or std::length_error, and leave any text in the output then. The input must not lie in
// the output.

#ifndef KDXCOMMON_BASE_TRANSCODER_H_
#define KDXCOMMON_BASE_TRANSCODER_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The level of instructions that a conversion uses. kBaseline is what every processor has; kAvx512 includes VBMI2;
/// kBest is the highest level that this processor offers. All levels give the same results.
enum class Instructions { kBaseline, kSse41, kAvx2, kAvx512, kBest };

/// Returns whether this processor and this build have the level.
bool offered(Instructions instructions);

/// Sets `out` to the UTF-16 form of `in`; returns false with `out` empty if `in` isn't UTF-8. `instructions` must be
/// offered.
bool utf8ToUtf16(string_view in, wstring& out, Instructions instructions = Instructions::kBest);

/// Sets `out` to the UTF-8 form of `in`; returns false with `out` empty if `in` holds an unpaired surrogate.
bool utf16ToUtf8(wstring_view in, string& out, Instructions instructions = Instructions::kBest);

/// Sets `out` to the UTF-8 form of `in`, with U+FFFD in the place of each unpaired surrogate.
void utf16ToUtf8Replacing(wstring_view in, string& out, Instructions instructions = Instructions::kBest);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_H_
