#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using testing::LoggedLine;

TEST(EvDebugTest, FormatsTextsOfAnyLengthUpToTheLevelOfTheMoment) {
  const testing::ScopedLog log(9);
  EvDebug debug;
  debug.setJobId(9);
  for (const int length : {0, 1, 1023, 1024, 1025, 100'000}) {  // around what fits on the stack
    const std::string text(static_cast<std::size_t>(length), 'x');
    EmbeddedSite::current().setDebugLevel(length % 5);
    debug.DebugLvl("f", length % 5, "%s", text.c_str());
    debug.DebugLvl("f", length % 5 + 1, "dropped");
    EXPECT_THAT(log->take(), ElementsAre(LoggedLine{length % 5, "f", 9, "", text}));
  }
}

TEST(EvDebugTest, TakesWhatIsMissingOrThrows) {
  struct Throws : LineSink {
    void write(const LogRecord&) override { throw 1; }
  };
  const testing::ScopedLog log(0);
  const EvDebug debug;
  debug.DebugLvl(nullptr, 0, "no function");
  EXPECT_THAT(log->take(), ElementsAre(LoggedLine{0, "", UNDEFINED_JOB_ID, "", "no function"}));
  EmbeddedSite::current().setLineSink(std::make_shared<Throws>());
  EXPECT_NO_THROW(debug.DebugLvl("f", 0, "lost"));
  EmbeddedSite::current().setLineSink(std::make_shared<DescriptorLineSink>(-1));
  debug.DebugLvl("f", 0, "%s", reinterpret_cast<const char*>(1));  // unreadable: whoever formatted it would end here
}

}  // namespace
}  // namespace kdx
