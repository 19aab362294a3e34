#include "kdxcommon/inhouse/jxutils/wildcard.h"

namespace kdx {

Wildcard::Wildcard(string_view pattern) {
  const std::size_t firstStar = pattern.find('*');
  head_ = pattern.substr(0, firstStar);
  if (firstStar == string_view::npos) return;
  hasStar_ = true;
  const std::size_t lastStar = pattern.rfind('*');
  tail_ = pattern.substr(lastStar + 1);
  for (std::size_t start = firstStar + 1; start < lastStar;) {
    const std::size_t star = pattern.find('*', start);
    if (star > start) middle_.emplace_back(pattern.substr(start, star - start));
    start = star + 1;
  }
}

bool Wildcard::matches(string_view name) const {
  if (!hasStar_) return name == head_;
  // Both ends are set off first, so that they can't share a byte.
  if (name.size() < head_.size() + tail_.size() || !name.starts_with(head_) || !name.ends_with(tail_)) return false;
  name.remove_prefix(head_.size());
  name.remove_suffix(tail_.size());
  // The leftmost place of a piece leaves the most for those behind it, so no other place needs to be tried.
  for (const string& piece : middle_) {
    const std::size_t found = name.find(piece);
    if (found == string_view::npos) return false;
    name.remove_prefix(found + piece.size());
  }
  return true;
}

}  // namespace kdx
