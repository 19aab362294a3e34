#include "kdxcommon/names/advisory_sources.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kdxcommon/inhouse/jxutils/jx_exception.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::wide;

TEST(AdvisorySources, CheckTheRoot) {
  const struct {
    string dn;
    bool software, storage;
  } cases[] = {
      {"Software", true, false},     {"Software;Job Manager", true, false},    {"Software;;x", true, false},
      {"Storage", false, true},      {"Storage;NASEMC;Celerras", false, true}, {"software;Job Manager", false, false},
      {";Software", false, false},   {R"(Software\;x)", false, false},         {"Softwar", false, false},
      {"Softwares;x", false, false}, {"Other;Software", false, false},         {"", false, false},
  };
  for (const auto& expected : cases) {
    SCOPED_TRACE(expected.dn);
    CBasicX500Name name;
    EXPECT_EQ(name.setDN(expected.dn), !expected.dn.empty());
    EXPECT_EQ(SoftwareAdvisorySource::isSoftwareAdvisorySource(name), expected.software);
    EXPECT_EQ(StorageAdvisorySource::isStorageAdvisorySource(name), expected.storage);
    EXPECT_EQ(isDVMAdvisorySource(name), expected.software || expected.storage);

    SoftwareAdvisorySource software;
    StorageAdvisorySource storage;
    EXPECT_TRUE(software.isRoot() && storage.isRoot() && software.isEmptyRDNEnabled() && storage.isEmptyRDNEnabled());
    CBasicX500Name& plainSoftware = software;  // through the virtual operations
    EXPECT_EQ(plainSoftware.setDN(expected.dn), expected.software);
    EXPECT_EQ(storage.setDN(name.wDN()), expected.storage);
    EXPECT_EQ(SoftwareAdvisorySource(software).aDN(), expected.software ? expected.dn : "Software");
    EXPECT_EQ(StorageAdvisorySource(storage).aDN(), expected.storage ? expected.dn : "Storage");
    // Unlike `setDN`, this takes any root.
    EXPECT_EQ(CBasicX500Name::createBasicX500NameFromDN(software, expected.dn), !expected.dn.empty());
    EXPECT_EQ(software.isEqual(name), !expected.dn.empty());
  }
}

TEST(AdvisorySources, ApplyTheirOwnFlagBehindTheRootCheck) {
  SoftwareAdvisorySource source;
  source.disableEmptyRDN();
  EXPECT_FALSE(source.setDN("Software;;x"));
  EXPECT_EQ(source.aDN(), "Software");
}

TEST(AdvisorySources, AreMadeOfChains) {
  wstring wideDN = wide(u"before");
  EXPECT_TRUE(emClientCreateStorageAdvisorySourceW({wide(u"a;b"), wide(u"c")}, wideDN));
  EXPECT_EQ(wideDN, wide(u"Storage;a\\;b;c"));
  EXPECT_TRUE(emClientCreateStorageAdvisorySourceW({}, wideDN));
  EXPECT_EQ(wideDN, wide(u""));
  string dn = "before";
  EXPECT_TRUE(emClientCreateStorageAdvisorySourceA({"caf\u00e9", "\xE9", "c"}, dn));
  EXPECT_EQ(dn, "Storage;caf\u00e9;;c");
  EXPECT_TRUE(emClientCreateStorageAdvisorySourceA({}, dn));
  EXPECT_EQ(dn, "");
}

TEST(AdvisorySources, KnowTwoTypesOfFiler) {
  const testing::ScopedLog log(0);
  std::vector<wstring> rdns = {wide(u"before")};
  EXPECT_TRUE(advFilerTypeRDNs(1, rdns));
  EXPECT_THAT(rdns, ElementsAre(wide(u"NASNetApp")));
  EXPECT_TRUE(advFilerTypeRDNs(2, rdns));
  EXPECT_THAT(rdns, ElementsAre(wide(u"NASEMC"), wide(u"Celerras")));
  EXPECT_THAT(log->take(), IsEmpty());
  EXPECT_FALSE(advFilerTypeRDNs(-3, rdns));
  EXPECT_THAT(rdns, IsEmpty());
  const testing::LoggedLine line = log->take().at(0);
  EXPECT_EQ(line.level, 0);
  EXPECT_EQ(line.function, "advFilerTypeRDNs()");
  EXPECT_EQ(line.text, "Advisory subsystem does not support filer type [-3]!");
}

TEST(AdvisorySources, FormatTheRDNOfAClient) {
  wstring rdn;
  formatOrbitClientIdRDN(rdn, wide(u"2"), 4294967295);
  EXPECT_EQ(rdn, wide(u"2:4294967295"));
  const auto failureOf = [&rdn](const wstring& orbitId, std::uint32_t clientId) -> string {
    try {
      formatOrbitClientIdRDN(rdn, orbitId, clientId);
    } catch (const JxException& failure) {
      return failure.text() + " " + failure.where();
    }
    return "";
  };
  EXPECT_EQ(failureOf({}, 0), "Undefined orbitId! formatOrbitClientIdRDN");
  EXPECT_EQ(failureOf(wide(u"2"), 0), "Undefined clientId! formatOrbitClientIdRDN");
  EXPECT_EQ(rdn, wide(u"2:4294967295"));
}

}  // namespace
}  // namespace kdx
