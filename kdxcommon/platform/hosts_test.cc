#include "kdxcommon/platform/hosts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <memory>

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
  /// The host has one address of so many bytes, counted from `first` up, in memory that ends with it.
  void setAddress(std::int16_t length, int first = 1) {
    const auto bytes = static_cast<std::size_t>(length);
    octets = std::make_unique<char[]>(bytes);
    for (std::size_t i = 0; i < bytes; ++i) octets[i] = static_cast<char>(first + static_cast<int>(i));
    addresses[0] = octets.get();
    machine.host.h_length = length;
    machine.host.h_addr_list = addresses;
  }
  std::uint32_t numberOf(bool succeeded, ZQLE_SeverityLevel severity = ZQLE_CRITICAL) {
    EXPECT_FALSE(succeeded);
    EXPECT_EQ(lastError.severity(), severity);
    return lastError.number();
  }

  testing::FakeMachine machine;
  ScopedOperatingSystem scope{machine};
  std::unique_ptr<char[]> octets;
  const char* addresses[2] = {};
  ZQLastError lastError;
};

TEST_F(Hosts, TheHostsNameFitsItsBufferOrStays) {
  string name;
  for (const std::size_t length : {0, 256, 257, 300}) {
    machine.hostName.assign(length, 'h');
    EXPECT_TRUE(platformGethostname(name, &lastError));
    EXPECT_EQ(name, string(std::min<std::size_t>(length, 257), 'h'));
  }
  for (const auto& [operation, number] : {std::pair("WSAStartup", 10091), {"gethostname", 10014}}) {
    machine.failing = {{operation, number}};
    EXPECT_EQ(numberOf(platformGethostname(name, &lastError)), static_cast<std::uint32_t>(number));
    EXPECT_FALSE(platformGethostname(name, nullptr));
  }
  EXPECT_EQ(name.size(), 257u);
}

TEST_F(Hosts, TheFirstAddressIsANumberAndAText) {
  const struct {
    std::int16_t length;
    std::uint32_t hostid, number;
    const char* text;
  } rows[] = {{0, 0, 0, "0.0.0.0"},
              {1, 0xF8, 0xF8000000, "248.0.0.0"},
              {2, 0xF8F9, 0xF8F90000, "248.249.0.0"},
              {3, 0xF8F9FA, 0xF8F9FA00, "248.249.250.0"},
              {4, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"},
              {16, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"},
              {40, 0xF8F9FAFB, 0xF8F9FAFB, "248.249.250.251"}};
  machine.host.h_addrtype = -2;
  const auto check = [this](const auto& row) {
    std::uint32_t hostid = 5;
    int error = 7;
    LD_hostent_s host{"before", {}, 5, 5, "before"};
    EXPECT_TRUE(platformHostid(hostid, error));
    EXPECT_TRUE(platformGethostbynameV2("h", host, &lastError));
    EXPECT_EQ(hostid, row.hostid) << row.length;
    EXPECT_EQ(host.addressNumber, row.number);
    EXPECT_EQ(host.addressText, row.text);
    EXPECT_EQ(host.addressType, -2);
    EXPECT_EQ(host.name, "");
    EXPECT_THAT(host.aliases, IsEmpty());
  };
  for (const auto& row : rows) {
    setAddress(row.length, 0xF8);
    check(row);
  }
  addresses[0] = nullptr;  // a host of addresses of 40 bytes that has none
  check(rows[0]);
  machine.host.h_addr_list = nullptr;
  check(rows[0]);
}

TEST_F(Hosts, HostidIsClearedOnceTheSocketLayerStands) {
  machine.hostName = string(2000, 'h');
  std::uint32_t hostid = 5;
  int error = 7;
  for (const auto& [operation, number, expected] :
       {std::tuple("WSAStartup", 10091, 5u), {"gethostname", 10014, 0u}, {"gethostbyname", -2, 0u}}) {
    machine.failing = {{operation, number}};
    EXPECT_FALSE(platformHostid(hostid, error));
    EXPECT_EQ(error, number);
    EXPECT_EQ(hostid, expected) << operation;
  }
  EXPECT_EQ(machine.node, string(1024, 'h'));
}

TEST_F(Hosts, AliasesGrowAndFailuresLeaveTheRecord) {
  const char* aliases[] = {"b", "a", nullptr};
  machine.host.h_name = "first";
  machine.host.h_aliases = aliases;
  setAddress(4);
  LD_hostent_s host;
  EXPECT_TRUE(platformGethostbynameV2("h", host, nullptr));
  machine.host.h_name = "second";
  aliases[1] = nullptr;
  setAddress(4, 5);
  EXPECT_TRUE(platformGethostbynameV2("h", host, nullptr));
  for (const auto& [operation, number] : {std::pair("WSAStartup", 10091), {"gethostbyname", 11001}}) {
    machine.failing = {{operation, number}};
    EXPECT_EQ(numberOf(platformGethostbynameV2("h", host, &lastError)), static_cast<std::uint32_t>(number));
    EXPECT_FALSE(platformGethostbynameV2("h", host, nullptr));
  }
  machine.asked.clear();
  EXPECT_EQ(numberOf(platformGethostbynameV2("", host, &lastError)), 0x56000002);
  EXPECT_FALSE(platformGethostbynameV2("", host, nullptr));
  EXPECT_THAT(machine.asked, IsEmpty());
  EXPECT_EQ(host.name + ' ' + host.addressText, "second 5.6.7.8");
  EXPECT_THAT(host.aliases, ElementsAre("b", "a", "b"));
}

TEST_F(Hosts, TheNetworkLayerGivesTheFirstAddress) {
  string address = "before";
  const auto ask = [&](const char* name) { return platformGetIPbyHostname(name, address, lastError); };
  EXPECT_EQ(numberOf(ask("")), 0x56000002);
  EXPECT_THAT(machine.asked, IsEmpty());
  EXPECT_EQ(numberOf(ask("h")), 0x56000002);  // no address came back
  machine.namesOfAddresses = {"", "2001:db8::1"};
  EXPECT_EQ(numberOf(ask("h")), 2u);
  for (const auto& [operation, number] : {std::pair("WSAStartup", 10091), {"getaddrinfo", -2}}) {
    machine.failing = {{operation, number}};
    EXPECT_EQ(numberOf(ask("h")), static_cast<std::uint32_t>(number));
  }
  machine.failing.clear();
  EXPECT_EQ(address, "before");
  machine.namesOfAddresses[0] = "fe80::1%eth0";
  EXPECT_TRUE(ask("h"));
  EXPECT_EQ(address, "fe80::1%eth0");
  EXPECT_EQ(machine.node, "h any");
  EXPECT_EQ(machine.released, 2);
  CJxString text("before");
  EXPECT_TRUE(CJxIPAddr().GetAddressString(text).IsErrorSet());
  EXPECT_STREQ(text, "before");
}

TEST_F(Hosts, ReverseLookupsGiveEachNameOnceAndTheAddressForWhatFails) {
  const string longName(300, 'n'), cutName(256, 'n');
  const string resolved = "1 IP address [10.1.2.3] resolved into fqdn ";
  string reason;
  EXPECT_TRUE(winGetOSErrorMessage(2, reason));
  machine.namesOfAddresses = {"b.example.com", "", "a.example.com", "b.example.com", longName};
  std::set<string> names = {"10.1.2.3", "before"};
  const testing::ScopedLog log(1);
  EXPECT_TRUE(platformGetHostnamesByIPAddr(*names.begin(), names, lastError));
  EXPECT_THAT(names, ElementsAre("10.1.2.3", "a.example.com", "b.example.com", cutName));
  EXPECT_EQ(machine.node, "10.1.2.3 IPv4");
  EXPECT_EQ(machine.released, 1);
  std::vector<string> lines;
  for (const auto& line : log->take()) {
    EXPECT_EQ(line.function, "platformGetHostnamesByIPAddr()");
    lines.push_back(std::to_string(line.level.value()) + ' ' + line.text);
  }
  EXPECT_THAT(lines,
              ElementsAre(resolved + "[b.example.com]",
                          "0 getnameinfo() failed on address returned for IP address [10.1.2.3]: [" + reason + "]",
                          resolved + "[a.example.com]", resolved + "[b.example.com]", resolved + '[' + cutName + ']'));
}

TEST_F(Hosts, ReverseLookupsThatFailLeaveAnEmptySet) {
  machine.failing = {{"getaddrinfo", -9}};
  const struct {
    const char* address;
    std::uint32_t number;
    ZQLE_SeverityLevel severity;
  } rows[] = {{"", 0x56000002, ZQLE_CRITICAL},
              {"shortname", 0x56000002, ZQLE_CRITICAL},
              {"::1", 0xFFFFFFF7, ZQLE_MAJOR},
              {"long.name", 0xFFFFFFF7, ZQLE_MAJOR}};
  for (const auto& row : rows) {
    std::set<string> names = {"before"};
    EXPECT_EQ(numberOf(platformGetHostnamesByIPAddr(row.address, names, lastError), row.severity), row.number);
    EXPECT_THAT(names, IsEmpty());
  }
  EXPECT_THAT(machine.asked, ElementsAre("getaddrinfo", "getaddrinfo"));  // the socket layer is left alone
}

}  // namespace
}  // namespace kdx
