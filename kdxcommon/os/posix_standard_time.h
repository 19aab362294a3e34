// Internal to the library: determines which of the times that a zone has around a date is its standard time. The zone
// is the C library's; what is read of its history is cached, since reading it takes a hundred calls.

#ifndef KDXCOMMON_OS_POSIX_STANDARD_TIME_H_
#define KDXCOMMON_OS_POSIX_STANDARD_TIME_H_

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kdx::os {

/// Returns an instant near `second` at which the zone has its other time, daylight for standard time or the reverse, or
/// `second` itself if the zone has only one. The zone's data tell the two apart: for a daylight time the result is the
/// nearest standard time, at most two years away; for a standard time it is the next daylight time within a year. A
/// daylight time with the smaller offset counts only if there was also one in the year before.
std::int64_t otherTimeNear(std::int64_t second);

/// Returns the standard offset of the zone at `second`, in seconds, positive east of Greenwich: the smaller offset of
/// the two times that `otherTimeNear` distinguishes, whichever the zone's data call standard. If the data define
/// daylight time as an hour back in winter (Europe/Dublin), winter is still standard time.
std::int32_t standardOffsetAt(std::int64_t second);

/// Caches the results of `standardOffsetAt` from 1970 to 2106, read in pieces on first use. Outside that range, the
/// offset is that of the nearest second inside it. Thread safety: not safe for concurrent use of one object.
class StandardTimes {
 public:
  std::int32_t offsetAt(std::int64_t second) {
    const Piece& piece = pieceOf(second);
    return second < piece.changesAt ? piece.offset : laterOffset(piece, second);
  }

  /// Returns the second at which a clock that always runs on standard time shows `fields`, a date and time counted as
  /// if it were UTC. If the clock shows it twice, returns one of the two seconds.
  std::int64_t secondOf(std::int64_t fields) {
    const Piece& piece = pieceOf(fields);
    if (piece.changesAt == kNever) return fields - piece.offset;
    return fields - offsetAt(fields - offsetAt(fields));
  }

  /// Discards the cached offsets. Must be called when the zone has changed.
  void clear() { *this = {}; }

 private:
  static constexpr int kBitsOfPiece = 25;  // 388 days
  static constexpr int kPieces = 1 << (32 - kBitsOfPiece);
  static constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

  // About a year, with a day on either side, in which the offset seldom changes, and mostly once.
  struct Piece {
    std::int64_t changesAt = 0;  // 0 if not read yet
    std::int32_t offset = 0;     // before changesAt
    std::int32_t later = 0;      // from changesAt on; kManyChanges if it changes again
  };

  const Piece& pieceOf(std::int64_t second) {
    std::int64_t index = second >> kBitsOfPiece;
    if (index < 0 || index >= kPieces) [[unlikely]]
      index = index < 0 ? 0 : kPieces - 1;
    Piece& piece = pieces_[index];
    if (piece.changesAt == 0) [[unlikely]]
      piece = read(index << kBitsOfPiece);
    return piece;
  }

  static std::int32_t laterOffset(const Piece& piece, std::int64_t second);
  static Piece read(std::int64_t start);

  Piece pieces_[kPieces];
};

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_POSIX_STANDARD_TIME_H_
