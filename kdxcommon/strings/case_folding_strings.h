// Four classes that hold a text unchanged and, beside it, folded to one letter case in both encodings: from a `string`
// of UTF-8 or a `wstring` of UTF-16, to upper or to lower case.
//
//   kdx::CUpperCaseString name("Abc");
//   name += "dE";
//   name.original();         // AbcdE
//   name.upper();            // ABCDE
//   name.utf().wString();    // ABCDE in UTF-16
//
// All forms are made when a text is set or appended. Appending folds only the new text, and accessors compute nothing.
// Folding goes through UTF-16, unit by unit, by `platformWStringUpper` and `platformWStringLower`: ASCII letters are
// folded, and others if the process's locale has a case for them.
//
// The original holds everything it was given; the folded forms may lack some of it. A narrow text that isn't UTF-8 has
// no folded form, so a multi-byte sequence must be appended in one call. Folding stops at the first NUL of a text. An
// unpaired surrogate becomes U+FFFD in the UTF-8 form.
//
// Thread safety: not safe for concurrent use of one object, except for const operations; different objects are
// independent. Nothing fails, and nothing is written to the error state that each object carries. Throws only
// std::bad_alloc, and the object is then unchanged.

#ifndef KDXCOMMON_STRINGS_CASE_FOLDING_STRINGS_H_
#define KDXCOMMON_STRINGS_CASE_FOLDING_STRINGS_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/logging/error_traits.h"
#include "kdxcommon/strings/wide_string.h"

namespace kdx {

/// The case that a text is folded to.
enum class LetterCase : bool { kLower, kUpper };

/// The template of the four classes; use them by their names below. `Text` is `string` or `wstring`.
template <typename Text, LetterCase letterCase>
class CaseFoldingString : public KDXErrorTraits {
 public:
  /// The unit of the text: `char` or `wchar`.
  using Character = typename Text::value_type;

  /// All forms are empty.
  CaseFoldingString();
  /// The same as assigning `value`.
  CaseFoldingString(const Text& value);
  CaseFoldingString(const Character* value);
  CaseFoldingString(Character value);
  /// Copies the texts, not the error state.
  CaseFoldingString(const CaseFoldingString& other);
  ~CaseFoldingString() override;

  /// Copies the texts; each object keeps its own error state.
  CaseFoldingString& operator=(const CaseFoldingString& other);
  /// Sets all forms. An empty text, a null pointer and a NUL character empty them.
  CaseFoldingString& operator=(const Text& value);
  CaseFoldingString& operator=(const Character* value);
  CaseFoldingString& operator=(Character value);

  /// Appends all forms of `other`.
  CaseFoldingString& operator+=(const CaseFoldingString& other);
  /// Appends a text to all forms. An empty text, a null pointer and a NUL character change nothing.
  CaseFoldingString& operator+=(const Text& value);
  CaseFoldingString& operator+=(const Character* value);
  CaseFoldingString& operator+=(Character value);

  /// Returns a copy with the operand appended by `+=`.
  CaseFoldingString operator+(const CaseFoldingString& other) const;
  CaseFoldingString operator+(const Text& value) const;
  CaseFoldingString operator+(const Character* value) const;
  CaseFoldingString operator+(Character value) const;

  /// Returns all text since the last assignment, unchanged.
  const Text& original() const { return originalValue; }
  // Not members that depend on the class alone: mingw-w64's g++ doesn't export such members if they are constrained.

  /// Returns the folded form in the class's own encoding.
  template <LetterCase classCase = letterCase>
  requires(classCase == LetterCase::kUpper) const Text& upper() const { return folded(); }
  /// Returns the folded form in the class's own encoding.
  template <LetterCase classCase = letterCase>
  requires(classCase == LetterCase::kLower) const Text& lower() const { return folded(); }
  /// Returns both folded forms. Their `initialized()` is always false.
  const CWideString& utf() const { return utf_; }

  /// Returns the object as its error state. A caller may change that through a const reference, too, unless the object
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

extern template class KDX_EXPORT_TEMPLATE CaseFoldingString<string, LetterCase::kUpper>;
extern template class KDX_EXPORT_TEMPLATE CaseFoldingString<string, LetterCase::kLower>;
extern template class KDX_EXPORT_TEMPLATE CaseFoldingString<wstring, LetterCase::kUpper>;
extern template class KDX_EXPORT_TEMPLATE CaseFoldingString<wstring, LetterCase::kLower>;

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_CASE_FOLDING_STRINGS_H_
