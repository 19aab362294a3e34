#include "kdxcommon/strings/wide_string.h"

#include <utility>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/base/unit_search.h"
#include "kdxcommon/inhouse/zqlib/utf_conversion.h"
#include "kdxcommon/strings/utf8_conversion.h"

namespace kdx {

CWideString::CWideString() = default;
CWideString::CWideString(const string& value) {
  set(value);
}
CWideString::CWideString(const wstring& value) {
  set(value);
}
CWideString::CWideString(string&& value) {
  set(std::move(value));
}
CWideString::CWideString(wstring&& value) {
  set(std::move(value));
}
CWideString::CWideString(const CWideString& other) = default;
CWideString::CWideString(CWideString&& other) noexcept {
  *this = std::move(other);
}
CWideString::~CWideString() = default;

CWideString& CWideString::operator=(const CWideString& other) = default;

CWideString& CWideString::operator=(CWideString&& other) noexcept {
  if (this == &other) return *this;
  narrowValue = std::exchange(other.narrowValue, {});
  wideValue = std::exchange(other.wideValue, {});
  initializedFlag = std::exchange(other.initializedFlag, false);
  return *this;
}

CWideString& CWideString::operator=(const string& value) {
  set(value);
  return *this;
}

CWideString& CWideString::operator=(const wstring& value) {
  set(value);
  return *this;
}

CWideString& CWideString::operator=(string&& value) {
  set(std::move(value));
  return *this;
}

CWideString& CWideString::operator=(wstring&& value) {
  set(std::move(value));
  return *this;
}

bool CWideString::set(const string& value) {
  narrowValue = value;
  return widen();
}

bool CWideString::set(string&& value) {
  narrowValue = std::move(value);
  return widen();
}

bool CWideString::set(const wstring& value) {
  wideValue = value;
  return narrow();
}

bool CWideString::set(wstring&& value) {
  wideValue = std::move(value);
  return narrow();
}

// Makes the wide form of the narrow one.
bool CWideString::widen() {
  initializedFlag = false;
  if (narrowValue.empty()) {
    wideClear();
    return true;
  }
  initializedFlag = UTF8String2WideChar(wideValue, narrowValue) != 0;
  return initializedFlag;
}

// Makes the narrow form of the wide one.
bool CWideString::narrow() {
  if (wideValue.empty()) {
    initialize();
    return true;
  }
  initializedFlag = WideChar2UTF8String(wideValue, narrowValue) != 0;
  if (!initializedFlag) clear();
  return initializedFlag;
}

void CWideString::clear() {
  initialize();
}

void CWideString::initialize() {
  initializedFlag = false;
  narrowValue.clear();
  wideClear();
}

void CWideString::wideClear() {
  wideValue.erase(0);
}

bool CWideString::operator==(const CWideString& other) const {
  return wideValue == other.wideValue;
}

bool CWideString::operator==(const wstring& other) const {
  // What this object holds is UTF-16, so a text that equals it needs no conversion to be known as such.
  if (!wideValue.empty()) return wideValue == other;
  return CWideString(other).wideValue.empty();
}

bool CWideString::operator==(const string& other) const {
  return *this == CWideString(other);
}

CWideString& CWideString::operator+=(const CWideString& other) {
  if (!other.initializedFlag) return *this;
  narrowValue += other.narrowValue;
  wideValue += other.wideValue;
  return *this;
}

template <typename Text>
CWideString& CWideString::append(const Text& other) {
  if (!initializedFlag) {
    if (!set(other)) throw WSConversionFailed;
    return *this;
  }
  if (other.empty()) return *this;
  CWideString converted;
  if (!converted.set(other)) throw WSConversionFailed;
  return *this += converted;
}

CWideString& CWideString::operator+=(const string& other) {
  return append(other);
}

CWideString& CWideString::operator+=(const wstring& other) {
  return append(other);
}

CWideString CWideString::operator+(const CWideString& other) const {
  return CWideString(*this) += other;
}

CWideString CWideString::operator+(const string& other) const {
  return CWideString(*this) += other;
}

CWideString CWideString::operator+(const wstring& other) const {
  return CWideString(*this) += other;
}

bool CWideString::convert(const wstring& in, string& out, KDXErrorTraits& errors) const {
  return fromUTF16ToUTF8(in, out, errors);
}

bool fromUTF16ToUTF8(const wstring& in, string& out, KDXErrorTraits& /*errors*/) {
  const wstring_view text = in;
  utf16ToUtf8Replacing(text.substr(0, findUnit(text, wchar{})), out);
  return true;
}

}  // namespace kdx
