// CWideString: one text in UTF-8 and UTF-16 at once. Code that has one form and needs the other builds a temporary one
// and reads the other form from it. Both are made when the value is set, so reading either costs nothing.
//
//   kdx::CWideString name("caf\u00e9");        // UTF-8 in
//   open(name.wString());                      // UTF-16 out
//   if (!name.initialized()) ...               // the bytes were not UTF-8, or there were none
//
// The states of an object:
//
//   empty        both forms empty, `initialized()` false: nothing, or an empty text, was set, or a wide text that is
//   not
//                UTF-16
//   held         both forms hold the text, `initialized()` true. A wide text with a zero unit in it is held whole, and
//   its
//                UTF-8 form ends before that unit
//   unconverted  the narrow form holds the bytes that were set, which are not UTF-8; the wide form is empty and
//                `initialized()` false
//
// Thread rule: one thread uses an object at a time, unless nobody changes it. Failure rule: `set` gives false;
// constructors and assignments drop that, and the state is all that is left to see. Only concatenation throws, apart
// from allocations.

#ifndef KDXCOMMON_STRINGS_WIDE_STRING_H_
#define KDXCOMMON_STRINGS_WIDE_STRING_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class KDXErrorTraits;

class KDX_EXPORT CWideString {
 public:
  /// What concatenation throws, by value, where the operand can't be converted.
  enum WSConcatenateExceptions_e { WSConversionFailed = 1 };

  CWideString();
  CWideString(const string& value);
  CWideString(const wstring& value);
  CWideString(string&& value);  ///< takes the text over without a copy, as all operations below with such an operand
  CWideString(wstring&& value);
  CWideString(const CWideString& other);
  CWideString(CWideString&& other) noexcept;  ///< leaves `other` empty
  ~CWideString();

  CWideString& operator=(const CWideString& other);
  CWideString& operator=(CWideString&& other) noexcept;  ///< leaves `other` empty
  CWideString& operator=(const string& value);
  CWideString& operator=(const wstring& value);
  CWideString& operator=(string&& value);
  CWideString& operator=(wstring&& value);

  /// Sets the text. False where it can't be converted: the object is then unconverted. An empty text gives true and
  /// leaves the object empty.
  bool set(const string& value);
  bool set(string&& value);
  /// Sets the text. False where it can't be converted: the object is then empty. An empty text gives true and leaves
  /// the object empty.
  bool set(const wstring& value);
  bool set(wstring&& value);

  /// Leaves the object empty.
  void clear();

  /// Whether the last text set was not empty and could be converted.
  bool initialized() const { return initializedFlag; }

  // The two forms. References hold until the object changes.
  const string& aString() const { return narrowValue; }
  const string& utf8String() const { return narrowValue; }
  const wstring& wString() const { return wideValue; }
  const wstring& utf16String() const { return wideValue; }
  const wstring& utf16StringV2() const { return wideValue; }

  // Equality of the wide forms, unit by unit: no folding of case, no normalisation. A text of the other kinds is taken
  // as an object made from it has it; one that can't be converted equals whatever has an empty wide form.
  bool operator==(const CWideString& other) const;
  bool operator==(const wstring& other) const;
  bool operator==(const string& other) const;
  bool operator!=(const CWideString& other) const { return !(*this == other); }
  bool operator!=(const wstring& other) const { return !(*this == other); }
  bool operator!=(const string& other) const { return !(*this == other); }

  /// Appends both forms of `other` if it is held, nothing otherwise. `initialized()` stays as it was.
  CWideString& operator+=(const CWideString& other);

  /// Appends a text; an object that is not held takes the text as `set` does, in place of what it had. Throws
  /// `WSConversionFailed` where the text can't be converted: a held object is then unchanged, another one in the state
  /// that the failed `set` leaves.
  CWideString& operator+=(const string& other);
  CWideString& operator+=(const wstring& other);

  /// A copy of this object to which the operand has been appended; throws as `+=` does.
  CWideString operator+(const CWideString& other) const;
  CWideString operator+(const string& other) const;
  CWideString operator+(const wstring& other) const;

  /// Sets `out` to the UTF-8 form of `in` up to its first zero unit, with U+FFFD in the place of each surrogate without
  /// its partner. Always true; `errors` receives nothing, and the object is not looked at.
  bool convert(const wstring& in, string& out, KDXErrorTraits& errors) const;

 private:
  void initialize();
  void wideClear();
  bool widen();
  bool narrow();
  template <typename Text>
  CWideString& append(const Text& other);

  string narrowValue;
  wstring wideValue;
  bool initializedFlag = false;
};

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_WIDE_STRING_H_
