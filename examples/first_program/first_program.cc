#include <kdxcommon/kdxcommon.h>

int main() {
  kdx::EmbeddedSite::current().addApplication({1, 2}, {.type = 602});
  kdx::EmbeddedSite::current().addSubclient({1, 2}, {.id = 7, .directory = "."});
  kdx::KDXJobIDForCurrentThreadMonitor job(3456);
  kdx::CDumpFile dump(kdx::ITERATION_JOB, 1, 2, 3456, 0);
  return dump.dumpXMLBlob(kdx::CWideString("<files/>").wString()) ? 0 : 1;
}
