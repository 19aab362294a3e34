// Internal: writing one text as the whole content of a file.

#ifndef KDXCOMMON_DUMPFILE_DUMP_WRITING_H_
#define KDXCOMMON_DUMPFILE_DUMP_WRITING_H_

#include <cstddef>
#include <cstdint>
#include <limits>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/inhouse/jxutils/jx_file.h"

namespace kdx {

/// What became of a text: which step failed, and how many bytes reached the file.
struct DumpWriting {
  bool openFailed = false;
  bool writeFailed = false;
  bool closeFailed = false;
  std::uint32_t written = 0;
};

/// Writes `text` into the file `path`, in place of what it held. A text of more than `largest` bytes, by default the
/// most that one write takes, fails to be written before the file is opened, so that what it held stays.
DumpWriting writeDump(CJxFile& file, const char* path, const string& text,
                      std::size_t largest = std::numeric_limits<std::uint32_t>::max());

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_DUMP_WRITING_H_
