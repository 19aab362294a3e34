// CJxString is the in-house byte string. It joins texts and numbers into names and searches them.
//
//   kdx::CJxString name = kdx::CJxString("KDXSQLDump") + "_SC_" + subclientId + "_JOB_" + jobId;
//   int at = name.Find("JOB", 0);   // behind "KDXSQLDump_SC_7_" it is 16
//
// A null pointer is the empty text wherever a text is taken. Thread safety: that of std::string. Throws only
// std::bad_alloc.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_STRING_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_STRING_H_

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// A byte string. A value type.
class CJxString {
 public:
  /// The empty text, a copy of `text`, one character, or a number in decimal.
  CJxString() = default;
  CJxString(const char* text) : text_(notNull(text)) {}
  explicit CJxString(char character) : text_(1, character) {}
  explicit CJxString(int number) : text_(std::to_string(number)) {}
  explicit CJxString(std::int64_t number) : text_(std::to_string(number)) {}

  /// Keeps its memory where the text fits.
  CJxString& operator=(const char* text) {
    text_ = notNull(text);
    return *this;
  }

  /// Returns the text, NUL-terminated; never null. The pointer is valid until the text changes.
  const char* c_str() const { return text_.c_str(); }
  operator const char*() const { return c_str(); }

  /// Deleted: by the conversion above every text, even an empty one, would count as true.
  explicit operator bool() const = delete;

  /// Returns a new string: `left` followed by `right`, a number in decimal.
  friend CJxString operator+(CJxString left, const CJxString& right) { return std::move(left.append(right.text_)); }
  friend CJxString operator+(CJxString left, const char* right) { return std::move(left += right); }
  friend CJxString operator+(CJxString left, int right) { return std::move(left.append(std::to_string(right))); }
  friend CJxString operator+(CJxString left, std::uint32_t right) {
    return std::move(left.append(std::to_string(right)));
  }
  friend CJxString operator+(CJxString left, std::int64_t right) {
    return std::move(left.append(std::to_string(right)));
  }

  /// Deleted: a character would be taken for its number. Make a CJxString of it, or convert it to one of the types
  /// above.
  template <std::integral Other>
  friend CJxString operator+(CJxString left, Other right) = delete;

  /// Appends a text.
  CJxString& operator+=(const char* right) { return append(notNull(right)); }

  /// Returns the first position of `text` (or `character`) at or after `start`, or -1 if there is none, or none that an
  /// int can hold. A `start` below 0 counts as 0. The empty text is found everywhere.
  int Find(const char* text, int start) const { return position(text_.find(notNull(text), offset(start))); }
  int Find(char character, int start) const { return position(text_.find(character, offset(start))); }

  /// Returns up to `length` bytes from `start` on, or the empty text if `start` is beyond the end or `length` is
  /// below 1. A `start` below 0 counts as 0.
  CJxString SubStr(int start, int length) const {
    if (length < 1 || offset(start) >= text_.size()) return {};
    return CJxString(text_.substr(offset(start), static_cast<std::size_t>(length)));
  }

  /// Compares bytes. A `const char*` has operators of its own; without them the comparison of two pointers would match.
  bool operator==(const CJxString& other) const { return text_ == other.text_; }
  bool operator==(const char* other) const { return text_ == notNull(other); }
  std::strong_ordering operator<=>(const CJxString& other) const { return text_.compare(other.text_) <=> 0; }
  std::strong_ordering operator<=>(const char* other) const { return text_.compare(notNull(other)) <=> 0; }

 private:
  explicit CJxString(string text) : text_(std::move(text)) {}

  CJxString& append(const string& right) {
    text_ += right;
    return *this;
  }
  static const char* notNull(const char* text) { return text ? text : ""; }
  static std::size_t offset(int start) { return start > 0 ? static_cast<std::size_t>(start) : 0; }
  static int position(std::size_t found) { return std::in_range<int>(found) ? static_cast<int>(found) : -1; }

  string text_{};
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_STRING_H_
