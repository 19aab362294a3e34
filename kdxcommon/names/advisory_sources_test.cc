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

TEST(AdvisorySources, CheckTheRoot) {
  for (const string dn : {"Software", "Software;;x", "Storage;NASEMC", "software;x", ";Software", "Storage\\;x", ""}) {
    const bool isSoftware = dn.starts_with("So"), isStorage = dn.starts_with("Storage;");
    SoftwareAdvisorySource software;
    StorageAdvisorySource storage;
    EXPECT_TRUE(software.setDN(dn) == isSoftware && storage.setDN(dn) == isStorage) << dn;
    EXPECT_EQ(software.aDN(), isSoftware ? dn : "Software");
    EXPECT_EQ(storage.aDN(), isStorage ? dn : "Storage");
    CBasicX500Name name, &base = software;
    name.setDN(dn);
    base = name;  // doesn't check the root
    EXPECT_EQ(SoftwareAdvisorySource::isSoftwareAdvisorySource(software), isSoftware) << dn;
    EXPECT_EQ(StorageAdvisorySource::isStorageAdvisorySource(name), isStorage) << dn;
    EXPECT_EQ(isDVMAdvisorySource(name), isSoftware || isStorage) << dn;
  }
  SoftwareAdvisorySource strict;
  strict.disableEmptyRDN();
  EXPECT_FALSE(strict.setDN("Software;;x"));
}

TEST(AdvisorySources, AreMadeOfChainsForTypesOfFiler) {
  const testing::ScopedLog log(0);
  const wstring dns[] = {{}, wide(u"Storage;NASNetApp"), wide(u"Storage;NASEMC;Celerras"), {}};
  for (const int filerType : {1, 2, 3}) {
    std::vector<wstring> rdns = {wide(u"before")};
    wstring dn = wide(u"before");
    EXPECT_EQ(advFilerTypeRDNs(filerType, rdns), filerType != 3);
    EXPECT_TRUE(emClientCreateStorageAdvisorySourceW(rdns, dn) && dn == dns[filerType]);
  }
  EXPECT_EQ(log->take(), (std::vector<testing::LoggedLine>{{0, "advFilerTypeRDNs()", UNDEFINED_JOB_ID, "",
                                                            "Advisory subsystem does not support filer type [3]!"}}));
  string dn;
  EXPECT_TRUE(emClientCreateStorageAdvisorySourceA({"a;b", "\xE9", "caf\u00e9"}, dn));
  EXPECT_EQ(dn, "Storage;a\\;b;;caf\u00e9");
}

TEST(AdvisorySources, FormatTheRDNOfAClient) {
  wstring rdn;
  formatOrbitClientIdRDN(rdn, wide(u"2"), 4294967295);
  EXPECT_THAT([&] { formatOrbitClientIdRDN(rdn, {}, 0); }, ::testing::ThrowsMessage<JxException>("Undefined orbitId!"));
  EXPECT_THAT([&] { formatOrbitClientIdRDN(rdn, wide(u"2"), 0); },
              Throws<JxException>(AllOf(Property(&JxException::text, "Undefined clientId!"),
                                        Property(&JxException::where, "formatOrbitClientIdRDN"))));
  EXPECT_EQ(rdn, wide(u"2:4294967295"));
}

}  // namespace
}  // namespace kdx
