// CWideString holds one text in two encodings at once: a `string` of UTF-8 bytes and a `wstring` of UTF-16 units. Set
// it from one and read the other; code that crosses from one kind of text to the other builds a temporary:
//
//   const kdx::wstring path = kdx::CWideString("/var/lib/agent/caf\u00e9").wString();
//
//   kdx::CWideString title;
//   if (!title.set(bytes)) return false;   // not UTF-8
//   title += " (copy)";
//
// The conversion is paid when the text is set; reading either form costs nothing. An object is in one of three states:
//
//   Empty        both forms are empty, initialized() is false: a new object, one that was cleared, set to an empty text
//                (which succeeds) or to a `wstring` that isn't UTF-16
//   Held         both forms hold the text, initialized() is true
//   Unconverted  after set() of a `string` that isn't UTF-8: aString() gives those bytes, wString() is empty,
//                initialized() is false
//
// Only text that is appended to an object that isn't initialized(), and what folded strings give as their `utf()`, is
// held in both forms without that flag.
//
// A `wstring` ends at its first NUL for the conversion: wString() keeps all of it, aString() what stands before the
// NUL. A `string` is converted whole.
//
// Thread rule: an object belongs to one thread at a time unless nobody changes it. Failure rule: set() tells by its
// result, constructors and assignments leave it to initialized(), concatenation throws WSConcatenateExceptions_e. An
// allocation's exception passes through; an object that was being set may then be no longer initialized(). Nothing is
// logged.

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
  /// What concatenation throws, by value.
  enum WSConcatenateExceptions_e : std::int32_t {
    WSConversionFailed = 1,  ///< the text to append isn't in its encoding
  };

  /// Empty.
  CWideString();
  /// As `set(value)`; what it returns shows in `initialized()`. A text that is moved in isn't copied.
  CWideString(const string& value);
  CWideString(const wstring& value);
  CWideString(string&& value);
  CWideString(wstring&& value);
  /// Copies both forms and `initialized()`.
  CWideString(const CWideString& other);
  /// Leaves `other` Empty.
  CWideString(CWideString&& other) noexcept;
  ~CWideString();

  /// Copies both forms and `initialized()`, into the memory that the object has where that suffices. Throws
  /// std::bad_alloc with the object unchanged.
  CWideString& operator=(const CWideString& other);
  /// Leaves `other` Empty.
  CWideString& operator=(CWideString&& other) noexcept;
  /// As `set(value)`; what it returns shows in `initialized()`.
  CWideString& operator=(const string& value);
  CWideString& operator=(const wstring& value);
  CWideString& operator=(string&& value);
  CWideString& operator=(wstring&& value);

  /// Sets both forms from UTF-8. False, and Unconverted, where `value` isn't UTF-8. An empty value is a success that
  /// leaves the object Empty.
  bool set(const string& value);
  bool set(string&& value);
  /// Sets both forms from UTF-16. False, and Empty, where `value` has an unpaired surrogate before its first NUL. An
  /// empty value is a success that leaves the object Empty.
  bool set(const wstring& value);
  bool set(wstring&& value);
  /// Makes the object Empty. Keeps its memory.
  void clear() { initialize(); }

  /// Whether the last text set was not empty and in its encoding.
  bool initialized() const { return initializedFlag; }
  /// The UTF-8 form.
  const string& aString() const { return narrowValue; }
  /// The UTF-8 form.
  const string& utf8String() const { return narrowValue; }
  /// The UTF-16 form.
  const wstring& wString() const { return wideValue; }
  /// The UTF-16 form.
  const wstring& utf16String() const { return wideValue; }
  /// The UTF-16 form.
  const wstring& utf16StringV2() const { return wideValue; }

  /// Whether the UTF-16 forms are equal, unit by unit: no folding of case, no normalisation, whatever the states. An
  /// operand that isn't in its encoding has an empty UTF-16 form. `!=` and operands turned round come with it.
  bool operator==(const CWideString& other) const;
  bool operator==(const wstring& other) const;
  bool operator==(const string& other) const;

  /// Appends both forms of `other`, which must be `initialized()`: else nothing happens. Whether the receiver is
  /// initialized() doesn't change.
  CWideString& operator+=(const CWideString& other);
  /// Appends `other` in both forms. A receiver that isn't initialized() is set to `other` instead, whatever it held.
  /// Throws WSConcatenateExceptions_e where `other` isn't in its encoding: an initialized() receiver is unchanged then,
  /// any other is as the failed `set` leaves it.
  CWideString& operator+=(const string& other);
  CWideString& operator+=(const wstring& other);

  /// A copy with `other` appended by `+=`, which throws as that does.
  CWideString operator+(const CWideString& other) const;
  CWideString operator+(const string& other) const;
  CWideString operator+(const wstring& other) const;

  /// Sets `out` to the UTF-8 form of `in` up to its first NUL, with U+FFFD in the place of each unpaired surrogate.
  /// Always true, and nothing is written to `errors`. The object takes no part.
  bool convert(const wstring& in, string& out, KDXErrorTraits& errors) const;

 private:
  // Holds its folded forms here, which no conversion of this class made.
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
