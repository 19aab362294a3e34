#include "kdxcommon/names/basic_x500_name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ios>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "kdxcommon/strings/wide_string.h"
#include "kdxcommon/testing/reference_dn.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using testing::findDisagreement;
using ::testing::IsEmpty;
using testing::wide;

CBasicX500Name named(const string& dn) {
  CBasicX500Name name;
  EXPECT_EQ(name.setDN(dn), !dn.empty());
  return name;
}

string traceOf(const CBasicX500Name& name) {
  ostrstream out;
  out << std::hex;
  name.traceTo(out);
  return out.str();
}

TEST(BasicX500Name, AppendsEscapedRDNs) {
  const struct {
    string start;
    std::vector<string> rdns;
    string trace;
  } cases[] = {
      {"", {}, "DN [], depth [0]"},
      {"", {"a;b"}, R"(DN [a\;b], depth [1])"},
      {"x", {"a;b"}, R"(DN [x;a\;b], depth [2])"},
      {"x", {R"(a\b)"}, R"(DN [x;a\\b], depth [2])"},
      {"x", {R"(c\)", "d"}, R"(DN [x;c\\;d], depth [2])"},
      {"x", {""}, "DN [x;], depth [2]"},
      {"", {""}, "DN [], depth [0]"},
      {"Software",
       {"Job Manager", "caf\u00e9 \U0001F600"},
       "DN [Software;Job Manager;caf\u00e9 \U0001F600], depth [3]"},
      {"a", {"b", "c", "d", "e", "f", "g", "h", "i", "\xE9"}, "DN [a;b;c;d;e;f;g;h;i;], depth [10]"},
  };
  for (const auto& expected : cases) {
    CBasicX500Name name = named(expected.start);
    for (const string& rdn : expected.rdns) {
      name.depth();  // a depth that was counted mustn't outlive the change
      EXPECT_TRUE(name.addRDN(rdn));
    }
    EXPECT_EQ(traceOf(name), expected.trace);
  }
}

TEST(BasicX500Name, ChecksForEmptyRDNsOnDemand) {
  const struct {
    const char16_t* dn;
    bool whenEnabled, whenDisabled;
  } cases[] = {
      {u"", false, false},   {u"a", true, true},      {u"a;b", true, true},     {u";a", true, false},
      {u"a;", true, false},  {u"a;;b", true, false},  {u"a\\;", true, false},   {u"a\\;;b", true, false},
      {u"\\;a", true, true}, {u"a;b;;", true, false}, {u"a;b\\;c", true, true},
  };
  for (const auto& expected : cases) {
    CBasicX500Name name = named("held;;value");
    EXPECT_TRUE(name.isEmptyRDNEnabled());
    CBasicX500Name strict(name);
    strict.disableEmptyRDN();
    EXPECT_FALSE(CBasicX500Name(strict).isEmptyRDNEnabled());
    EXPECT_EQ(strict.aDN(), "held;;value");
    EXPECT_EQ(name.setDN(wide(expected.dn)), expected.whenEnabled);
    EXPECT_EQ(strict.setDN(wide(expected.dn)), expected.whenDisabled);
    EXPECT_EQ(name.wDN(), expected.whenEnabled ? wide(expected.dn) : wide(u"held;;value"));
    EXPECT_EQ(strict.wDN(), expected.whenDisabled ? wide(expected.dn) : wide(u"held;;value"));
    const wstring before = strict.wDN();
    EXPECT_FALSE(strict.addRDN(string()));
    EXPECT_FALSE(strict.addRDN("\xE9"));
    EXPECT_EQ(strict.wDN(), before);

    // The check of a new name counts, and its flag comes along.
    EXPECT_EQ(CBasicX500Name::createBasicX500NameFromDN(strict, wide(expected.dn)), expected.whenEnabled);
    EXPECT_EQ(strict.wDN(), expected.whenEnabled ? wide(expected.dn) : before);
    EXPECT_EQ(strict.isEmptyRDNEnabled(), expected.whenEnabled);
  }
}

TEST(BasicX500Name, ComparesUnitByUnit) {
  CBasicX500Name strict = named("a;b");
  strict.disableEmptyRDN();
  EXPECT_TRUE(strict.isEqual(named("a;b")));
  EXPECT_FALSE(strict.isEqual(named("A;b")));
  EXPECT_FALSE(named("a;b").isEqual(named(R"(a\;b)")));
  EXPECT_FALSE(strict.isEqual(CBasicX500Name()));
  EXPECT_TRUE(named("a;b;c").isParent(strict));
  EXPECT_FALSE(named("a;b;c").isParent(named("a")));
  EXPECT_FALSE(named(";a").isParent(CBasicX500Name()));
}

TEST(BasicX500Name, AgreesWithASplitterOfOneCharacterAtATime) {
  std::mt19937 random(20);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  for (int round = 0; round != 3000; ++round) {
    // From all separators to hardly any, over several blocks of the scanners.
    const std::size_t text = 1 + below(60);
    wstring dn(below(300), wchar{'a'});
    for (wchar& unit : dn) {
      const std::size_t drawn = below(text + 3);
      if (drawn < 3) unit = drawn == 0 ? wchar{'\\'} : wchar{';'};
    }
    ASSERT_EQ(findDisagreement(dn), "") << CWideString(dn).aString();
  }
}

TEST(BasicX500Name, HasUpTo65535Levels) {
  wstring dn = wide(u"0");
  for (int level = 1; level != 65534; ++level) dn += wide(u";a");
  CBasicX500Name name;
  ASSERT_TRUE(name.setDN(dn));
  EXPECT_EQ(name.depth(), 65534);
  EXPECT_TRUE(name.addRDN("leaf"));
  EXPECT_EQ(name.depth(), 65535);
  // One more is held and scanned like any other, but no longer counted.
  for (const string leaf : {"leaf", "below"}) {
    CBasicX500Name part;
    bool isRootName = true;
    EXPECT_TRUE(name.getParent(part, isRootName));
    EXPECT_FALSE(isRootName);
    EXPECT_TRUE(name.isParent(part));
    EXPECT_EQ(part.wDN().size(), name.wDN().size() - leaf.size() - 1);
    EXPECT_TRUE(name.getRoot(part));
    EXPECT_EQ(part.aDN(), "0");
    EXPECT_TRUE(name.getSubname(part, 65534));
    EXPECT_EQ(part.aDN(), leaf == "leaf" ? "leaf" : "leaf;below");
    EXPECT_FALSE(name.getSubname(part, 65535));
    EXPECT_TRUE(name.addRDN("below"));
    EXPECT_EQ(name.depth(), 65535);
    EXPECT_FALSE(name.isEmpty());
  }
}

TEST(BasicX500Name, ReadsAsEmptyInUtf8WhereItIsNotUtf16) {
  CBasicX500Name name;
  const wstring unpaired = wide(u"a;") + wchar{0xD800};
  EXPECT_TRUE(name.setDN(unpaired));
  EXPECT_FALSE(name.setDN("a;\xE9"));
  EXPECT_FALSE(CBasicX500Name::createBasicX500NameFromDN(name, "a;\xE9"));
  EXPECT_EQ(name.wDN(), unpaired);
  EXPECT_EQ(name.aDN(), "");
  EXPECT_EQ(traceOf(name), "DN [], depth [2]");
}

class Refusing : public CBasicX500Name {
 public:
  explicit Refusing(const string& dn) : CBasicX500Name(dn) {}
  using CBasicX500Name::setDN;
  bool setDN(const wstring& dn) override {
    refused.push_back(dn);
    return false;
  }
  std::vector<wstring> refused;
};

TEST(BasicX500Name, AsksOverridesOfSetDNWhereThatIsPromised) {
  const CBasicX500Name source = named("a;b");
  Refusing target("kept");
  EXPECT_FALSE(target.setDN("caf\u00e9"));
  EXPECT_FALSE(source.getRoot(target));
  EXPECT_FALSE(named("root").getRoot(target));
  EXPECT_TRUE(source.getSubname(target, 0));
  EXPECT_TRUE(source.getSubname(target, 1));
  EXPECT_TRUE(named("a;").getSubname(target, 1));
  EXPECT_FALSE(CBasicX500Name().getRoot(target) || source.getSubname(target, 2));
  EXPECT_THAT(target.refused,
              ElementsAre(wide(u"caf\u00e9"), wide(u"a"), wide(u"root"), wide(u"a;b"), wide(u"b"), wide(u"")));
  EXPECT_EQ(target.aDN(), "kept");

  target.refused.clear();
  EXPECT_TRUE(target.addRDN("x"));
  EXPECT_EQ(target.aDN(), "kept;x");
  bool isRootName = true;
  EXPECT_TRUE(source.getParent(target, isRootName));
  EXPECT_EQ(target.aDN(), "a");
  EXPECT_TRUE(CBasicX500Name::createBasicX500NameFromDN(target, "c;d"));
  EXPECT_EQ(Refusing(target).aDN(), "c;d");
  static_cast<CBasicX500Name&>(target) = source;
  EXPECT_EQ(target.aDN(), "a;b");
  EXPECT_THAT(target.refused, IsEmpty());
}

TEST(BasicX500Name, MayBeItsOwnTarget) {
  CBasicX500Name name = named("a;b;c;d");
  bool isRootName = true;
  EXPECT_TRUE(name.getParent(name, isRootName) && name.aDN() == "a;b;c");
  EXPECT_TRUE(name.getSubname(name, 1) && name.aDN() == "b;c");
  EXPECT_TRUE(name.getRoot(name) && name.aDN() == "b");
  EXPECT_TRUE(name.getRoot(name) && name.getSubname(name, 0) && name.isEqual(name) && name.aDN() == "b");
}

// Whatever the threads do, the name holds "r;x;x...": a text that has another shape was seen half-way.
void useShared(CBasicX500Name& name, int thread) {
  const auto wellFormed = [](const string& dn) {
    return dn.starts_with("r;x") && dn.find_first_not_of(";x", 1) == string::npos && dn.back() == 'x';
  };
  for (int round = 0; round != 500; ++round) {
    if (round % 4 == thread % 4) name.setDN("r;x" + string(round % 3 ? "" : ";x;x;x;x;x;x;x"));
    EXPECT_TRUE(name.addRDN("x"));
    const CBasicX500Name snapshot = named(name.aDN());
    EXPECT_TRUE(wellFormed(snapshot.aDN()));
    const string trace = traceOf(name);
    EXPECT_EQ(trace, traceOf(named(trace.substr(4, trace.find(']') - 4))));
    EXPECT_GE(name.depth(), 2);
    CBasicX500Name part;
    bool isRootName = true;
    EXPECT_TRUE(name.getRoot(part) && part.aDN() == "r");
    EXPECT_TRUE(name.getSubname(part, 1) && wellFormed("r;" + part.aDN()));
    EXPECT_TRUE(name.getParent(part, isRootName) && !isRootName && wellFormed(part.aDN() + ";x"));
    EXPECT_FALSE(name.isEmpty() || name.isParent(CBasicX500Name()) || name.isEqual(CBasicX500Name()));
  }
}

TEST(BasicX500NameConcurrency, StaysWholeUnderManyThreads) {
  CBasicX500Name name = named("r;x");
  std::vector<std::thread> threads;
  for (int thread = 0; thread != 8; ++thread) threads.emplace_back([&name, thread] { useShared(name, thread); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(testing::splitDN(name.wDN()).size(), name.depth());
}

}  // namespace
}  // namespace kdx
