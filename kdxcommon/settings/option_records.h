// Two plain records that components of the system pass to each other. Their layout is the contract. The components that
// fill a record define the meaning of its fields; this library neither reads nor writes a field after construction.
//
//   kdx::OptHdrAbars header;         // all numbers 0
//   kdx::subclientFiles files;       // both numbers 0, all texts empty
//   std::snprintf(files.text2, sizeof files.text2, "%s", name);
//
// Thread safety: not safe for concurrent use of one object, except for reading; different objects are independent.
// Nothing throws.

#ifndef KDXCOMMON_SETTINGS_OPTION_RECORDS_H_
#define KDXCOMMON_SETTINGS_OPTION_RECORDS_H_

#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// Two numbers, nine zero-terminated texts, and `text5`, a block of 2048 bytes whose layout its owners define.
struct subclientFiles {
  /// Sets both numbers and the first byte of each text and of the block to 0. The other bytes are not initialised.
  KDX_EXPORT subclientFiles();
  /// Copies the whole record.
  subclientFiles(const subclientFiles&) = default;
  /// Copies the whole record byte by byte, including the bytes after the end of a text.
  KDX_EXPORT subclientFiles& operator=(const subclientFiles& other);

  /// The fields; text5 is the block.
  std::uint32_t value32 = 0;
  std::uint64_t value64 = 0;
  char text1[1025];
  char text2[1024];
  char text3[1024];
  char text4[1024];
  char text5[2048];
  char text6[1024];
  char text7[1024];
  char text8[1024];
  char text9[1024];
  char text10[1024];
};

/// Four 16-bit and nine 32-bit numbers, without padding.
struct OptHdrAbars {
  /// Sets all numbers to 0.
  KDX_EXPORT OptHdrAbars();
  /// Copies the whole record.
  OptHdrAbars(const OptHdrAbars&) = default;
  /// Copies the whole record byte by byte.
  KDX_EXPORT OptHdrAbars& operator=(const OptHdrAbars& other);

  /// The fields.
  std::uint16_t word1 = 0;
  std::uint16_t word2 = 0;
  std::uint16_t word3 = 0;
  std::uint16_t word4 = 0;
  std::uint32_t dword1 = 0;
  std::uint32_t dword2 = 0;
  std::uint32_t dword3 = 0;
  std::uint32_t dword4 = 0;
  std::uint32_t dword5 = 0;
  std::uint32_t dword6 = 0;
  std::uint32_t dword7 = 0;
  std::uint32_t dword8 = 0;
  std::uint32_t dword9 = 0;
};

}  // namespace kdx

#endif  // KDXCOMMON_SETTINGS_OPTION_RECORDS_H_
