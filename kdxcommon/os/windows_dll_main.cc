// The entry point of KDXCommon.dll; part of the library alone, not of programs that are made of the same objects.
//
// The library has no use for the notifications of threads, so it turns them off. The system refuses that to a library
// with thread-local storage of its own, as the C++ runtime inside this one has when it is linked statically: the
// runtime then goes on freeing what a thread of the host leaves there, and the notifications pass here unheeded.

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void* /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) ::DisableThreadLibraryCalls(library);
  return TRUE;
}
