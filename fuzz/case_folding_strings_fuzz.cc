// Any bytes, as a narrow and as a wide text cut in two: a folded string must hold texts unchanged, however they are put
// into it, and the folded forms that the slow transcoder makes of them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include "kdxcommon/strings/case_folding_strings.h"
#include "slow_transcoder.h"

namespace {

using kdx::string;
using kdx::wchar;
using kdx::wstring;

void require(bool holds) {
  if (!holds) std::abort();
}

// The expected content of a string.
template <typename Text>
struct Expected {
  Expected operator+(const Expected& other) const {
    return {original + other.original, wide + other.wide, utf8 + other.utf8};
  }
  Text original;
  wstring wide;
  string utf8;
};

template <typename Object, typename Text>
void requireHolds(const Object& object, const Expected<Text>& expected) {
  require(object.original() == expected.original && object.utf().wString() == expected.wide);
  require(object.utf().aString() == expected.utf8 && !object.utf().initialized());
}

wstring unitsOf(const wstring& units) {
  return units;
}

wstring unitsOf(const string& bytes) {
  return kdx::testing::decodeSlowly(bytes).value_or(wstring());
}

template <typename Text>
Expected<Text> foldSlowly(const Text& text, char first, char last, int distance) {
  const wstring units = unitsOf(text);
  Expected<Text> folded{text, units.substr(0, units.find(wchar{0})), {}};
  for (wchar& unit : folded.wide) unit = static_cast<wchar>(unit >= first && unit <= last ? unit + distance : unit);
  bool paired = true;
  folded.utf8 = kdx::testing::encodeSlowly(folded.wide, paired);
  return folded;
}

void join(const auto& first, const auto& second, const auto& expected) {
  using Object = std::remove_cvref_t<decltype(first)>;
  using Text = std::remove_cvref_t<decltype(first.original())>;
  const typename Object::Character* const null = nullptr;
  const typename Object::Character nul{};
  const Text empty;
  for (const Object& sum : {first + second, first + second.original(), Object(first) += second.original(),
                            Object() + first + second, (Object(second) = first) += second,
                            (Object(second) = first.original()) += second, Object(second) = first + second}) {
    requireHolds(sum, expected);
    requireHolds(sum + nul + empty + null + empty.c_str() + Object(), expected);
    for (const Object& emptied : {Object(sum) = nul, Object(sum) = empty, Object(sum) = null,
                                 Object(sum) = empty.c_str(), Object(sum) = Object(), Object(nul), Object(null)}) {
      requireHolds(emptied, Expected<Text>());
    }
  }
}

// Texts without a NUL are passed as pointers, too.
void joinEnded(const auto& first, const auto& second, const auto& expected) {
  using Object = std::remove_cvref_t<decltype(first)>;
  if (expected.original.find(typename Object::Character()) != expected.original.npos) return;
  for (const Object& sum : {first + second.original().c_str(), Object(first.original().c_str()) += second,
                            (Object(second) = first.original().c_str()) += second.original().c_str()}) {
    requireHolds(sum, expected);
  }
}

void takeOwn(auto text, const auto& whole, const auto& folded) {
  text = text.original();
  requireHolds(text = *&text, whole);
  requireHolds(text += text, whole + whole);
  text = whole.original;
  const auto own = (text.*folded)();
  text += (text.*folded)();
  require(text.original() == whole.original + own && (text.*folded)() == own + own);
}

template <typename Object, typename Text>
void check(const Text& text, std::size_t cut, const Text& (Object::*folded)() const, char first, char last,
           int distance) {
  const Text head = text.substr(0, cut % (text.size() + 1)), tail = text.substr(head.size());
  const Object left(head), right(tail);
  const Expected<Text> start = foldSlowly(head, first, last, distance);
  const Expected<Text> expected = start + foldSlowly(tail, first, last, distance);
  join(left, right, expected);
  joinEnded(left, right, expected);
  requireHolds(left, start);  // unchanged by the sums
  takeOwn(left + right, foldSlowly(text, first, last, distance), folded);
  if (tail.size() != 1 || tail == Text(1, {})) return;
  requireHolds(left + tail.front(), expected);
  requireHolds((Object(right) = head) += tail.front(), expected);
  requireHolds((Object(left) = tail.front()), foldSlowly(tail, first, last, distance));
  requireHolds(Object(tail.front()), foldSlowly(tail, first, last, distance));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t cut = *data;  // where the text is cut in two
  string bytes(data + 1, data + size);
  wstring units;
  for (std::size_t i = 1; i + 1 < size; i += 2) units += static_cast<wchar>(data[i] | data[i + 1] << 8);
  // No spare capacity, so that a sanitizer detects reads beyond the ends.
  bytes.shrink_to_fit();
  units.shrink_to_fit();
  check<kdx::CUpperCaseString>(bytes, cut, &kdx::CUpperCaseString::upper, 'a', 'z', 'A' - 'a');
  check<kdx::CLowerCaseString>(bytes, cut, &kdx::CLowerCaseString::lower, 'A', 'Z', 'a' - 'A');
  check<kdx::CUpperCaseWString>(units, cut, &kdx::CUpperCaseWString::upper, 'a', 'z', 'A' - 'a');
  check<kdx::CLowerCaseWString>(units, cut, &kdx::CLowerCaseWString::lower, 'A', 'Z', 'a' - 'A');
  return 0;
}
