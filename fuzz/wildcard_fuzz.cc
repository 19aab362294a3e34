// Any lines, each a pattern and, after its first space, a name: the result of matching must be that of trying every
// length of every star.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "kdxcommon/inhouse/jxutils/wildcard.h"

namespace {

using kdx::string_view;

bool matchesSlowly(string_view pattern, string_view name) {
  if (pattern.empty()) return name.empty();
  const bool oneMore = !name.empty() && (pattern[0] == '*' || pattern[0] == name[0]);
  if (pattern[0] != '*') return oneMore && matchesSlowly(pattern.substr(1), name.substr(1));
  return matchesSlowly(pattern.substr(1), name) || (oneMore && matchesSlowly(pattern, name.substr(1)));
}

// Returns the piece of `text` before `end`, and removes both from `text`.
string_view takeUpTo(char end, string_view& text) {
  const string_view piece = text.substr(0, text.find(end));
  text.remove_prefix(piece.size() == text.size() ? text.size() : piece.size() + 1);
  return piece;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  string_view text(reinterpret_cast<const char*>(data), size);
  while (!text.empty()) {
    string_view name = takeUpTo('\n', text);
    // Trying takes exponential time.
    const string_view pattern = takeUpTo(' ', name).substr(0, 8);
    name = name.substr(0, 10);
    if (kdx::Wildcard(pattern).matches(name) != matchesSlowly(pattern, name)) std::abort();
  }
  return 0;
}
