#include "kdxcommon/settings/subclient_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kdxcommon/settings/subclient_options_cache.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LoggedLine;
using testing::ScopedLog;

class SubclientOptionsTest : public ::testing::Test {
 protected:
  struct Answers {
    bool given;
    bool enabled = true;
    int mode = 77;
    bool fileAnalytics = true;
    bool operator==(const Answers&) const = default;
  };
  static constexpr Answers kUntouched{false, true, 77, true};

  SubclientOptionsTest() { forgetSubClientOptions(); }
  ~SubclientOptionsTest() override { forgetSubClientOptions(); }

  static Answers ask(std::uint32_t type, std::uint32_t id) {
    Answers answers{};
    answers.given = getKDXSubClientOptions(answers.enabled, answers.mode, answers.fileAnalytics, id, type);
    return answers;
  }

  testing::DumpSite site_;
  ScopedLog log_{2};
};

TEST_F(SubclientOptionsTest, ReadTheOptionWordOfTypesThatTakePart) {
  const struct {
    std::uint32_t type;
    bool collectsData;
    std::uint32_t options;
    Answers answers;
  } rows[] = {
      {599, false, 0x311, {true, false, -1, false}},      {608, false, 0x311, {true, false, -1, false}},
      {599, true, 0x311, {true, true, 0, true}},          {600, false, 0x301, {true, true, 0, false}},
      {607, false, 0x101, {true, true, 1, false}},        {602, false, 0x200, {true, false, -1, false}},
      {602, false, 0x1, {true, true, -1, false}},         {602, false, 0x11, {true, true, -1, true}},
      {602, false, 0xFFFFFCEE, {true, false, -1, false}},
  };
  for (const auto& row : rows) {
    forgetSubClientOptions();
    site_.add(row.type, 7, row.options, row.collectsData);
    EXPECT_EQ(ask(row.type, 7), row.answers) << row.type << " " << row.options;
  }
}

TEST_F(SubclientOptionsTest, AskOnceAndTellOfIt) {
  EXPECT_EQ(ask(602, 7), kUntouched);
  EXPECT_THAT(log_->take(), ElementsAre(LoggedLine{1, "getKDXSubClientOptions", -123456, "",
                                                   "AppType Property  lookup (getApplicationType) Failed"}));
  EmbeddedSite::current().addApplication({602, 7}, {.type = 602});
  EXPECT_EQ(ask(602, 7), kUntouched);
  EXPECT_THAT(log_->takeTexts(2), ElementsAre("AppType Property  lookup (isKDXdataCollectionEnabled) returned [0]",
                                              "App Manager init Failed"));
  site_.add(602, 7, 0x311, true);
  EXPECT_EQ(ask(602, 7), (Answers{true, true, 0, true}));
  EXPECT_THAT(log_->takeTexts(2), ElementsAre("AppType Property  lookup (isKDXdataCollectionEnabled) returned [1]",
                                              "KDX DC _OPT_ENABLED = true", "SC_KDX_DC_OPT_DISCOVERY is enabled",
                                              "SC_KDX_DC_OPT_FILEANALYTICS is enabled"));
  EXPECT_EQ(ask(1, 1), (Answers{true, true, 0, true}));
  EXPECT_THAT(log_->take(), IsEmpty());
}

}  // namespace
}  // namespace kdx
