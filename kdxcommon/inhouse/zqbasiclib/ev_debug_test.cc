#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using testing::LoggedLine;
using testing::ScopedLog;

TEST(EvDebugTest, FormatsTextsOfAnyLength) {
  const ScopedLog log(2);
  EvEvent event;
  event.setJobId(9);
  for (const int length : {0, 1022, 1023, 1024, 1025, 100'000}) {  // around what fits on the stack
    const std::string text(static_cast<std::size_t>(length), 'x');
    event.DebugLvl("f", 2, "%s%d", text.c_str(), 7);
    EXPECT_THAT(log->take(), ElementsAre(LoggedLine{2, "f", 9, "", text + "7"}));
  }
}

TEST(EvDebugTest, FollowsTheConfiguredLevel) {
  const ScopedLog log(2);
  const EvEvent event;
  event.DebugLvl("f", 3, "dropped %d", 1);
  EmbeddedSite::current().setDebugLevel(3);
  EXPECT_EQ(event.getDebugLevel(), 3);
  event.DebugLvl("f", 3, "written %d", 1);
  EmbeddedSite::current().setDebugLevel(-2);
  event.DebugLvl("f", -1, "dropped");
  EXPECT_THAT(log->takeTexts(9), ElementsAre("written 1"));
}

TEST(EvDebugTest, TakesWhatIsMissingOrCannotBeFormatted) {
  const ScopedLog log(0);
  const EvEvent event;
  event.DebugLvl(nullptr, 0, "100%%");
  event.DebugLvl("f", 0, "[%ls] has no form in this locale", L"\u20AC");
  char finished[] = "100%s";
  event.logMessage(finished);
  event.logMessage(nullptr);
  EXPECT_THAT(log->take(), ElementsAre(LoggedLine{0, "", UNDEFINED_JOB_ID, "", "100%"},
                                       LoggedLine{0, "f", UNDEFINED_JOB_ID, "", "[%ls] has no form in this locale"},
                                       LoggedLine{std::nullopt, "", UNDEFINED_JOB_ID, "", "100%s"},
                                       LoggedLine{std::nullopt, "", UNDEFINED_JOB_ID, "", ""}));
}

TEST(EvDebugTest, OutlivesASinkThatThrows) {
  struct Throws : LineSink {
    void write(const LogRecord&) override { throw 1; }
  };
  const ScopedLog log(0);
  EmbeddedSite::current().setLineSink(std::make_shared<Throws>());
  EXPECT_NO_THROW(EvEvent().DebugLvl("f", 0, "lost"));
}

}  // namespace
}  // namespace kdx
