// A program that takes the whole namespace in beside the system's headers and GoogleTest, as those do who move to the
// library from another one: none of its names may become ambiguous.
#include <kdxcommon/kdxcommon.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <dirent.h>
#include <netdb.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>
#endif

using namespace kdx;
using namespace testing;

TEST(UsingNamespace, LeavesTheSystemsNamesToTheSystem) {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST;
  addrinfo* found = nullptr;
  string hostName;
  ASSERT_TRUE(platformGethostname(hostName, nullptr));  // starts the socket layer
  ASSERT_EQ(getaddrinfo("127.0.0.1", nullptr, &hints, &found), 0);
  EXPECT_EQ(found->ai_family, AF_INET);
  freeaddrinfo(found);
}

TEST(UsingNamespace, LeavesTheLibrarysNamesPlain) {
  const KDXJobIDForCurrentThreadMonitor job(3456);
  EXPECT_THAT(getJobIDForCurrentThread(), Eq(3456));
  EXPECT_THAT(CWideString("<files/>").aString(), StrEq("<files/>"));
#ifdef _WIN32
  SYSTEM_INFO information;
  GetSystemInfo(&information);
  TIME_ZONE_INFORMATION zone;
  EXPECT_NE(GetTimeZoneInformation(&zone), TIME_ZONE_ID_INVALID);
  EXPECT_GE(information.dwNumberOfProcessors, 1U);
#else
  struct tm local = {};
  const time_t now = time(nullptr);
  EXPECT_THAT(localtime_r(&now, &local), NotNull());
#endif
}
