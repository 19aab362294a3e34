// CWideString holds one text in two encodings: a `string` of UTF-8 bytes and a `wstring` of UTF-16 units. Set it from
// one and read the other. To convert a text, build a temporary:
//
//   const kdx::wstring path = kdx::CWideString("/var/lib/agent/caf\u00e9").wString();
//
//   kdx::CWideString title;
//   if (!title.set(bytes)) return false;   // not UTF-8
//   title += " (copy)";
//
// The text is converted when it is set; the accessors compute nothing. An object is in one of three states:
//
//   Empty        both forms are empty, initialized() is false: the object is new, or was cleared, set to an empty text
//                (which succeeds) or set to a `wstring` that isn't UTF-16
//   Held         both forms hold the text, initialized() is true
//   Unconverted  set() was called with a `string` that isn't UTF-8: aString() returns those bytes, wString() is empty,
//                initialized() is false
//
// Two kinds of text are held in both forms while initialized() is false: the text of a CWideString that was appended to
// an object that isn't initialized(), and the text of the case-folding strings' `utf()`.
//
// The conversion of a `wstring` ends at its first NUL: wString() keeps the whole text, aString() the part before the
// NUL. A `string` is converted whole.
//
// Thread safety: not safe for concurrent use of one object, except for const operations; different objects are
// independent. Errors: set() returns false, constructors and assignments leave initialized() false, and concatenation
// throws WSConcatenateExceptions_e. Otherwise throws only std::bad_alloc; an object that was being set may then no
// longer be initialized(). Nothing is logged.

#ifndef KDXCOMMON_STRINGS_WIDE_STRING_H_
#define KDXCOMMON_STRINGS_WIDE_STRING_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class KDXErrorTraits;
enum class LetterCase : bool;
template <typename Text, LetterCase letterCase>
class CaseFoldingString;

/// One text in both encodings.
class KDX_EXPORT CWideString {
 public:
  /// The exceptions of concatenation, thrown by value.
  enum WSConcatenateExceptions_e : std::int32_t {
    WSConversionFailed = 1,  ///< the text to append isn't in its encoding
  };

  /// The object is Empty.
  CWideString();
  /// Calls `set(value)` and ignores its result; see `initialized()`. A text that is moved in isn't copied.
  CWideString(const string& value);
  CWideString(const wstring& value);
  CWideString(string&& value);
  CWideString(wstring&& value);
  /// Copies both forms and `initialized()`.
  CWideString(const CWideString& other);
  /// Leaves `other` Empty.
  CWideString(CWideString&& other) noexcept;
  ~CWideString();

  /// Copies both forms and `initialized()`, and reuses the object's memory if that suffices. If it throws
  /// std::bad_alloc, the object is unchanged.
  CWideString& operator=(const CWideString& other);
  /// Leaves `other` Empty.
  CWideString& operator=(CWideString&& other) noexcept;
  /// Calls `set(value)` and ignores its result; see `initialized()`.
  CWideString& operator=(const string& value);
  CWideString& operator=(const wstring& value);
  CWideString& operator=(string&& value);
  CWideString& operator=(wstring&& value);

  /// Sets both forms from UTF-8. Returns false and leaves the object Unconverted if `value` isn't UTF-8. Returns true
  /// and leaves the object Empty if `value` is empty.
  bool set(const string& value);
  bool set(string&& value);
  /// Sets both forms from UTF-16. Returns false and leaves the object Empty if `value` has an unpaired surrogate before
  /// its first NUL. Returns true and leaves the object Empty if `value` is empty.
  bool set(const wstring& value);
  bool set(wstring&& value);
  /// Makes the object Empty. Keeps its memory.
  void clear() { initialize(); }

  /// Returns whether the last text that was set is valid in its encoding and not empty.
  bool initialized() const { return initializedFlag; }
  /// Returns the UTF-8 form.
  const string& aString() const { return narrowValue; }
  /// Returns the UTF-8 form.
  const string& utf8String() const { return narrowValue; }
  /// Returns the UTF-16 form.
  const wstring& wString() const { return wideValue; }
  /// Returns the UTF-16 form.
  const wstring& utf16String() const { return wideValue; }
  /// Returns the UTF-16 form.
  const wstring& utf16StringV2() const { return wideValue; }

  /// Returns whether the UTF-16 forms are equal, unit by unit, in any state, without case folding or normalisation. An
  /// operand that isn't valid in its encoding has an empty UTF-16 form. The compiler derives `!=` and the reversed
  /// operands.
  bool operator==(const CWideString& other) const;
  bool operator==(const wstring& other) const;
  bool operator==(const string& other) const;

  /// Appends both forms of `other`. A no-op if `other` isn't `initialized()`. The receiver's `initialized()` doesn't
  /// change.
  CWideString& operator+=(const CWideString& other);
  /// Appends `other` to both forms. A receiver that isn't initialized() is set to `other` instead, whatever it held.
  /// Throws WSConcatenateExceptions_e if `other` isn't valid in its encoding; an initialized() receiver is then
  /// unchanged, any other is in the state that the failed `set` leaves.
  CWideString& operator+=(const string& other);
  CWideString& operator+=(const wstring& other);

  /// Returns a copy with `other` appended by `+=`. Throws as `+=` does.
  CWideString operator+(const CWideString& other) const;
  CWideString operator+(const string& other) const;
  CWideString operator+(const wstring& other) const;

  /// Sets `out` to the UTF-8 form of `in` up to its first NUL, with U+FFFD in place of each unpaired surrogate. Always
  /// returns true and leaves `errors` unchanged. The object is neither read nor changed.
  bool convert(const wstring& in, string& out, KDXErrorTraits& errors) const;

 private:
  // Stores its folded forms here, without a conversion by this class.
  template <typename Text, LetterCase letterCase>
  friend class CaseFoldingString;

  void initialize() {
    initializedFlag = false;
    narrowValue.clear();
    wideClear();
  }
  void wideClear() { wideValue.clear(); }
  void append(const string& narrow, const wstring& wide);
  bool convertNarrow();
  bool convertWide();

  string narrowValue;
  wstring wideValue;
  bool initializedFlag = false;
};

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_WIDE_STRING_H_
