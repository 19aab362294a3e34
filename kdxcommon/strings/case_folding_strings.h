// Texts that are kept as they came and, beside that, folded to one letter case in both encodings. Four classes: from a
// `string` of UTF-8 or a `wstring` of UTF-16, to upper or to lower case.
//
//   kdx::CUpperCaseString name("Abc");
//   name += "dE";
//   name.original();         // AbcdE
//   name.upper();            // ABCDE
//   name.utf().wString();    // ABCDE in UTF-16
//
// All forms are made when a text is set or appended, from that text alone: what stood before is not folded again, and
// no accessor computes anything. Folding goes through UTF-16, unit by unit, by `platformWStringUpper` and
// `platformWStringLower`: the letters of ASCII fold, and others as far as the process's locale has a case for them.
//
// The original keeps whatever it was given; the folded forms may lack some of it. A narrow text that isn't UTF-8 has
// none, so a sequence of several bytes must be appended whole. A text ends for the folding at its first NUL. An
// unpaired surrogate is U+FFFD in the UTF-8 form.
//
// Thread rule: an object belongs to one thread at a time unless nobody changes it. Failure rule: nothing fails, nothing
// is written to the error state that each object carries, and nothing throws but an allocation, which leaves the object
// as it was.

#ifndef KDXCOMMON_STRINGS_CASE_FOLDING_STRINGS_H_
#define KDXCOMMON_STRINGS_CASE_FOLDING_STRINGS_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/logging/error_traits.h"
#include "kdxcommon/strings/wide_string.h"

namespace kdx {

/// What a text is folded to.
enum class LetterCase : bool { kLower, kUpper };

/// The four classes at once; use them by their names below. `Text` is `string` or `wstring`.
template <typename Text, LetterCase letterCase>
class CaseFoldingString : public KDXErrorTraits {
 public:
  using Character = typename Text::value_type;

  /// All forms empty.
  CaseFoldingString();
  /// As the assignment of `value`.
  CaseFoldingString(const Text& value);
  CaseFoldingString(const Character* value);
  CaseFoldingString(Character value);
  /// Copies the texts; the error state is a new one.
  CaseFoldingString(const CaseFoldingString& other);
  ~CaseFoldingString() override;

  /// Copies the texts; each side keeps its own error state.
  CaseFoldingString& operator=(const CaseFoldingString& other);
  /// Sets all forms. An empty text, a null one and a zero character make them empty.
  CaseFoldingString& operator=(const Text& value);
  CaseFoldingString& operator=(const Character* value);
  CaseFoldingString& operator=(Character value);

  /// Appends all forms of `other`.
  CaseFoldingString& operator+=(const CaseFoldingString& other);
  /// Appends a text to all forms. An empty text, a null one and a zero character change nothing.
  CaseFoldingString& operator+=(const Text& value);
  CaseFoldingString& operator+=(const Character* value);
  CaseFoldingString& operator+=(Character value);

  /// A copy with the operand appended by `+=`.
  CaseFoldingString operator+(const CaseFoldingString& other) const;
  CaseFoldingString operator+(const Text& value) const;
  CaseFoldingString operator+(const Character* value) const;
  CaseFoldingString operator+(Character value) const;

  /// All that was given since the last assignment, unchanged.
  const Text& original() const { return originalValue; }
  /// The folded form in the class's own encoding.
  const Text& upper() const requires(letterCase == LetterCase::kUpper) { return folded(); }
  /// The folded form in the class's own encoding.
  const Text& lower() const requires(letterCase == LetterCase::kLower) { return folded(); }
  /// Both folded forms. `initialized()` is false there, whatever they hold.
  const CWideString& utf() const { return utf_; }

  /// The object as its error state, which its caller may change through a const reference as well, unless the object
  /// itself is const.
  KDXErrorTraits& kdxErrorTraits() const { return const_cast<CaseFoldingString&>(*this); }

 private:
  void append(const Text& value, const string& utf8, const wstring& wide);
  const Text& folded() const;
  void clearTexts();

  Text originalValue;
  CWideString utf_;
};

/// The unchanged text is a `string`, `upper()` and `lower()` are UTF-8.
using CUpperCaseString = CaseFoldingString<string, LetterCase::kUpper>;
using CLowerCaseString = CaseFoldingString<string, LetterCase::kLower>;
/// The unchanged text is a `wstring`, `upper()` and `lower()` are UTF-16.
using CUpperCaseWString = CaseFoldingString<wstring, LetterCase::kUpper>;
using CLowerCaseWString = CaseFoldingString<wstring, LetterCase::kLower>;

extern template class KDX_EXPORT CaseFoldingString<string, LetterCase::kUpper>;
extern template class KDX_EXPORT CaseFoldingString<string, LetterCase::kLower>;
extern template class KDX_EXPORT CaseFoldingString<wstring, LetterCase::kUpper>;
extern template class KDX_EXPORT CaseFoldingString<wstring, LetterCase::kLower>;

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_CASE_FOLDING_STRINGS_H_
