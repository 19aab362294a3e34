#include "kdxcommon/strings/case_folding_strings.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "kdxcommon/platform/text_helpers.h"
#include "kdxcommon/strings/make_room.h"
#include "kdxcommon/strings/utf8_conversion.h"

namespace kdx {
namespace {

struct Forms {
  string utf8;
  wstring wide;
};

template <LetterCase letterCase>
Forms fold(const wstring& in, KDXErrorTraits& errors) {
  Forms forms;
  if (in.empty()) return forms;
  const std::unique_ptr<wchar, void (*)(void*)> buffer(platformWStringDuplicate(in.c_str()), std::free);
  if (!buffer) throw std::bad_alloc();
  forms.wide =
      letterCase == LetterCase::kUpper ? platformWStringUpper(buffer.get()) : platformWStringLower(buffer.get());
  fromUTF16ToUTF8(forms.wide, forms.utf8, errors);
  return forms;
}

template <LetterCase letterCase>
Forms fold(const string& in, KDXErrorTraits& errors) {
  return fold<letterCase>(CWideString(in).wString(), errors);
}

template <typename Character>
bool isEmpty(const Character* text) {
  return !text || *text == Character();
}

}  // namespace

template <typename Text, LetterCase letterCase>
CaseFoldingString<Text, letterCase>::CaseFoldingString() = default;

template <typename Text, LetterCase letterCase>
CaseFoldingString<Text, letterCase>::CaseFoldingString(const Text& value) {
  *this = value;
}

template <typename Text, LetterCase letterCase>
CaseFoldingString<Text, letterCase>::CaseFoldingString(const Character* value) {
  *this = value;
}

template <typename Text, LetterCase letterCase>
CaseFoldingString<Text, letterCase>::CaseFoldingString(Character value) {
  *this = value;
}

template <typename Text, LetterCase letterCase>
CaseFoldingString<Text, letterCase>::CaseFoldingString(const CaseFoldingString& other)
    : KDXErrorTraits(), originalValue(other.originalValue), utf_(other.utf_) {}

template <typename Text, LetterCase letterCase>
CaseFoldingString<Text, letterCase>::~CaseFoldingString() = default;

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator=(const CaseFoldingString& other) -> CaseFoldingString& {
  CaseFoldingString copy(other);
  originalValue = std::move(copy.originalValue);
  utf_ = std::move(copy.utf_);
  return *this;
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator=(const Text& value) -> CaseFoldingString& {
  if (value.empty()) return clearTexts(), *this;
  Forms forms = fold<letterCase>(value, setLastError());
  originalValue = value;
  utf_.narrowValue = std::move(forms.utf8);
  utf_.wideValue = std::move(forms.wide);
  return *this;
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator=(const Character* value) -> CaseFoldingString& {
  return *this = isEmpty(value) ? Text() : Text(value);
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator=(Character value) -> CaseFoldingString& {
  return *this = value == Character() ? Text() : Text(1, value);
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+=(const CaseFoldingString& other) -> CaseFoldingString& {
  append(other.originalValue, other.utf_.narrowValue, other.utf_.wideValue);
  return *this;
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+=(const Text& value) -> CaseFoldingString& {
  if (value.empty()) return *this;
  const Forms forms = fold<letterCase>(value, setLastError());
  append(value, forms.utf8, forms.wide);
  return *this;
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+=(const Character* value) -> CaseFoldingString& {
  return isEmpty(value) ? *this : *this += Text(value);
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+=(Character value) -> CaseFoldingString& {
  return value == Character() ? *this : *this += Text(1, value);
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+(const CaseFoldingString& other) const -> CaseFoldingString {
  CaseFoldingString sum(*this);
  sum += other;
  return sum;
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+(const Text& value) const -> CaseFoldingString {
  CaseFoldingString sum(*this);
  sum += value;
  return sum;
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+(const Character* value) const -> CaseFoldingString {
  CaseFoldingString sum(*this);
  sum += value;
  return sum;
}

template <typename Text, LetterCase letterCase>
auto CaseFoldingString<Text, letterCase>::operator+(Character value) const -> CaseFoldingString {
  CaseFoldingString sum(*this);
  sum += value;
  return sum;
}

// Appends to all forms, or to none if memory is short. `value` may be the object's own text or one of its folded forms:
// it is appended before those grow.
template <typename Text, LetterCase letterCase>
void CaseFoldingString<Text, letterCase>::append(const Text& value, const string& utf8, const wstring& wide) {
  makeRoom(originalValue, value.size());
  makeRoom(utf_.narrowValue, utf8.size());
  makeRoom(utf_.wideValue, wide.size());
  originalValue += value;
  utf_.narrowValue += utf8;
  utf_.wideValue += wide;
}

template <typename Text, LetterCase letterCase>
const Text& CaseFoldingString<Text, letterCase>::folded() const {
  if constexpr (std::is_same_v<Text, string>) {
    return utf_.utf8String();
  } else {
    return utf_.utf16String();
  }
}

template <typename Text, LetterCase letterCase>
void CaseFoldingString<Text, letterCase>::clearTexts() {
  originalValue.clear();
  utf_.clear();
}

template class KDX_DEFINE_TEMPLATE CaseFoldingString<string, LetterCase::kUpper>;
template class KDX_DEFINE_TEMPLATE CaseFoldingString<string, LetterCase::kLower>;
template class KDX_DEFINE_TEMPLATE CaseFoldingString<wstring, LetterCase::kUpper>;
template class KDX_DEFINE_TEMPLATE CaseFoldingString<wstring, LetterCase::kLower>;

}  // namespace kdx
