// CJxString, the in-house byte string: joins texts and numbers into names, and looks texts up in them.
//
//   kdx::CJxString name = kdx::CJxString("KDXSQLDump") + "_SC_" + subclientId + "_JOB_" + jobId;
//   int at = name.Find("JOB", 0);   // 16
//
// Thread rule: as std::string. Throws what an allocation throws.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_STRING_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_STRING_H_

#include <algorithm>
#include <compare>
#include <cstdint>
#include <utility>

#include "kdxcommon/base/string_types.h"

namespace kdx {

class CJxString {
 public:
  CJxString() = default;
  CJxString(const char* text) : text_(text ? text : "") {}  ///< null is the empty text
  explicit CJxString(char character) : text_(1, character) {}
  explicit CJxString(int number) : text_(std::to_string(number)) {}
  explicit CJxString(std::int64_t number) : text_(std::to_string(number)) {}

  const char* c_str() const { return text_.c_str(); }
  operator const char*() const { return c_str(); }

  /// Each gives a new string: this text and behind it the other, a number in decimal.
  friend CJxString operator+(CJxString left, const CJxString& right) { return std::move(left.append(right.text_)); }
  friend CJxString operator+(CJxString left, const char* right) { return std::move(left += right); }
  friend CJxString operator+(CJxString left, std::uint32_t right) {
    return std::move(left.append(std::to_string(right)));
  }
  friend CJxString operator+(CJxString left, std::int64_t right) {
    return std::move(left.append(std::to_string(right)));
  }
  CJxString& operator+=(const char* right) { return append(right ? right : ""); }

  /// The first position at or after `start` at which `text` (or `character`) stands; -1 if there is none.
  int Find(const char* text, int start) const { return position(text_.find(text, offset(start))); }
  int Find(char character, int start) const { return position(text_.find(character, offset(start))); }

  /// Up to `length` characters from `start`; the empty text where `start` lies behind the end or `length` is below 1.
  CJxString SubStr(int start, int length) const {
    if (length < 1 || offset(start) >= text_.size()) return {};
    return CJxString(text_.substr(offset(start), static_cast<std::size_t>(length)));
  }

  /// By bytes.
  bool operator==(const CJxString& other) const { return text_ == other.text_; }
  std::strong_ordering operator<=>(const CJxString& other) const { return text_.compare(other.text_) <=> 0; }

 private:
  explicit CJxString(string text) : text_(std::move(text)) {}

  CJxString& append(const string& right) {
    text_ += right;
    return *this;
  }
  static std::size_t offset(int start) { return static_cast<std::size_t>(std::max(start, 0)); }
  static int position(std::size_t found) { return found == string::npos ? -1 : static_cast<int>(found); }

  string text_;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_STRING_H_
