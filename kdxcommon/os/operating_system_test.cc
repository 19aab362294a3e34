#include <gtest/gtest.h>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

bool write(const string& path, int flags, string_view content) {
  OperatingSystem& system = OperatingSystem::current();
  const int file = system._open(path.c_str(), flags, kModeWrite);
  if (file == -1) return false;
  const bool written = system._write(file, content.data(), content.size()) == std::ssize(content);
  EXPECT_EQ(system._close(file), 0);
  return written;
}

TEST(NativeOperatingSystem, OpensAsTheFlagsSay) {
  constexpr int kDumpFlags = kOpenReadWrite | kOpenCreate | kOpenTruncate;
  const struct {
    int flags;
    const char* text;
    bool succeeds;
    const char* content;
  } steps[] = {
      {kOpenWriteOnly, "none", false, ""},
      {kDumpFlags | kOpenExclusive, "first text", true, "first text"},
      {kDumpFlags | kOpenExclusive, "other", false, "first text"},
      {kOpenReadOnly, "other", false, "first text"},
      {kOpenReadWrite, "FIRST", true, "FIRST text"},
      {kOpenWriteOnly | kOpenAppend, "\r\n", true, "FIRST text\r\n"},
      {kDumpFlags, "x\n", true, "x\n"},
      {kDumpFlags | 0x3, "access of no meaning", false, "x\n"},
      {kDumpFlags | 0x8000, "unknown bit", false, "x\n"},
      {kOpenReadOnly | kOpenTruncate, "truncated unwritten", false, "x\n"},
      {kOpenWriteOnly | kOpenExclusive, "exclusive uncreated", false, "x\n"},
  };
  const testing::TemporaryDirectory directory;
  for (const auto& step : steps) {
    EXPECT_EQ(write(directory.path("file"), step.flags, step.text), step.succeeds) << step.text;
    EXPECT_EQ(directory.read("file"), step.content) << step.text;
  }
}

}  // namespace
}  // namespace kdx
