// Compares the transcoder with the system's own conversions for code page 65001.

#include <gtest/gtest.h>
#include <windows.h>

#include <random>

#include "kdxcommon/base/transcoder.h"

namespace kdx {
namespace {

TEST(WindowsTranscoder, ConvertsAndReplacesAsTheSystemDoes) {
  const wstring units = {'a', 0x7F, 0x80, 0x7FF, 0x800, 0x4E2D, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
  std::mt19937 random(65001);
  for (int round = 0; round < 20000; ++round) {
    wstring text(1 + random() % 40, L' ');
    for (wchar& unit : text) unit = units[random() % units.size()];
    const int size = static_cast<int>(text.size());
    char utf8[128];
    const int length = ::WideCharToMultiByte(65001, 0, text.data(), size, utf8, sizeof utf8, nullptr, nullptr);
    ASSERT_GT(length, 0);
    string converted;
    utf16ToUtf8Replacing(text, converted);
    ASSERT_EQ(converted, string(utf8, static_cast<std::size_t>(length)));
    wchar_t again[128];
    const int count = ::MultiByteToWideChar(65001, MB_ERR_INVALID_CHARS, utf8, length, again, 128);
    wstring decoded;
    ASSERT_TRUE(utf8ToUtf16(converted, decoded));
    ASSERT_EQ(decoded, wstring(again, static_cast<std::size_t>(count)));
  }
}

}  // namespace
}  // namespace kdx
