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
// Thread rule: pure functions, callable from any thread at once. Failure rule: false and an empty output; nothing
// throws but an allocation. The input must not lie in the output, whose memory is used again where it suffices.

#ifndef KDXCOMMON_BASE_TRANSCODER_H_
#define KDXCOMMON_BASE_TRANSCODER_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// What a conversion may use: all that the processor offers, or only what every processor has. Results are the same.
enum class Instructions : bool { kBaseline, kBest };

/// Sets `out` to the UTF-16 form of `in`; false with `out` empty where `in` isn't UTF-8.
bool utf8ToUtf16(string_view in, wstring& out, Instructions instructions = Instructions::kBest);

/// Sets `out` to the UTF-8 form of `in`; false with `out` empty where `in` holds an unpaired surrogate.
bool utf16ToUtf8(wstring_view in, string& out, Instructions instructions = Instructions::kBest);

/// Sets `out` to the UTF-8 form of `in`, with U+FFFD in the place of each unpaired surrogate.
void utf16ToUtf8Replacing(wstring_view in, string& out, Instructions instructions = Instructions::kBest);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_H_
