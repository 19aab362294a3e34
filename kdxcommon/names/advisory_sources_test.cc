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
void checkSource(const string& dn, bool taken, bool isDVM, bool (&isSource)(const CBasicX500Name&)) {
  Source source;
  CBasicX500Name name, &base = source;
  EXPECT_EQ(base.setDN(dn), taken) << dn;
  EXPECT_EQ(Source(source).aDN(), taken ? dn : Source::root());
  name.setDN(dn);
  base = name;  // doesn't look at the root
  EXPECT_TRUE(isSource(source) == taken && isDVMAdvisorySource(name) == isDVM) << dn;
}

TEST(AdvisorySources, CheckTheRoot) {
  for (const string dn : {"Software", "Software;;x", "Storage;NASEMC", "software;x", ";Software", "Storage\\;x", ""}) {
    const bool software = dn.starts_with("So");
    const bool storage = dn.starts_with("Storage;");
    checkSource<SoftwareAdvisorySource>(dn, software, software || storage,
                                        SoftwareAdvisorySource::isSoftwareAdvisorySource);
    checkSource<StorageAdvisorySource>(dn, storage, software || storage,
                                       StorageAdvisorySource::isStorageAdvisorySource);
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
