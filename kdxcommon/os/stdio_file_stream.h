// Internal to the library: a FileStream over a stream of the C library, used on every system.

#ifndef KDXCOMMON_OS_STDIO_FILE_STREAM_H_
#define KDXCOMMON_OS_STDIO_FILE_STREAM_H_

#include <cstdio>
#include <memory>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Takes ownership of `file`, which was opened with `mode`, and turns buffering off if `mode` allows writing. Returns
/// null if `file` is null.
std::unique_ptr<FileStream> stdioFileStream(std::FILE* file, const char* mode);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_STDIO_FILE_STREAM_H_
