// Small helpers for narrow and wide texts: parsing numbers, testing the form of a text, changing the case of and
// copying character arrays, and two kinds of escaping. Most have a narrow form for bytes and a wide form for 16-bit
// units, which differ only in the unit.
//
//   kdx::platformATOI(" -5 files");        // -5
//   kdx::platformATOI("9999999999");       // -1: too large for 32 unsigned bits
//   kdx::platformStringIsNumeric("+12");   // true
//   kdx::string filter = "a*(b)";
//   kdx::escapeADSIspecialChars(filter);   // a\2a\28b\29
//
// The rules are those of the "C" locale, unit by unit, whatever the locale of the process: white space is a space and
// \t \n \v \f \r, digits are those of ASCII, the decimal point is a dot. The locale of the process (`setlocale`,
// LC_CTYPE) determines only which letters change case and which bytes outside of ASCII are printable. In the "C"
// locale, the initial one of a process on POSIX, these are the letters of ASCII, and no bytes. Widths and limits are
// the same on every system.
//
// Thread safety: the functions keep no state and may be called from any thread, as long as no thread changes the locale
// at the same time. No error is reported: a text that isn't a number yields 0, and a test returns false. Throws only
// std::bad_alloc, and only in `escapeDoubleQuote`, `escapeADSIspecialChars`, `platformATOF` and `platformWATOF`.

#ifndef KDXCOMMON_PLATFORM_TEXT_HELPERS_H_
#define KDXCOMMON_PLATFORM_TEXT_HELPERS_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Return the number at the start of `text`: white space, an optional sign, decimal digits, up to the first unit that
/// isn't a digit. The number is parsed as 32 unsigned bits and returned as signed with the same bits: a minus sign
/// negates within 32 bits, and a number above 4294967295 is treated as 4294967295, which is -1, whatever its sign.
/// Return 0 if there is no number.
KDX_EXPORT std::int32_t platformATOI(const string& text);
KDX_EXPORT std::int32_t platformATOL(const string& text);
KDX_EXPORT std::int32_t platformWATOI(const wstring& text);
KDX_EXPORT std::int32_t platformWATOL(const wstring& text);

/// The same with 64 signed bits: a number outside of that range yields the limit that it exceeds.
KDX_EXPORT std::int64_t platformATOLL(const string& text);
KDX_EXPORT std::int64_t platformWATOLL(const wstring& text);

/// Return the floating-point number at the start of `text`, in the forms that the C library's `strtod` accepts:
/// decimal, hexadecimal after 0x, inf, infinity, nan. The result is correctly rounded, infinite if the number is too
/// large, and 0 if it is too small or if there is none.
KDX_EXPORT double platformATOF(const string& text);
KDX_EXPORT double platformWATOF(const wstring& text);

/// Return whether `text` is an optional sign followed by one or more decimal digits, and nothing else.
KDX_EXPORT bool platformStringIsNumeric(const string& text);
KDX_EXPORT bool platformWStringIsNumeric(const wstring& text);

/// Return whether `text` is one or more hexadecimal digits, with or without a leading 0x or 0X, and nothing else.
KDX_EXPORT bool platformStringIsHexadecimal(const string& text);
KDX_EXPORT bool platformWStringIsHexadecimal(const wstring& text);

/// Returns whether `text` consists of one or more printable characters: letters, digits, punctuation and spaces of
/// ASCII, and bytes outside of ASCII that are printable in the locale (`isalnum`, `isprint`).
KDX_EXPORT bool platformStringIsAlphaNumeric(const string& text);

/// Change the case of the letters of a NUL-terminated text in place, those of ASCII and of the locale (`toupper`,
/// `tolower`, `towupper`, `towlower`), and return `text`. Return null for null. A letter whose other case takes two
/// units is unchanged.
KDX_EXPORT char* platformStringUpper(char* text);
KDX_EXPORT char* platformStringLower(char* text);
KDX_EXPORT wchar* platformWStringUpper(wchar* text);
KDX_EXPORT wchar* platformWStringLower(wchar* text);

/// Return a copy of a NUL-terminated text, which the caller must release with the C library's `free`. Return null for
/// null, and if memory runs out.
KDX_EXPORT char* platformStringDuplicate(const char* text);
KDX_EXPORT wchar* platformWStringDuplicate(const wchar* text);

/// Inserts a backslash before each backslash and each double quote. Always returns true.
KDX_EXPORT bool escapeDoubleQuote(string& text);

/// Replace each of \ * ( ) / with a backslash and its code in two lower-case hexadecimal digits, as directory searches
/// require. Every other unit is unchanged, NUL included.
KDX_EXPORT void escapeADSIspecialChars(string& text);
KDX_EXPORT void escapeADSIspecialChars(wstring& text);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_TEXT_HELPERS_H_
