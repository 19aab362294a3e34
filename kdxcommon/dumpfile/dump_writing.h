// Internal: writes one text as the whole content of a file.

#ifndef KDXCOMMON_DUMPFILE_DUMP_WRITING_H_
#define KDXCOMMON_DUMPFILE_DUMP_WRITING_H_

#include <cstddef>
#include <cstdint>
#include <limits>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/inhouse/jxutils/jx_file.h"

namespace kdx {

/// The result of writing a text: the steps that failed, and the number of bytes that the system wrote to the file.
struct DumpWriting {
  bool openFailed = false;
  bool writeFailed = false;
  bool closeFailed = false;
  std::uint32_t written = 0;
};

/// Replaces the content of the file `path` by `text`. For a text of more than `largest` bytes, by default the most that
/// one write accepts, sets only `writeFailed` and doesn't open the file, so that its content is kept.
DumpWriting writeDump(CJxFile& file, const char* path, const string& text,
                      std::size_t largest = std::numeric_limits<std::uint32_t>::max());

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DUMP_WRITING_H_
