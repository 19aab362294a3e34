// Any bytes, as a narrow and as a wide text, whole and cut in two anywhere: a dual-encoding string must hold, append
// and refuse the same as the slow transcoder.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "kdxcommon/logging/error_traits.h"
#include "kdxcommon/strings/wide_string.h"
#include "slow_transcoder.h"

namespace {

using kdx::CWideString;

void require(bool holds) {
  if (!holds) std::abort();
}

bool same(const CWideString& a, const CWideString& b) {
  return a.aString() == b.aString() && a.wString() == b.wString() && a.initialized() == b.initialized();
}

template <typename Text>
void setEveryWay(const Text& value) {
  const CWideString text(value), held(kdx::string("held"));
  for (const CWideString& other :
       {CWideString(Text(value)), CWideString(held) = value, CWideString(held) = Text(value)}) {
    require(same(other, text));
  }
  CWideString own(value);
  CWideString& itself = own;
  own = std::move(itself);
  require(same(own, text));
  require(CWideString().set(Text(value)) == CWideString().set(value));
  require(text.utf8String() == text.aString());
  require(text.utf16String() == text.wString() && text.utf16StringV2() == text.wString());
}

void set(const kdx::string& bytes) {
  const CWideString text(bytes);
  const auto expected = kdx::testing::decodeSlowly(bytes);
  require(text.initialized() == (expected.has_value() && !bytes.empty()));
  require(text.aString() == bytes && text.wString() == expected.value_or(kdx::wstring()));
  require(CWideString().set(bytes) == expected.has_value());
  require(text == bytes && text == text.wString());
  // Decoded text encodes to the same bytes again, up to where a wide text ends.
  require(CWideString(text.wString()).aString() == bytes.substr(0, bytes.find('\0')) || !text.initialized());
}

void set(const kdx::wstring& units) {
  const CWideString text(units);
  const kdx::wstring ended = units.substr(0, units.find(kdx::wchar{0}));
  bool paired = true;
  const kdx::string expected = kdx::testing::encodeSlowly(ended, paired);
  require(text.initialized() == (paired && !units.empty()));
  require(text.aString() == (paired ? expected : "") && text.wString() == (paired ? units : kdx::wstring()));
  require(CWideString().set(units) == paired);
  require(text == units);
  kdx::string shown;
  kdx::KDXErrorTraits errors;
  require(text.convert(units, shown, errors) && shown == expected && errors.errorID() == 0);
}

template <typename Text>
void append(const Text& head, const Text& tail) {
  const CWideString left(head);
  const CWideString right(tail);
  const bool refused = !CWideString().set(tail);
  const bool equal = left.wString() == right.wString();
  require((left == right) == equal && (left == right.wString()) == equal);
  require((left == right.aString()) == (left == CWideString(right.aString())));
  // A receiver that isn't initialized is set to the operand; any other refuses or appends it as a whole.
  CWideString expected = left.initialized() ? left : right;
  if (left.initialized()) expected += right;
  CWideString sum(left);
  bool threw = false;
  try {
    sum += tail;
  } catch (const CWideString::WSConcatenateExceptions_e failure) {
    threw = failure == 1;
  }
  require(threw == refused && same(sum, expected));
  if (!refused) require(same(left + tail, expected));
  if (left.initialized()) require(same(left + Text(), left));

  sum = left + right;
  require(sum.initialized() == left.initialized());
  const bool appends = right.initialized();
  require(sum.aString() == left.aString() + (appends ? right.aString() : ""));
  require(sum.wString() == left.wString() + (appends ? right.wString() : kdx::wstring()));
}

template <typename Text>
void check(const Text& text, std::size_t cut) {
  cut %= text.size() + 1;
  setEveryWay(text);
  set(text);
  append(text.substr(0, cut), text.substr(cut));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t cut = *data;  // where the text is cut in two
  kdx::string bytes(data + 1, data + size);
  kdx::wstring units;
  for (std::size_t i = 1; i + 1 < size; i += 2) units += static_cast<kdx::wchar>(data[i] | data[i + 1] << 8);
  // No spare capacity, so that a sanitizer detects reads beyond the ends.
  bytes.shrink_to_fit();
  units.shrink_to_fit();
  check(bytes, cut);
  check(units, cut);
  return 0;
}
