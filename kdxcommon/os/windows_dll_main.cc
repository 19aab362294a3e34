// The entry point of KDXCommon.dll; part of the library alone, not of programs that are made of the same objects.

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void* /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) ::DisableThreadLibraryCalls(library);
  return TRUE;
}
