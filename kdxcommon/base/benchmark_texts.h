// Internal to the benchmarks: UTF-8 texts of up to `size` bytes that they convert, cut at a whole character.

#ifndef KDXCOMMON_BASE_BENCHMARK_TEXTS_H_
#define KDXCOMMON_BASE_BENCHMARK_TEXTS_H_

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>

#include "kdxcommon/base/string_types.h"

namespace kdx::benchmarks {

inline string repeated(string_view text, std::size_t size) {
  string result;
  while (result.size() <= size) result += text;
  while ((result[size] & 0xC0) == 0x80) --size;
  return result.substr(0, size);
}

inline string ascii(std::size_t size) {
  return repeated("<dump job=\"4711\" iteration=\"12\"><file size=\"18230\">reports/2024/summary.txt</file></dump>\n",
                  size);
}

/// A catalogue of texts in many languages where the machine has one, else a text of the same mixture.
inline string mixedXml(std::size_t size) {
  std::ifstream file("/usr/share/mime/packages/freedesktop.org.xml", std::ios::binary);
  const string text{std::istreambuf_iterator<char>(file), {}};
  const std::size_t begin = text.find("xml:lang=\"ru\"");
  if (begin != string::npos) return repeated(string_view(text).substr(begin), size);
  return repeated(
      "xml:lang=\"ru\">\u0437\u0430\u0448\u0438\u0444\u0440\u043e\u0432\u0430\u043d\u043d\u043e\u0435 "
      "\u0441\u043e\u043e\u0431\u0449\u0435\u043d\u0438\u0435</comment>\n    <comment xml:lang=\"de\">"
      "Verschl\u00fcsselte Nachricht</comment>\n    <comment xml:lang=\"es\">mensaje cifrado</comment>\n    "
      "<comment xml:lang=\"ja\">\u6697\u53f7\u5316\u30e1\u30c3\u30bb\u30fc\u30b8</comment>\n    "
      "<glob pattern=\"*.pgp\"/>\n    <comment ",
      size);
}

inline string chinese(std::size_t size) {
  return repeated(
      "\u5317\u51a5\u6709\u9c7c\uff0c\u5176\u540d\u4e3a\u9cb2\u3002\u9cb2\u4e4b\u5927\uff0c\u4e0d\u77e5\u5176\u51e0"
      "\u5343\u91cc\u4e5f\u3002\u5316\u800c\u4e3a\u9e1f\uff0c\u5176\u540d\u4e3a\u9e4f\u3002\n",
      size);
}

inline string emoji(std::size_t size) {
  return repeated("\U0001F600\U0001F680 \U0001F4BE", size);
}

}  // namespace kdx::benchmarks

#endif  // KDXCOMMON_BASE_BENCHMARK_TEXTS_H_
