#include "kdxcommon/strings/wide_string.h"

#include <utility>

#include "kdxcommon/base/unit_search.h"
#include "kdxcommon/inhouse/zqlib/utf_conversion.h"
#include "kdxcommon/strings/make_room.h"
#include "kdxcommon/strings/utf8_conversion.h"

namespace kdx {
namespace {

void require(bool converted) {
  if (!converted) throw CWideString::WSConversionFailed;
}

}  // namespace

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

CWideString& CWideString::operator=(const CWideString& other) {
  // Memory for both forms is reserved first, so that the assignments can't fail.
  narrowValue.reserve(other.narrowValue.size());
  wideValue.reserve(other.wideValue.size());
  narrowValue = other.narrowValue;
  wideValue = other.wideValue;
  initializedFlag = other.initializedFlag;
  return *this;
}

CWideString& CWideString::operator=(CWideString&& other) noexcept {
  if (this != &other) {
    narrowValue = std::move(other.narrowValue);
    wideValue = std::move(other.wideValue);
    initializedFlag = other.initializedFlag;
    other.clear();
  }
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

// `value` may be one of the object's own forms, so the form that is assigned isn't cleared first.

bool CWideString::set(const string& value) {
  narrowValue = value;
  return convertNarrow();
}

bool CWideString::set(string&& value) {
  if (&value != &narrowValue) narrowValue = std::move(value);
  return convertNarrow();
}

bool CWideString::set(const wstring& value) {
  wideValue = value;
  return convertWide();
}

bool CWideString::set(wstring&& value) {
  if (&value != &wideValue) wideValue = std::move(value);
  return convertWide();
}

// The form that is converted to isn't cleared first, since the conversion is fastest over existing content. It leaves
// the form empty if it fails or the text is empty.

bool CWideString::convertNarrow() {
  initializedFlag = false;
  const bool converted = UTF8String2WideChar(wideValue, narrowValue) != 0;
  initializedFlag = converted && !narrowValue.empty();
  return converted;
}

bool CWideString::convertWide() {
  initializedFlag = false;
  const bool converted = WideChar2UTF8String(wideValue, narrowValue) != 0;
  if (!converted) wideClear();
  initializedFlag = converted && !wideValue.empty();
  return converted;
}

bool CWideString::operator==(const CWideString& other) const {
  return equalUnits(wideValue, other.wideValue);
}

// The UTF-16 form of an initialized() object is one that `set` accepts, so an equal `other` is always valid.
bool CWideString::operator==(const wstring& other) const {
  if (initializedFlag || other.empty()) return equalUnits(wideValue, other);
  string narrow;
  const bool refused = WideChar2UTF8String(other, narrow) == 0;
  return refused ? wideValue.empty() : equalUnits(wideValue, other);
}

bool CWideString::operator==(const string& other) const {
  // A unit of UTF-16 takes one to three bytes of UTF-8.
  const bool possible = wideValue.empty() || (wideValue.size() <= other.size() && other.size() / 3 <= wideValue.size());
  wstring wide;
  if (possible) UTF8String2WideChar(wide, other);
  return possible && equalUnits(wide, wideValue);
}

// Appends to both forms, or to neither if memory is short.
void CWideString::append(const string& narrow, const wstring& wide) {
  makeRoom(narrowValue, narrow.size());
  makeRoom(wideValue, wide.size());
  narrowValue += narrow;
  wideValue += wide;
}

CWideString& CWideString::operator+=(const CWideString& other) {
  if (other.initializedFlag) append(other.narrowValue, other.wideValue);
  return *this;
}

CWideString& CWideString::operator+=(const string& other) {
  if (!initializedFlag) {
    require(set(other));
  } else if (!other.empty()) {
    wstring wide;
    require(UTF8String2WideChar(wide, other) != 0);
    append(other, wide);
  }
  return *this;
}

CWideString& CWideString::operator+=(const wstring& other) {
  if (!initializedFlag) {
    require(set(other));
  } else if (!other.empty()) {
    string narrow;
    require(WideChar2UTF8String(other, narrow) != 0);
    append(narrow, other);
  }
  return *this;
}

CWideString CWideString::operator+(const CWideString& other) const {
  CWideString sum(*this);
  sum += other;
  return sum;
}

CWideString CWideString::operator+(const string& other) const {
  CWideString sum(*this);
  sum += other;
  return sum;
}

CWideString CWideString::operator+(const wstring& other) const {
  CWideString sum(*this);
  sum += other;
  return sum;
}

bool CWideString::convert(const wstring& in, string& out, KDXErrorTraits& errors) const {
  return fromUTF16ToUTF8(in, out, errors);
}

}  // namespace kdx
