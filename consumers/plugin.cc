// A shared library that uses KDXCommon: a process may have several.
#include <kdxcommon/kdxcommon.h>

#if defined(_WIN32)
#define PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

PLUGIN_EXPORT void pluginSetJob(long long job) {
  kdx::setJobIDForCurrentThread(job);
}
PLUGIN_EXPORT long long pluginJob() {
  return kdx::getJobIDForCurrentThread();
}
