// The entry point of KDXCommon.dll; only in the library, not in programs made of the same objects.
//
// The library stays loaded until the process ends, whoever frees it: its state belongs to the process, and hosts keep
// objects whose code is in it.
//
// The library doesn't use thread notifications, so it turns them off. The system refuses that to a library with
// thread-local storage of its own, such as that of a statically linked C++ runtime: the runtime then still frees what a
// host's thread leaves there, and `DllMain` ignores the notifications.

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void* /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    ::DisableThreadLibraryCalls(library);
    HMODULE pinned = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         reinterpret_cast<const wchar_t*>(&DllMain), &pinned);
  }
  return TRUE;
}
