#include "kdxcommon/names/advisory_sources.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/inhouse/jxutils/jx_exception.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::AllOf;
using ::testing::Property;
using ::testing::Throws;
using testing::wide;

template <typename Source>
void checkSource(const string& dn, bool taken, bool (&isSource)(const CBasicX500Name&)) {
  CBasicX500Name name;
  name.setDN(dn);
  EXPECT_EQ(isSource(name), taken) << dn;
  Source source;
  EXPECT_TRUE(source.isRoot() && source.isEmptyRDNEnabled());
  EXPECT_EQ(static_cast<CBasicX500Name&>(source).setDN(dn), taken) << dn;
  EXPECT_EQ(Source(source).aDN(), taken ? dn : Source::root());
  source.disableEmptyRDN();
  EXPECT_EQ(source.setDN(name.wDN()), taken && dn.find(";;") == string::npos) << dn;
  static_cast<CBasicX500Name&>(source) = name;  // doesn't look at the root
  EXPECT_EQ(isSource(source), taken) << dn;
}

TEST(AdvisorySources, CheckTheRoot) {
  const struct {
    string dn, root;
  } cases[] = {{"Software", "Software"},
               {"Software;Job Manager", "Software"},
               {"Software;;x", "Software"},
               {"Storage;NASEMC", "Storage"},
               {"software;Job Manager", ""},
               {";Software", ""},
               {R"(Software\;x)", ""},
               {"Other;Software", ""},
               {"", ""}};
  for (const auto& [dn, root] : cases) {
    checkSource<SoftwareAdvisorySource>(dn, root == "Software", SoftwareAdvisorySource::isSoftwareAdvisorySource);
    checkSource<StorageAdvisorySource>(dn, root == "Storage", StorageAdvisorySource::isStorageAdvisorySource);
    CBasicX500Name name;
    CBasicX500Name::createBasicX500NameFromDN(name, dn);
    EXPECT_EQ(isDVMAdvisorySource(name), !root.empty()) << dn;
  }
}

TEST(AdvisorySources, AreMadeOfChainsForTypesOfFiler) {
  const testing::ScopedLog log(0);
  const struct {
    int filerType;
    string dn;
  } cases[] = {{1, "Storage;NASNetApp"}, {2, "Storage;NASEMC;Celerras"}, {3, ""}, {-4, ""}};
  for (const auto& expected : cases) {
    std::vector<wstring> rdns = {wide(u"before")};
    wstring dn = wide(u"before");
    EXPECT_EQ(advFilerTypeRDNs(expected.filerType, rdns), !expected.dn.empty());
    EXPECT_TRUE(emClientCreateStorageAdvisorySourceW(rdns, dn));
    EXPECT_EQ(dn, wstring(expected.dn.begin(), expected.dn.end()));
  }
  const auto lines = log->take();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[1], (testing::LoggedLine{0, "advFilerTypeRDNs()", UNDEFINED_JOB_ID, "",
                                           "Advisory subsystem does not support filer type [-4]!"}));

  string dn = "before";
  EXPECT_TRUE(emClientCreateStorageAdvisorySourceA({"a;b", "\xE9", "caf\u00e9"}, dn));
  EXPECT_EQ(dn, "Storage;a\\;b;;caf\u00e9");
  EXPECT_TRUE(emClientCreateStorageAdvisorySourceA({}, dn) && dn.empty());
}

TEST(AdvisorySources, FormatTheRDNOfAClient) {
  wstring rdn;
  formatOrbitClientIdRDN(rdn, wide(u"2"), 4294967295);
  const auto fails = [&rdn](const wstring& orbitId, const string& text) {
    const auto where = Property(&JxException::where, "formatOrbitClientIdRDN");
    EXPECT_THAT([&] { formatOrbitClientIdRDN(rdn, orbitId, 0); },
                Throws<JxException>(AllOf(Property(&JxException::text, text), where)));
  };
  fails({}, "Undefined orbitId!");
  fails(wide(u"2"), "Undefined clientId!");
  EXPECT_EQ(rdn, wide(u"2:4294967295"));
}

}  // namespace
}  // namespace kdx
