#include "kdxcommon/platform/hosts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <thread>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/testing/fake_machine.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;

using Hosts = testing::FakeMachine;

TEST_F(Hosts, TheFirstAddressIsANumberAndATextAndAliasesAreAppended) {
  const char* aliases[] = {"b", "a", nullptr};
  const std::tuple<int, std::uint32_t, std::uint32_t, const char*> rows[] = {
      {0, 0, 0, "0.0.0.0"},
      {1, 0xF8, 0xF8000000, "248.0.0.0"},
      {2, 0xF8F9, 0xF8F90000, "248.249.0.0"},
      {3, 0xF8F9FA, 0xF8F9FA00, "248.249.250.0"},
      {4, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"},
      {16, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"},
      {40, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"}};
  std::uint32_t hostid = 5;
  host.h_name = "b.org, ";
  host.h_aliases = aliases;
  for (const auto& [length, number, paddedNumber, text] : rows) {
    std::vector<char> octets(static_cast<std::size_t>(length));  // its memory ends with the address
    std::iota(octets.begin(), octets.end(), '\xF8');
    addresses[0] = octets.data();
    host.h_length = static_cast<std::int16_t>(length);
    LD_hostent_s found{"before", {"z"}, 5, 5, "before"};
    EXPECT_TRUE(platformHostid(hostid, error) && platformGethostbynameV2("h", found, nullptr));
    EXPECT_TRUE(hostid == number && found.addressNumber == paddedNumber && found.addressType == -2) << length;
    EXPECT_EQ(found.name + found.addressText, string("b.org, ") + text);
    EXPECT_THAT(found.aliases, ElementsAre("z", "b", "a"));
  }
  host.h_addr_list = nullptr;
  EXPECT_TRUE(platformHostid(hostid, error) && hostid == 0 && error == 7);
}

TEST_F(Hosts, NamesFitTheirBuffer) {
  ownName = string(2000, 'h');
  std::uint32_t hostid = 5;
  string name;
  EXPECT_TRUE(platformHostid(hostid, error) && platformGethostname(name, &lastError));
  EXPECT_EQ(lookedUp, string(1024, 'h'));
  EXPECT_EQ(name, string(257, 'h'));
}

TEST_F(Hosts, TheNetworkLayerGivesTheFirstAddress) {
  // What fails, the addresses in text (an empty one has none), the error.
  const std::tuple<const char*, std::vector<string>, std::uint32_t> rows[] = {
      {"WSAStartup", {"::1"}, 10091}, {"", {}, 0x56000002}, {"", {"", "::1"}, 2}, {"", {"fe80::1%eth0", ""}, 0}};
  string address = "before";
  for (const auto& [operation, texts, number] : rows) {
    failing = {{operation, 10091}};
    names = texts;
    EXPECT_EQ(address, "before");
    EXPECT_EQ(platformGetIPbyHostname("h", address, lastError = {}), number == 0);
    EXPECT_TRUE(lastError.number() == number && lastError.isCritical() == (number != 0)) << number;
  }
  EXPECT_EQ(address, "fe80::1%eth0");
  EXPECT_EQ(lookedUp, "h of family 0");
  EXPECT_EQ(nameFlags, os::kNameInfoNumericHost);
}

TEST_F(Hosts, ReverseLookupsGiveEachNameOnceAndTheAddressForWhatFails) {
  const string longName(300, 'n'), cut(256, 'n'), resolved = "IP address [10.1.2.3] resolved into fqdn [";
  string reason;
  winGetOSErrorMessage(2, reason);
  failing = {{"WSAStartup", 10091}};  // nobody asks for it
  names = {"b.org", "", "a.org", "b.org", longName};
  std::set<string> found = {"10.1.2.3", "before"};
  const testing::ScopedLog log(1);
  EXPECT_TRUE(platformGetHostnamesByIPAddr(*found.begin(), found, lastError));
  EXPECT_THAT(found, ElementsAre("10.1.2.3", "a.org", "b.org", cut));
  EXPECT_EQ(lookedUp, "10.1.2.3 of family 2");
  EXPECT_EQ(nameFlags, 0);
  const auto line = [](int level, const string& text) {
    return testing::LoggedLine{level, "platformGetHostnamesByIPAddr()", UNDEFINED_JOB_ID, "", text + ']'};
  };
  const string lost = "getnameinfo() failed on address returned for IP address [10.1.2.3]: [";
  EXPECT_THAT(log->take(), ElementsAre(line(1, resolved + "b.org"), line(0, lost + reason), line(1, resolved + "a.org"),
                                       line(1, resolved + "b.org"), line(1, resolved + cut)));
}

TEST(HostsConcurrency, EachThreadHasAHostOfItsOwn) {
  os::OperatingSystem& system = os::OperatingSystem::current();
  ASSERT_EQ(system.WSAStartup(os::kSocketLayerVersion), 0);
  std::atomic<int> wrong{0};
  const auto ask = [&](const string& name) {
    for (int question = 0; question < 200; ++question) {
      const os::hostent* found = system.gethostbyname(name.c_str());
      wrong += !found || found->h_name != name;
    }
  };
  { const std::jthread first(ask, "127.0.0.1"), second(ask, "127.0.0.2"), third(ask, "127.1.2.3"); }
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace kdx
