// Small helpers over the library's two texts: numbers out of text, tests of a text's form, case change and copies of
// plain character arrays, two escapings. Each family has a narrow form over bytes and a wide form over 16-bit units
// that differ in nothing but the unit.
//
//   kdx::platformATOI(" -5 files");        // -5
//   kdx::platformATOI("9999999999");       // -1: too large for 32 unsigned bits
//   kdx::platformStringIsNumeric("+12");   // true
//   kdx::string filter = "a*(b)";
//   kdx::escapeADSIspecialChars(filter);   // a\2a\28b\29
//
// The rules are those of the "C" locale, unit by unit, in whatever locale the process runs: white space is a blank and
// \t \n \v \f \r, digits are those of ASCII, the decimal point is a dot. Two questions go to the process's locale
// (`setlocale`, LC_CTYPE): which letters change case, and which bytes outside of ASCII are printable; in the "C"
// locale, which a process starts with on POSIX, the letters of ASCII and none. Widths and limits are the same on every
// system.
//
// Thread rule: no state, any thread, as long as none changes the locale meanwhile. Failure rule: nothing reports an
// error. What can't be read counts 0, a test says no; nothing throws but an allocation in an escaping or in
// `platformATOF` and `platformWATOF`.

#ifndef KDXCOMMON_PLATFORM_TEXT_HELPERS_H_
#define KDXCOMMON_PLATFORM_TEXT_HELPERS_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The number at the start of `text`: white space, an optional sign, decimal digits, up to the first unit that is no
/// digit. Read as 32 unsigned bits and given as signed with the same bits: a minus sign negates within 32 bits, and a
/// number above 4294967295 counts as 4294967295, which is -1, whatever its sign. 0 if there is no number.
KDX_EXPORT std::int32_t platformATOI(const string& text);
KDX_EXPORT std::int32_t platformATOL(const string& text);
KDX_EXPORT std::int32_t platformWATOI(const wstring& text);
KDX_EXPORT std::int32_t platformWATOL(const wstring& text);

/// The same with 64 signed bits: a number outside of them counts as the limit that it passed.
KDX_EXPORT std::int64_t platformATOLL(const string& text);
KDX_EXPORT std::int64_t platformWATOLL(const wstring& text);

/// The floating-point number at the start of `text`, in the forms that the C library's `strtod` reads: decimal,
/// hexadecimal behind 0x, inf, infinity, nan. Correctly rounded; infinite when too large, and 0 when too small or when
/// there is no number.
KDX_EXPORT double platformATOF(const string& text);
KDX_EXPORT double platformWATOF(const wstring& text);

/// Whether `text` is an optional sign with one or more decimal digits behind it, and nothing else.
KDX_EXPORT bool platformStringIsNumeric(const string& text);
KDX_EXPORT bool platformWStringIsNumeric(const wstring& text);

/// Whether `text` is one or more hexadecimal digits, with or without 0x or 0X in front, and nothing else.
KDX_EXPORT bool platformStringIsHexadecimal(const string& text);
KDX_EXPORT bool platformWStringIsHexadecimal(const wstring& text);

/// Whether `text` is one or more printable characters: letters, digits, punctuation and blanks of ASCII, and what else
/// the locale counts as one (`isalnum`, `isprint`).
KDX_EXPORT bool platformStringIsAlphaNumeric(const string& text);

/// Changes the letters of a NUL-terminated text in place, those of ASCII and of the locale (`toupper`, `towlower` and
/// their like), and gives `text` back; null comes back as null. A letter whose other case takes two units stays.
KDX_EXPORT char* platformStringUpper(char* text);
KDX_EXPORT char* platformStringLower(char* text);
KDX_EXPORT wchar* platformWStringUpper(wchar* text);
KDX_EXPORT wchar* platformWStringLower(wchar* text);

/// A copy of a NUL-terminated text, which the caller releases with the C library's `free`. Null for null, and when
/// there is no memory.
KDX_EXPORT char* platformStringDuplicate(const char* text);
KDX_EXPORT wchar* platformWStringDuplicate(const wchar* text);

/// Puts a backslash in front of each backslash and each double quote. Always true.
KDX_EXPORT bool escapeDoubleQuote(string& text);

/// Replaces each of \ * ( ) / by a backslash and its code in two lower-case hexadecimal digits, as directory searches
/// want it. Every other unit stays, NUL too.
KDX_EXPORT void escapeADSIspecialChars(string& text);
KDX_EXPORT void escapeADSIspecialChars(wstring& text);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_TEXT_HELPERS_H_
