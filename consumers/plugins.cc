// Loads two shared libraries that use KDXCommon: they share its state, also with the program if it uses the library
// itself. Frees both while a thread that has called them lives on: the state is still there when one is loaded again.
// Usage: plugins FIRST SECOND. Returns 0 if all this holds.
#include <cstdio>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
void* load(const char* path) {
  return reinterpret_cast<void*>(LoadLibraryA(path));
}
void* find(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
bool unload(void* library) {
  return FreeLibrary(static_cast<HMODULE>(library)) != 0;
}
#else
#include <dlfcn.h>
void* load(const char* path) {
  return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}
void* find(void* library, const char* name) {
  return dlsym(library, name);
}
bool unload(void* library) {
  return dlclose(library) == 0;
}
#endif

#if defined(KDX_PROGRAM_USES_LIBRARY)
#include <kdxcommon/kdxcommon.h>
bool seenByProgram(long long job) {
  return kdx::getJobIDForCurrentThread() == job;
}
#else
bool seenByProgram(long long) {
  return true;
}
#endif

struct Plugin {
  explicit Plugin(const char* path) : library(load(path)) {
    if (library == nullptr) return;
    setJob = reinterpret_cast<void (*)(long long)>(find(library, "pluginSetJob"));
    job = reinterpret_cast<long long (*)()>(find(library, "pluginJob"));
  }
  bool loaded() const { return setJob != nullptr && job != nullptr; }
  void* library;
  void (*setJob)(long long) = nullptr;
  long long (*job)() = nullptr;
};

bool sharedAndKept(const char* first, const char* second) {
  const Plugin one(first);
  const Plugin two(second);
  if (!one.loaded() || !two.loaded()) return false;
  one.setJob(3456);
  if (two.job() != 3456 || !seenByProgram(3456)) return false;
  if (!unload(one.library) || !unload(two.library)) return false;
  const Plugin again(first);
  return again.loaded() && again.job() == 3456;
}

int main(int argc, char** argv) {
  bool passed = false;
  if (argc == 3) std::thread([&] { passed = sharedAndKept(argv[1], argv[2]); }).join();
  std::puts(passed ? "shared and kept" : "failed");
  return passed ? 0 : 1;
}
