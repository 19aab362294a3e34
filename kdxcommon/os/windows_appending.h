// Internal to the library: files of Windows to which the system itself appends.

#ifndef KDXCOMMON_OS_WINDOWS_APPENDING_H_
#define KDXCOMMON_OS_WINDOWS_APPENDING_H_

namespace kdx::os {

/// Replaces a descriptor that the C runtime opened for appending, which it does by a seek and a write, with one of the
/// same file that only ever appends; returns the new one, and the old one is closed. Returns `descriptor` itself where
/// it is -1, is no regular file, or the system refuses to open the file anew.
int appendedToBySystem(int descriptor);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_WINDOWS_APPENDING_H_
