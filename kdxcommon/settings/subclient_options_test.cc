#include "kdxcommon/settings/subclient_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <tuple>
#include <utility>

#include "kdxcommon/settings/subclient_options_cache.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using testing::LoggedLine;

// The result of the call; whether data is collected, in which mode, and whether files are analysed.
using Answers = std::tuple<bool, bool, int, bool>;
constexpr Answers kUntouched{false, true, 77, true};

Answers ask(std::uint32_t type, std::uint32_t id) {
  auto [given, enabled, mode, fileAnalytics] = kUntouched;
  given = getKDXSubClientOptions(enabled, mode, fileAnalytics, id, type);
  return {given, enabled, mode, fileAnalytics};
}

class SubclientOptionsTest : public ::testing::Test {
 protected:
  SubclientOptionsTest() { forgetSubClientOptions(); }
  ~SubclientOptionsTest() override { forgetSubClientOptions(); }

  testing::DumpSite site_;
  testing::ScopedLog log_{2};
};

// What each bit of the options says is in fuzz/settings_fuzz.cc.
TEST_F(SubclientOptionsTest, AskOnceAndTellOfIt) {
  EXPECT_EQ(ask(602, 7), kUntouched);
  EXPECT_THAT(log_->take(), ElementsAre(LoggedLine{1, "getKDXSubClientOptions", -123456, "",
                                                   "AppType Property  lookup (getApplicationType) Failed"}));
  EmbeddedSite::current().addApplication({602, 7}, {.type = 602});
  EXPECT_EQ(ask(602, 7), kUntouched);
  EXPECT_THAT(log_->takeTexts(1), ElementsAre("AppType Property  lookup (isKDXdataCollectionEnabled) returned [0]",
                                              "App Manager init Failed"));
  site_.add(602, 7, 0x311, true);
  EXPECT_EQ(ask(602, 7), Answers(true, true, 0, true));
  EXPECT_THAT(log_->takeTexts(2), ElementsAre("AppType Property  lookup (isKDXdataCollectionEnabled) returned [1]",
                                              "KDX DC _OPT_ENABLED = true", "SC_KDX_DC_OPT_DISCOVERY is enabled",
                                              "SC_KDX_DC_OPT_FILEANALYTICS is enabled"));
  EXPECT_EQ(ask(1, 1), Answers(true, true, 0, true));
  forgetSubClientOptions();
  site_.add(602, 7, 0x101, true);
  ask(602, 7);
  EXPECT_EQ(log_->takeTexts(2).back(), "SC_KDX_DC_OPT_ANALYSIS is enabled");
}

// While one thread reads the options (its first log line shows it), another reads those of a second subclient and
// finishes first.
TEST_F(SubclientOptionsTest, OfTheFasterThreadServeBoth) {
  struct AsksMeanwhile : LineSink {
    void write(const LogRecord&) override {
      if (!std::exchange(asked, true)) std::thread([this] { faster = ask(600, 8); }).join();
    }
    bool asked = false;
    Answers faster = kUntouched;
  };
  site_.add(602, 7, 0x311);
  site_.add(600, 8, 0x101);
  const auto sink = std::make_shared<AsksMeanwhile>();
  EmbeddedSite::current().setLineSink(sink);
  EXPECT_EQ(ask(602, 7), Answers(true, true, 1, false));
  EXPECT_EQ(sink->faster, Answers(true, true, 1, false));
  EXPECT_EQ(ask(602, 7), Answers(true, true, 1, false));
}

}  // namespace
}  // namespace kdx
