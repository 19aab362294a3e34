// Runs the program as a user does and looks at what it leaves: status, table, lines and files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <tuple>

#include "examples/failure.h"
#include "examples/input_text.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace {

using collect_job::ExitStatus;
using collect_job::Failure;
using std::string_literals::operator""s;
using ::testing::_;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

std::string contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class CollectJob : public ::testing::Test {
 protected:
  // Arguments are quoted by those that need it; `{}` in them stands for the test's directory.
  Outcome run(std::string arguments) {
    for (std::size_t at; (at = arguments.find("{}")) != arguments.npos;) arguments.replace(at, 2, files_.path());
    if (arguments.find("--directory") == arguments.npos) arguments += " --directory " + files_.path("dumps");
    const std::string program = std::filesystem::path(KDX_COLLECT_JOB).make_preferred().string();
    const int status =
        std::system((program + " " + arguments + " >" + files_.path("out") + " 2>" + files_.path("err")).c_str());
    // POSIX keeps the exit status in the second byte.
    Outcome outcome = {status > 0xFF ? status >> 8 : status, files_.read("out"), files_.read("err")};
    for (std::string* text : {&outcome.out, &outcome.err}) std::erase(*text, '\r');  // of the lines on Windows
    return outcome;
  }

  // What stands in the dump directory: name and content.
  std::map<std::string, std::string> dumps() const {
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(kdx::testing::utf8Path(files_.path("dumps")))) {
      const std::string name = entry.path().filename().string();
      found[name] = entry.is_regular_file() ? files_.read("dumps/" + name) : "";
    }
    return found;
  }

  kdx::testing::TemporaryDirectory files_{"_\u0434\u0430\u043C\u043F\u044B"};  // names in any script
};

TEST_F(CollectJob, DumpsTheSampleAndShowsItInATable) {
  const std::string sample = contentOf(KDX_SAMPLE_XML);
  ASSERT_GT(sample.size(), 1000u);
  const Outcome result = run("");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(dumps(), ElementsAre(Pair("KDXUxFSDump_SC_7_JOB_1_ITR_0.txt", sample)));
  EXPECT_THAT(result.out, AllOf(HasSubstr("\n  name                              job  iteration  bytes  state\n"
                                          "  KDXUxFSDump_SC_7_JOB_1_ITR_0.txt    1          0   " +
                                          std::to_string(sample.size()) + "  dumped\n"),
                                HasSubstr("\nPruned in this run: 0\n")));
}

TEST_F(CollectJob, MegabytesLandByteForByte) {
  constexpr char kInput[] = "/usr/share/mime/packages/freedesktop.org.xml";
  const std::string content = contentOf(kInput);
  if (content.empty()) GTEST_SKIP() << "shared-mime-info is not installed";
  EXPECT_EQ(run(std::filesystem::path(kInput).make_preferred().string()).status, 0);
  EXPECT_TRUE(dumps()["KDXUxFSDump_SC_7_JOB_1_ITR_0.txt"] == content);
}

TEST_F(CollectJob, TextsLandAsUtf8WithoutTheirMark) {
  const std::string text = "<t>\xC3\xA9\xF0\x9D\x84\x9E</t>";
  files_.write("plain", text);
  files_.write("marked", "\xEF\xBB\xBF" + text);
  files_.write("little", "\xFF\xFE<\0t\0>\0\xE9\0\x34\xD8\x1E\xDD<\0/\0t\0>\0"s);
  files_.write("big", "\xFE\xFF\0<\0t\0>\0\xE9\xD8\x34\xDD\x1E\0<\0/\0t\0>"s);
  files_.write("empty", "\xFF\xFE");
  EXPECT_EQ(run("--limit 9 {}/plain {}/marked {}/little {}/big {}/empty").status, 0);
  EXPECT_THAT(dumps(), ElementsAre(Pair(_, text), Pair(_, text), Pair(_, text), Pair(_, text), Pair(_, "")));
}

TEST_F(CollectJob, OlderJobsLeaveWholeAndTheRunningOneStays) {
  files_.write("a", "<a/>");
  files_.write("b", "<bb/>");
  const char kJob[] = "--limit 3 {}/a {}/b";
  EXPECT_THAT(run(kJob).out, HasSubstr("Pruned in this run: 0\n"));
  EXPECT_THAT(run(kJob).out, HasSubstr("Pruned in this run: 2\n"
                                       "  name                              job  iteration  bytes  state\n"
                                       "  KDXUxFSDump_SC_7_JOB_1_ITR_0.txt    1          0      4  dumped\n"
                                       "  KDXUxFSDump_SC_7_JOB_1_ITR_1.txt    1          1      5  dumped\n"));
  EXPECT_EQ(run("--limit 1 {}/b {}/a {}/b").status, 0);
  EXPECT_THAT(dumps(), ElementsAre(Pair("KDXUxFSDump_SC_7_JOB_3_ITR_0.txt", "<bb/>"),
                                   Pair("KDXUxFSDump_SC_7_JOB_3_ITR_1.txt", "<a/>"),
                                   Pair("KDXUxFSDump_SC_7_JOB_3_ITR_2.txt", "<bb/>")));

  EXPECT_EQ(run("--limit 9 --job 4 --fail {}/a").status, 0);
  const Outcome failed = run("--limit 1 --fail {}/a {}/b");
  EXPECT_THAT(failed.out, AllOf(HasSubstr("  KDXUxFSDump_SC_7_JOB_5_ITR_1.txt.failed    5          1      5  failed\n"),
                                HasSubstr("Pruned in this run: 4\n")));
  EXPECT_EQ(run("--limit 0").status, 0);
  EXPECT_THAT(dumps(), ElementsAre(Pair("KDXUxFSDump_SC_7_JOB_5_ITR_0.txt.failed", "<a/>"),
                                   Pair("KDXUxFSDump_SC_7_JOB_5_ITR_1.txt.failed", "<bb/>")));
}

TEST_F(CollectJob, WhatItRefusesLosesNothing) {
  files_.write("good", "<a/>");
  files_.write("cut", "\xEF\xBB\xBF<a>\xE2\x82");
  files_.write("unmarked", "<\0a\0"s);
  files_.write("surrogate", "\xFF\xFE<\0\x34\xD8<\0"s);
  files_.write("half", "\xFE\xFF\0<\0"s);
  files_.write("config", "limit=1\nno-such-option=1\n");
  ASSERT_EQ(run("--job 1 --fail").status, 0);
  ASSERT_EQ(run("--job 2").status, 0);
  std::filesystem::create_directory(kdx::testing::utf8Path(files_.path("dumps/KDXUxFSDump_SC_7_JOB_8_ITR_1.txt")));
  files_.write("dumps/collect_job.probe", "of somebody else, where the job tries whether it can write");
  const auto standing = dumps();
  ASSERT_EQ(standing.size(), 4u);

  const std::tuple<const char*, ExitStatus, const char*> kCases[] = {
      {"--limit many", collect_job::kBadCommandLine, "--limit: 'many' is not a number from 0 to 4294967295"},
      {"--job 010", collect_job::kBadCommandLine, "'010' is not a number"},
      {"--config {}/config", collect_job::kBadCommandLine, "no-such-option"},
      {"--config {}/none", collect_job::kBadCommandLine, "can't read the configuration file '"},
      {"--job-type discovery {}/good {}/good", collect_job::kBadCommandLine, "a discovery job leaves one dump"},
      {"{}/good {}/none", collect_job::kUnreadableInput, "none': No such file"},
      {"{}/good {}/dumps", collect_job::kUnreadableInput, "can't read "},
      {"{}/good {}/cut", collect_job::kInvalidText, "cut: invalid UTF-8 at byte 6"},
      {"{}/good {}/unmarked", collect_job::kInvalidText, "(UTF-16 without a byte order mark?) at byte 1"},
      {"{}/good {}/surrogate", collect_job::kInvalidText, "surrogate: invalid UTF-16 at byte 4"},
      {"{}/good {}/half", collect_job::kInvalidText, "half: half a UTF-16 unit at byte 4"},
      {"{}/good {}/dumps/KDXUxFSDump_SC_7_JOB_2_ITR_0.txt", collect_job::kBadCommandLine, "copy it first"},
      {"--directory {}/no/dumps", collect_job::kCannotWrite, "can't make the directory "},
      {"--log-file {}/no/log", collect_job::kCannotWrite, "can't write the log file "},
      {"--app-type 12", collect_job::kRefusedJob, "application type 12 leaves no dumps"},
      {"--options 0x200", collect_job::kCollectionOff, "data collection is switched off for subclient 7"},
  };
  for (const auto& [arguments, status, line] : kCases) {
    SCOPED_TRACE(arguments);
    const Outcome result = run(arguments);
    EXPECT_EQ(result.status, status);
    EXPECT_THAT(result.err, AllOf(::testing::StartsWith("collect_job: "), HasSubstr(line)));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(dumps(), standing);
  }
  // The name of a dump is taken by a directory.
  EXPECT_EQ(run("--job 8 --fail {}/good {}/good").status, collect_job::kCannotWrite);
  EXPECT_EQ(dumps(), standing);
}

TEST_F(CollectJob, ADumpThatIsNotWholeIsTold) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  files_.write("good", "<a/>");
  ASSERT_EQ(run("--job 4 {}/good").status, 0);
  std::filesystem::create_symlink("/dev/full", files_.path("dumps/KDXUxFSDump_SC_7_JOB_5_ITR_1.txt"));
  const Outcome result = run("--limit 9 --job 5 --debug-level -2 {}/good {}/good {}/good");
  EXPECT_EQ(result.status, collect_job::kDumpFailed);
  EXPECT_THAT(result.err, HasSubstr("KDXUxFSDump_SC_7_JOB_5_ITR_1.txt failed: 4 bytes expected"));
  EXPECT_THAT(result.out, HasSubstr("Dumps written: 1, bytes: 4\n"));
  EXPECT_THAT(dumps(), ElementsAre(Pair("KDXUxFSDump_SC_7_JOB_4_ITR_0.txt", "<a/>"),
                                   Pair("KDXUxFSDump_SC_7_JOB_5_ITR_0.txt", "<a/>"),
                                   Pair("KDXUxFSDump_SC_7_JOB_5_ITR_1.txt", "")));
}

TEST_F(CollectJob, AConfigurationFileGivesWhatTheCommandLineDoesNot) {
  files_.write("config",
               "app-type=602\nsubclient=9\njob=5000000000\nfirst-iteration=-1\nlimit=4\nprogress=\"in-place\"\n"
               "debug-level=2\nlog-file=\"" +
                   files_.path("log") + "\"\n");
  files_.write("a", "<a/>");
  const Outcome iterations = run("--config {}/config {}/a {}/a");
  EXPECT_EQ(iterations.status, 0);
  EXPECT_THAT(iterations.err, HasSubstr("2 of 2 files dumped\n"));
  EXPECT_EQ(run("--config {}/config --job-type discovery --job 6 {}/a").status, 0);
  EXPECT_THAT(dumps(), ElementsAre(Pair("KDXSQLDump_SC_9_DISCOVERY_JOB_6.txt", _),
                                   Pair("KDXSQLDump_SC_9_JOB_5000000000_ITR_-1.txt", _),
                                   Pair("KDXSQLDump_SC_9_JOB_5000000000_ITR_0.txt", _)));
  EXPECT_THAT(files_.read("log"), HasSubstr(" 5000000000 2 CDumpFile::dumpXMLBlob: Bytes written :: [4]\n"));
}

TEST_F(CollectJob, ATextThatChangesBetweenCheckAndDumpIsNotTaken) {
  collect_job::InputTexts inputs({files_.write("a", "<a/>")});
  inputs.check(collect_job::ProgressStyle::kOff);
  EXPECT_EQ(inputs.read(0).utf8Bytes, 4u);
  files_.write("a", "<b/>");
  EXPECT_THAT([&] { inputs.read(0); },
              ::testing::Throws<Failure>(::testing::Property(&Failure::status, collect_job::kInputChanged)));
}

}  // namespace
