// A program as a user of the library writes it: a job with a log and a dump. Other projects' flags must suit it, so it
// is compiled with several. Returns 0 if everything worked.
#include <kdxcommon/kdxcommon.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

class CountingSink : public kdx::LineSink {
 public:
  void write(const kdx::LogRecord& record) override { records += record.jobId == 3456; }
  std::atomic<int> records{0};
};

bool failed(const char* what) {
  std::fprintf(stderr, "failed: %s\n", what);
  return false;
}

bool logsAndDumps() {
  const auto sink = std::make_shared<CountingSink>();
  kdx::EmbeddedSite& site = kdx::EmbeddedSite::current();
  site.setLineSink(sink);
  site.addApplication({1, 2}, {.type = 602});
  site.addSubclient({1, 2}, {.id = 7, .directory = "."});

  const kdx::KDXJobIDForCurrentThreadMonitor job(3456);
  const kdx::KDXLoggerTraits logger;
  logger.message(-1, "Consumer", "%s", kdx::version());
  if (sink->records == 0) return failed("log");

  const kdx::CWideString text(kdx::string("<t>\xC3\xA9</t>"));
  kdx::CDumpFile dump(kdx::ITERATION_JOB, 1, 2, 3456, 0);
  kdx::string contents;
  int error = 0;
  if (!dump.dumpXMLBlob(text.wString())) return failed("dump");
  if (!kdx::platformReadEntireFileContents("KDXSQLDump_SC_7_JOB_3456_ITR_0.txt", contents, error))
    return failed("file");
  return contents == text.aString() || failed("contents");
}

bool usesTemplates() {
  kdx::SoftwareAdvisorySource source;
  if (!source.setDN(kdx::string("Software;Agent")) || source.setDN(kdx::string("Storage"))) return failed("name");
  kdx::CUpperCaseString folded(kdx::string("ab"));
  folded += "c";
  return folded.upper() == "ABC" || failed("case");
}

bool catches() {
#if defined(__cpp_exceptions)
  kdx::wstring rdn;
  try {
    kdx::formatOrbitClientIdRDN(rdn, {}, 1);
    return failed("throw");
  } catch (const kdx::JxException&) {
  }
#endif
  return true;
}

}  // namespace

int main() {
  if (std::strcmp(kdx::version(), KDXCOMMON_VERSION_TEXT) != 0) return 1;
  return logsAndDumps() && usesTemplates() && catches() ? 0 : 1;
}
