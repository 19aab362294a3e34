// Internal to the library: a file stream over the C library's, which every system has.

#ifndef KDXCOMMON_OS_STDIO_FILE_STREAM_H_
#define KDXCOMMON_OS_STDIO_FILE_STREAM_H_

#include <cstdio>
#include <memory>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Takes over `file`, which was opened with `mode`, and sees that writing is not buffered. Null for null.
std::unique_ptr<FileStream> stdioFileStream(std::FILE* file, const char* mode);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_STDIO_FILE_STREAM_H_
