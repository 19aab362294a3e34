#include "kdxcommon/inhouse/jxutils/jx_directory.h"

#include <gtest/gtest.h>

namespace kdx {
namespace {

TEST(JxDirectoryTest, IsReadOnlyWhileItIsOpen) {
  CJxDirectory directory;
  SJxDirEntry entry;
  bool end = false;
  EXPECT_FALSE(directory.Open(".", "*", false).IsErrorSet() || directory.Close().IsErrorSet());
  EXPECT_TRUE(directory.GetEntry(&entry, end).IsErrorSet() && directory.Close().IsErrorSet());
}

}  // namespace
}  // namespace kdx
