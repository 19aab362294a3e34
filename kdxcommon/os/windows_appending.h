// Internal to the library: files that Windows itself appends to.

#ifndef KDXCOMMON_OS_WINDOWS_APPENDING_H_
#define KDXCOMMON_OS_WINDOWS_APPENDING_H_

namespace kdx::os {

/// Replaces a descriptor that the C runtime opened for appending, which it does by a seek and a write, with one of the
/// same file that can only append. Returns the new descriptor and closes the old one. Returns `descriptor` unchanged if
/// it is -1 or not a regular file, or if the system refuses to reopen the file.
int appendedToBySystem(int descriptor);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_WINDOWS_APPENDING_H_
