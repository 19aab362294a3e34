// Every allocation of every public operation fails, alone and with all that follow. This program replaces the global
// allocation functions.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <new>
#include <sstream>
#include <thread>

#include "kdxcommon/kdxcommon.h"
#include "kdxcommon/settings/subclient_options_cache.h"
#include "kdxcommon/testing/dump_scenarios.h"

namespace {

struct Heap {
  int failing = 0;  // the number of the allocation that fails, counted down; 0 if none does
  bool forEver = false;
  bool failed = false;
  std::atomic<long> live = 0;
};
Heap heap;

// Stores the start of the block before the result.
void* allocate(std::size_t size, std::size_t alignment) {
  if (heap.failing > 0 && --heap.failing == 0) {
    heap.failed = true;
    heap.failing = heap.forEver ? 1 : 0;
    throw std::bad_alloc();
  }
  void* block = std::malloc(size + alignment);
  if (!block) throw std::bad_alloc();
  ++heap.live;
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  auto* result = reinterpret_cast<void**>((address / alignment + 1) * alignment);
  result[-1] = block;
  return result;
}

void release(void* memory) {
  if (!memory) return;
  --heap.live;
  std::free(static_cast<void**>(memory)[-1]);
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate(size, std::max<std::size_t>(static_cast<std::size_t>(alignment), __STDCPP_DEFAULT_NEW_ALIGNMENT__));
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  release(memory);
}

namespace kdx {
namespace {

using testing::wide;

const string kText(40, 'x'), kLines(3000, '\n');
const wstring kWide = wide(u"a wide text that is too long for a short one");

// An object whose changes must leave what `read` returns if they throw.
template <typename Object, typename Read>
struct Kept {
  Object& object;
  Read read;

  template <typename Change>
  void operator()(const Change& change) const {
    const int failing = std::exchange(heap.failing, 0);
    const std::decay_t<decltype(read(object))> before = read(object);
    heap.failing = failing;
    try {
      change(object);
    } catch (const std::bad_alloc&) {
      heap.failing = 0;
      EXPECT_EQ(read(object), before);
      throw;
    }
  }
};

template <typename Object, typename Read>
Kept(Object&, Read) -> Kept<Object, Read>;

template <typename Folding, typename Text>
void foldCases(const Text& text) {
  Folding folding(text);
  const Kept kept{folding, [](const Folding& f) { return std::pair(f.original(), f.utf().wString()); }};
  kept([&](Folding& f) { f += text; });
  kept([&](Folding& f) { f = text; });
  kept([](Folding& f) { f = f + f; });
}

template <typename Text>
void formatDates() {
  Text text;
  CDateTime date(1'281'021'492);
  date.formatXMLDateTime(text, false);
  date.formatLocalODBCDate(text, true);
  CTime().formatODBCTime(text, true);
  CDate().formatODBCDate(text, true);
  date.setXML(text, true);
}

const string& file() {
  static const testing::TemporaryDirectory directory;
  static const string path = directory.path("file");
  return path;
}

struct Call {
  const char* header;
  void (*run)();
};

const Call kCalls[] = {
    {"strings/wide_string.h",
     [] {
       CWideString text(kText), other(kWide);
       const Kept kept{text, [](const CWideString& t) { return std::pair(t.aString(), t.wString()); }};
       kept([&](CWideString& t) { t = other; });
       text += kText;
       text += kWide;
       text = text + other;
       string out;
       KDXErrorTraits errors;
       text.convert(kWide, out, errors);
       text.set(kText + kText);
       text.set(kWide + kWide);
     }},
    {"strings/case_folding_strings.h",
     [] {
       foldCases<CUpperCaseString>(kText);
       foldCases<CLowerCaseString>(kText);
       foldCases<CUpperCaseWString>(kWide);
       foldCases<CLowerCaseWString>(kWide);
     }},
    {"datetime/date_time.h", [] { formatDates<string>(), formatDates<wstring>(); }},
    {"names/basic_x500_name.h",
     [] {
       SoftwareAdvisorySource name;
       CBasicX500Name other(name);
       bool isRootName = false;
       const auto dn = [](const CBasicX500Name& n) { return n.wDN(); };
       const Kept kept{name, dn};
       const Kept keptOther{other, dn};
       kept([](CBasicX500Name& n) { n.setDN("Software;" + kText); });
       kept([](CBasicX500Name& n) { n.addRDN("node;" + kText); });
       kept([](CBasicX500Name& n) { n.addRDN(kWide); });
       keptOther([&](CBasicX500Name& n) { name.getParent(n, isRootName); });
       keptOther([&](CBasicX500Name& n) { name.getSubname(n, 1); });
       keptOther([&](CBasicX500Name& n) { name.getRoot(n); });
       keptOther([](CBasicX500Name& n) { CBasicX500Name::createBasicX500NameFromDN(n, kText); });
       name.depth();
       name.aDN();
       StorageAdvisorySource().setDN("Storage;" + kText);
     }},
    {"names/advisory_sources.h",
     [] {
       string dn;
       wstring wideDn;
       emClientCreateStorageAdvisorySourceA({kText, kText}, dn);
       emClientCreateStorageAdvisorySourceW({kWide, kWide}, wideDn);
       std::vector<wstring> rdns;
       advFilerTypeRDNs(2, rdns);
       advFilerTypeRDNs(3, rdns);
       Kept{wideDn, std::identity()}([](wstring& rdn) { formatOrbitClientIdRDN(rdn, kWide, 7); });
       try {
         formatOrbitClientIdRDN(wideDn, kWide, 0);
       } catch (const JxException&) {
       }
     }},
    {"logging/error_traits.h",
     [] {
       KDXErrorTraits errors;
       errors.setTextError(7, kText, kText, 2);
       errors.setFileNotFoundError(kText, 2);
       errors.setAPICallError(kText, kText, 2);
       errors.setDbError(77, 2, kText);
       KDXErrorTraits other(errors);
       other = errors;
       ZQLastError error(kErrorFileNotFound, ZQLE_MAJOR);
       error.addArgument(kText.c_str());
       error.message();
       error.setCritical(2);
       error.message();
     }},
    {"logging/logger_traits.h",
     [] {
       const KDXLoggerTraits logger(7);
       logger.message(0, "f", "%s", string(3000, 'x').c_str());
       logger.message(0, "f", 2, "%s", kText.c_str());
       logger.messageOfSize(5000, 0, "f", "%s", kText.c_str());
       EvDebug().DebugLvl("f", 0, "%s", kText.c_str());
       KDXLoggerTraits::setJobID(7);
     }},
    {"inhouse/embedded_site.h",
     [] {
       EmbeddedSite& s = EmbeddedSite::current();
       Kept{s, [](auto& e) { return e.number(kText, kText); }}([](auto& e) { e.setNumber(kText, kText, 7); });
       s.addApplication({9, 9}, {.type = 602});
       s.addSubclient({9, 9}, {.id = 9, .directory = kText});
       s.setFocusClientName(kText);
       s.setClientHostName(kText, kText);
       s.setClusterGroup(kText, kText);
       s.setClusterState(1);
       bool clustered = false;
       string group;
       EXPECT_TRUE(platformClusteredForCN(clustered, group, nullptr) && clustered && group == kText);
       bool enabled = false, fileAnalytics = false;
       int mode = 7;
       forgetSubClientOptions();
       EXPECT_TRUE(getKDXSubClientOptions(enabled, mode, fileAnalytics, 9, 9) && mode == -1);
       s.setLineSink(std::shared_ptr<LineSink>(s.lineSink()));
     }},
    {"platform/os_identity.h, hardware.h",
     [] {
       LD_OSInformation_s information;
       int error = 0;
       string text, name;
       std::uint32_t major = 0, minor = 0, build = 0;
       platformOSInformation(information, error);
       platformOSVersionNumeric(name, major, minor, build, text, error);
       platformOSDistribution(text, error);
       platformTypeOfCPU(text, error);
       platformComputerName(text, error);
     }},
    {"platform/hosts.h",
     [] {
       LD_hostent_s host;
       ZQLastError error;
       string text;
       std::set<string> names;
       platformGethostname(text, &error);
       platformGethostbynameV2("127.0.0.1", host, &error);
       platformGetIPbyHostname("127.0.0.1", text, error);
       platformGetHostnamesByIPAddr("127.0.0.1", names, error);
     }},
    {"platform/files_and_clock.h",
     [] {
       string text;
       TimeZone_t zone;
       int error = 7;
       ZQLastError lastError;
       winGetOSErrorMessage(2, text);
       Kept{text, std::identity()}([](string& s) { winGetOSErrorMessage(2, s); });
       platformGetTimeZone(zone, &lastError);
       platformAccessW(kWide, 0, &lastError);
       platformWriteEntireFileContent(file(), kText, error);
       const bool failed = heap.failed;
       EXPECT_TRUE(platformReadEntireFileContents(file(), text, error) || heap.failed != failed);
       EXPECT_EQ(error, 7);
     }},
    {"platform/text_helpers.h",
     [] {
       string text = "a long text with \"quotes\", *stars* and (brackets)";
       wstring wideText = wide(u"a long text with \"quotes\", *stars* and (brackets)");
       escapeDoubleQuote(text);
       escapeADSIspecialChars(text);
       escapeADSIspecialChars(wideText);
       platformATOF("1." + string(60, '0'));
       platformWATOF(wide(u"1.00000000000000000000000000000000000000000000000000000000000000000000"));
     }},
    {"inhouse/jxutils, jxnetwork, zqappmgr",
     [] {
       CJxDirectory directory;
       SJxDirEntry entry;
       bool end = false;
       static const string temporary = std::filesystem::temp_directory_path().string();
       directory.Open(temporary.c_str(), "kdx*common*memory*", true);
       directory.GetEntry(&entry, end);
       std::vector<CJxIPAddr> addresses;
       CJxIPAddr::GetAllByName("127.0.0.1", addresses, IP_FAMILY_ANY);
       CJxString text = CJxString(kText.c_str()) + 7 + kText.c_str();
       for (const CJxIPAddr& address : addresses) address.GetAddressString(text);
       ApplicationId id(602, 7);
       id.getApplicationType(nullptr);
       id.getSubclient(nullptr);
     }},
    {"sinks",
     [] {
       FileLineSink sink(file().c_str(), LogFileUse::kSeveralProcesses);
       const LogRecord record = {2, "f", 1, kText, kLines};
       sink.write(record);
       const auto rotating = std::make_shared<RotatingFileLineSink>((file() + "s").c_str(), Rotation{.maxBytes = 1});
       const auto memory = std::make_shared<MemoryLineSink>(2, LogFormat::kJson);
       TeeLineSink tee({{rotating, 4}, {memory, 4}, {std::make_shared<SystemLogSink>("s", "nowhere"), 4}});
       for (int i = 0; i < 2; ++i) tee.write(record);
       memory->lines();
     }},
};

// Fails the first, second, ... allocation of `run`, alone and with all that follow, until none is left to fail. After
// each, `check` holds, nothing is leaked, and another thread can do the same. Returns the number of failed runs.
template <typename Run, typename Check>
int failEachAllocation(const char* name, const Run& run, const Check& check) {
  run();  // what is made once is made here
  for (int allocation = 1, runs = 0;; ++allocation) {
    for (const bool forEver : {false, true}) {
      SCOPED_TRACE(std::string(name) + ", allocation " + std::to_string(allocation));
      check(false);
      const long live = heap.live;
      heap.failed = false;
      heap.forEver = forEver;
      heap.failing = allocation;
      try {
        run();
      } catch (const std::bad_alloc&) {
      }
      heap.failing = 0;
      EXPECT_EQ(heap.live, live);
      if (!heap.failed) return runs;
      ++runs;
      check(true);
      std::thread([&] { run(); }).join();
    }
  }
}

TEST(Memory, ThatRunsOutIsReportedAndNothingIsLost) {
  struct Drops : LineSink {
    void write(const LogRecord&) override {}
  };
  const testing::DumpStage stage;
  testing::FixedClock clock;
  const os::ScopedOperatingSystem scope(clock);
  const testing::ScopedLog restoresTheSink(4);
  EmbeddedSite::current().setLineSink(std::make_shared<Drops>());
  int runs = 0;
  for (const Call& call : kCalls) {
    runs += failEachAllocation(call.header, call.run, [](bool) {});
  }
  std::cout << runs << " runs with failed allocations of values\n";
  for (const testing::DumpScenario& scenario : testing::kDumpScenarios) {
    const testing::DumpStage::Files untouched = filesAfter(stage, scenario);
    runs += failEachAllocation(
        scenario.name, [&] { scenario.run(stage); },
        [&](bool failed) {
          if (failed) stage.expectSound(untouched, scenario.written);
          if (!failed) stage.restore();
        });
  }
  std::cout << runs << " runs with failed allocations\n";
}

}  // namespace
}  // namespace kdx
