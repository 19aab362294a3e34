#include "kdxcommon/platform/hosts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "kdxcommon/inhouse/jxnetwork/jx_ip_addr.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/testing/fake_machine.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Hosts : ::testing::Test {
  testing::FakeMachine machine;
  ScopedOperatingSystem scope{machine};
  ZQLastError lastError;
};

TEST_F(Hosts, TheFirstAddressIsANumberAndAText) {
  const std::tuple<std::int16_t, std::uint32_t, std::uint32_t, const char*> rows[] = {
      {-4, 0, 0, "0.0.0.0"},  // has no address
      {0, 0, 0, "0.0.0.0"},
      {1, 0xF8, 0xF8000000, "248.0.0.0"},
      {2, 0xF8F9, 0xF8F90000, "248.249.0.0"},
      {3, 0xF8F9FA, 0xF8F9FA00, "248.249.250.0"},
      {4, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"},
      {16, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"},
      {40, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"}};
  for (const auto& [length, number, paddedNumber, text] : rows) {
    std::vector<char> octets;  // its memory ends with the address
    for (int i = 0; i < length; ++i) octets.push_back(static_cast<char>(0xF8 + i));
    octets.shrink_to_fit();
    machine.addresses[0] = length < 0 ? nullptr : octets.data();
    machine.host.h_length = static_cast<std::int16_t>(std::abs(length));
    std::uint32_t hostid = 5;
    int error = 7;
    LD_hostent_s host{"before", {}, 5, 5, "before"};
    EXPECT_TRUE(platformHostid(hostid, error) && platformGethostbynameV2("h", host, nullptr));
    EXPECT_TRUE(hostid == number && host.addressNumber == paddedNumber && error == 7) << length;
    EXPECT_EQ(host.name + host.addressText, text);
    EXPECT_EQ(host.addressType, -2);
  }
  machine.host.h_addr_list = nullptr;
  std::uint32_t hostid = 5;
  int error = 7;
  EXPECT_TRUE(platformHostid(hostid, error) && hostid == 0);
}

TEST_F(Hosts, AliasesGrowOverTwoLookups) {
  const char* aliases[] = {"b", "a", nullptr};
  LD_hostent_s host;
  for (const char* const name : {"first", "second"}) {
    machine.host.h_name = name;
    machine.host.h_aliases = aliases;
    EXPECT_TRUE(platformGethostbynameV2("h", host, &lastError));
    EXPECT_EQ(host.name, name);
    aliases[1] = nullptr;
  }
  EXPECT_THAT(host.aliases, ElementsAre("b", "a", "b"));
}

TEST_F(Hosts, NamesFitTheirBufferAndFailuresTouchNothingButTheHostid) {
  // What fails, its last error, the host id then, and whether the name and the lookup fail with it.
  const std::tuple<const char*, int, std::uint32_t, bool, bool> rows[] = {{"WSAStartup", 10091, 5, true, true},
                                                                          {"gethostname", 10014, 0, true, false},
                                                                          {"gethostbyname", -2, 0, false, true}};
  for (const auto& [operation, number, hostidThen, nameFails, lookupFails] : rows) {
    machine.failing = {{operation, number}};
    machine.hostName = string(2000, 'h');
    std::uint32_t hostid = 5;
    int error = 7;
    string name = "before";
    LD_hostent_s host{"before", {"a"}, 5, 5, "before"};
    EXPECT_TRUE(!platformHostid(hostid, error) && error == number && hostid == hostidThen) << operation;
    EXPECT_EQ(machine.node, nameFails ? "" : string(1024, 'h'));
    machine.node.clear();
    for (ZQLastError* reason : {&lastError, static_cast<ZQLastError*>(nullptr)}) {
      EXPECT_EQ(platformGethostname(name, reason), !nameFails);
      EXPECT_EQ(platformGethostbynameV2("h", host, reason), !lookupFails);
    }
    EXPECT_TRUE(lastError.isCritical() && lastError.number() == static_cast<std::uint32_t>(number));
    EXPECT_EQ(name, nameFails ? "before" : string(257, 'h'));
    EXPECT_EQ(host.name + host.addressText == "beforebefore" && host.aliases.size() == 1, lookupFails);
    EXPECT_TRUE(!platformGethostbynameV2("", host, &lastError) && lastError.number() == 0x56000002);
  }
}

TEST_F(Hosts, TheNetworkLayerGivesTheFirstAddress) {
  // The host's name, what fails and with which number, the addresses in text (empty: it has none), the error.
  const std::tuple<const char*, const char*, int, std::vector<string>, std::uint32_t> rows[] = {
      {"", "", 0, {"::1"}, 0x56000002},
      {"h", "WSAStartup", 10091, {"::1"}, 10091},
      {"h", "getaddrinfo", -2, {"::1"}, 0xFFFFFFFE},
      {"h", "", 0, {}, 0x56000002},
      {"h", "", 0, {"", "::1"}, 2},
      {"h", "", 0, {"fe80::1%eth0", ""}, 0}};
  string address = "before";
  for (const auto& [name, operation, number, addresses, error] : rows) {
    machine.failing = {{operation, number}};
    machine.names = addresses;
    EXPECT_EQ(address, "before");
    EXPECT_EQ(platformGetIPbyHostname(name, address, lastError = {}), error == 0);
    EXPECT_EQ(lastError.number(), error);
    EXPECT_EQ(lastError.isCritical(), error != 0);
  }
  EXPECT_EQ(address + ", " + machine.node, "fe80::1%eth0, h of family 0");
  EXPECT_TRUE(machine.released == 2 && machine.nameFlags == kNameInfoNumericHost);
  CJxString none;
  EXPECT_TRUE(CJxIPAddr().GetAddressString(none).IsErrorSet());
}

TEST_F(Hosts, ReverseLookupsGiveEachNameOnceAndTheAddressForWhatFails) {
  const string longName(300, 'n'), cut(256, 'n');
  const string found = "1 IP address [10.1.2.3] resolved into fqdn [";
  const string lost = "0 getnameinfo() failed on address returned for IP address [10.1.2.3]: [";
  string reason;
  winGetOSErrorMessage(2, reason);
  machine.names = {"b.org", "", "a.org", "b.org", longName};
  std::set<string> names = {"10.1.2.3", "before"};
  const testing::ScopedLog log(1);
  EXPECT_TRUE(platformGetHostnamesByIPAddr(*names.begin(), names, lastError));
  EXPECT_THAT(names, ElementsAre("10.1.2.3", "a.org", "b.org", cut));
  EXPECT_EQ(machine.node, "10.1.2.3 of family 2");
  EXPECT_TRUE(machine.released == 1 && machine.nameFlags == 0);
  std::vector<string> lines;
  for (const auto& line : log->take()) {
    EXPECT_EQ(line.function, "platformGetHostnamesByIPAddr()");
    lines.push_back(std::to_string(line.level.value()) + ' ' + line.text);
  }
  EXPECT_THAT(
      lines, ElementsAre(found + "b.org]", lost + reason + ']', found + "a.org]", found + "b.org]", found + cut + ']'));
}

TEST_F(Hosts, ReverseLookupsThatFailLeaveAnEmptySet) {
  machine.failing = {{"getaddrinfo", -9}};
  for (const auto& [address, number] :
       {std::pair("", 0x56000002u), {"shortname", 0x56000002}, {"::1", 0xFFFFFFF7}, {"long.name", 0xFFFFFFF7}}) {
    std::set<string> names = {"before"};
    EXPECT_FALSE(platformGetHostnamesByIPAddr(address, names, lastError));
    EXPECT_TRUE(lastError.number() == number && lastError.isMajor() == (number == 0xFFFFFFF7)) << address;
    EXPECT_THAT(names, IsEmpty());
  }
  EXPECT_THAT(machine.asked, ElementsAre("getaddrinfo", "getaddrinfo"));  // the socket layer is not started
}

TEST(HostsConcurrency, EachThreadHasAHostOfItsOwn) {
  ASSERT_EQ(OperatingSystem::current().WSAStartup(0x0202), 0);
  std::atomic<int> wrong{0};
  const auto ask = [&wrong](const string& name) {
    for (int question = 0; question < 200; ++question) {
      const hostent* host = OperatingSystem::current().gethostbyname(name.c_str());
      wrong += !host || host->h_name != name;
    }
  };
  { const std::jthread first(ask, "127.0.0.1"), second(ask, "127.0.0.2"), third(ask, "127.1.2.3"); }
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace kdx
