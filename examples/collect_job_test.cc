// Runs the program as a user does and checks its exit status, output and files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <tuple>

#include "kdxcommon/testing/temporary_directory.h"

namespace {

using std::string_literals::operator""s;
using ::testing::HasSubstr;

const bool kPosix = std::filesystem::path::preferred_separator == '/';

class CollectJob : public ::testing::Test {
 protected:
  // Runs a shell script, in which `{}` is the test's directory and `JOB` the program. Returns its exit status.
  int shell(std::string script) {
    const std::string program = std::filesystem::path(KDX_COLLECT_JOB).make_preferred().string();
    script = (kPosix ? "(" + script + ")" : script) + " >{}/out 2>{}/err";
    script = std::regex_replace(script, std::regex("JOB"), program + " --directory {}/dumps");
    return std::system(std::regex_replace(script, std::regex("\\{\\}"), files_.path()).c_str()) / (kPosix ? 256 : 1);
  }

  // Returns the content of the dump of `job`, the end of its name with job and iteration; empty if it doesn't exist.
  std::string dump(const std::string& job) { return files_.read("dumps/KDXUxFSDump_SC_7_JOB_" + job); }

  kdx::testing::TemporaryDirectory files_{"_\u0434\u0430\u043C\u043F\u044B"};  // names in any script
  const std::string good_ = files_.write("good", "<a/>");
};

TEST_F(CollectJob, DumpsTheSampleOrTextsAndOlderJobsLeave) {
  EXPECT_EQ(shell("JOB --limit 2"), 0);
  EXPECT_THAT(dump("1_ITR_0.txt"), ::testing::EndsWith("</collectionJob>\n"));
  EXPECT_EQ(shell("JOB --limit 3 - {}/good <{}/good"), 0);
  EXPECT_EQ(shell("JOB --limit 3 {}/good"), 0);
  EXPECT_EQ(files_.read("err"), "");
  EXPECT_THAT(files_.read("out"), HasSubstr("  4 B  KDXUxFSDump_SC_7_JOB_2_ITR_1.txt"));
  EXPECT_EQ(dump("1_ITR_0.txt") + dump("2_ITR_0.txt") + dump("2_ITR_1.txt") + dump("3_ITR_0.txt"), "<a/><a/><a/>");
}

TEST_F(CollectJob, DumpsAreUtf8AndSaySo) {
  const std::string text = "<t>\xC3\xA9\xF0\x9D\x84\x9E</t>";
  const std::u16string wide = u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><t>\u00E9\U0001D11E</t>";
  const std::tuple<std::string, int, std::string> kCases[] = {
      {std::string(3 << 20, 'x'), 0, std::string(3 << 20, 'x')},
      {"\xEF\xBB\xBF" + text, 0, text},
      {{reinterpret_cast<const char*>(wide.data()), 2 * wide.size()},
       0,
       "<?xml version='1.0' encoding='UTF-8'?>" + text},
      {"\xFE\xFF\0<\x04\x34"s, 0, "<\xD0\xB4"},
      {"<?xml encoding = \"iso-8859-1\" ?><t/>", 0, "<?xml encoding = \"UTF-8\" ?><t/>"},
      {"<?xml encoding='iso-8859-1'?>" + text, 4, ""},
      {"<?xml encoding='UTF-7'?><a>+AOk-</a>", 4, ""},
      {"<?xml encoding='utf-8'?>" + text, 0, "<?xml encoding='utf-8'?>" + text},
      {"<?xml-s encoding='iso-8859-1'?>" + text, 0, "<?xml-s encoding='iso-8859-1'?>" + text},
      {"<a>\xE2\x82", 4, ""},
      {"<\0a\0"s, 4, ""},
      {"\xFF\xFE<\0\x34\xD8<\0"s, 4, ""},
      {"\xFE\xFF\0<\0"s, 4, ""},
      {"\xFE\xFF\0<\0\0"s, 4, ""},
  };
  for (const auto& [input, status, content] : kCases) {
    SCOPED_TRACE(input.substr(0, 80));
    files_.write("input", input);
    EXPECT_EQ(shell("JOB --job 1 {}/input"), status);
    EXPECT_TRUE(dump("1_ITR_0.txt") == content);
  }
}

TEST_F(CollectJob, SaysWhyItFailsAndMarksItsDumps) {
  for (const char* name : {"dumps", "dumps/KDXUxFSDump_SC_7_JOB_5_ITR_1.txt", "dumps/collect_job_7.lock"}) {
    std::filesystem::create_directory(kdx::testing::utf8Path(files_.path(name)));
  }
  const std::tuple<const char*, int, const char*> kCases[] = {
      {"--limit many", 2, "--limit"},
      {"{}/good {}/none", 3, "none': No such file"},
      {"{}/good {}/dumps", 3, "can't read "},
      {"--app-type 12", 6, "no dump can have such a job"},
      {"--job-id 7", 6, "job 7 is running"},
      {"--options 0x200", 7, "switched off"},
      {"--job 5 {}/good {}/good", 5, kPosix ? "ITR_1.txt: Is a directory" : "ITR_1.txt: Access"},
  };
  for (const auto& [arguments, status, reason] : kCases) {
    SCOPED_TRACE(arguments);
    EXPECT_EQ(shell("JOB "s + arguments), status);
    EXPECT_THAT(files_.read("err"), HasSubstr(reason));
  }
  EXPECT_EQ(dump("5_ITR_0.txt.failed"), "<a/>");
  files_.write("dumps/KDXUxFSDump_SC_9_JOB_9223372036854775807_ITR_0.txt");
  EXPECT_EQ(shell("JOB"), 6);
}

TEST_F(CollectJob, ADumpThatIsCutIsMarkedAsFailed) {
  if (!kPosix) GTEST_SKIP() << "no limit for the size of files";
  files_.write("large", std::string(70000, 'x'));
  EXPECT_EQ(shell("trap '' XFSZ; ulimit -f 100; JOB {}/large"), 5);
  EXPECT_THAT(files_.read("err"), HasSubstr("JOB_1_ITR_0.txt: File too large\n"));
  EXPECT_THAT(files_.read("out"), HasSubstr("JOB_1_ITR_0.txt.failed\n"));
  EXPECT_EQ(dump("1_ITR_0.txt.failed").size(), 51200u);
}

// A job that has claimed its id waits for a text from the pipe while another one runs from start to end.
TEST_F(CollectJob, JobsAtTheSameTimeHaveIdsOfTheirOwnAndLoseNoDumpInSilence) {
  if (!kPosix) GTEST_SKIP() << "no pipes with names";
  const std::string other = "; JOB --limit 1 {}/good >&2; echo '<b/>'; } >{}/p; wait $!";
  EXPECT_EQ(shell("mkfifo {}/p; JOB --limit 9 {}/p & { JOB --job 1 >&2" + other), 0);
  EXPECT_THAT(files_.read("err"), HasSubstr("job 1 is running"));
  EXPECT_EQ(dump("1_ITR_0.txt") + dump("2_ITR_0.txt"), "<b/>\n<a/>");
  EXPECT_EQ(shell("JOB --limit 1 {}/good {}/p & { true" + other), 8);
  EXPECT_THAT(files_.read("err"), HasSubstr("another job has pruned dumps"));
  EXPECT_EQ(dump("3_ITR_1.txt.failed"), "<b/>\n");
}

}  // namespace
