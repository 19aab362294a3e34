#include "kdxcommon/names/basic_x500_name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
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

TEST(BasicX500Name, TracesItsTextAndDepth) {
  CBasicX500Name name;
  EXPECT_EQ(traceOf(name), "DN [], depth [0]");
  for (const char* rdn : {"", "caf\u00e9", "b;", "c", "d", "e", "f", "g", "h", "i", "\xE9"})
    EXPECT_TRUE(name.addRDN(rdn));
  EXPECT_EQ(traceOf(name), "DN [caf\u00e9;b\\;;c;d;e;f;g;h;i;], depth [10]");
  EXPECT_FALSE(named("a;b").isEqual(named("A;b")));
}

TEST(BasicX500Name, KeepsItsFlagUntilItIsMadeNew) {
  CBasicX500Name strict = named("held;;value");
  strict.disableEmptyRDN();
  EXPECT_FALSE(CBasicX500Name(strict).setDN("a;;b") || strict.setDN("\xE9") || strict.addRDN("\xE9"));
  EXPECT_FALSE(CBasicX500Name::createBasicX500NameFromDN(strict, "") || strict.isEmptyRDNEnabled());
  EXPECT_EQ(traceOf(strict), "DN [held;;value], depth [3]");
  EXPECT_TRUE(CBasicX500Name::createBasicX500NameFromDN(strict, ";a") && strict.isEmptyRDNEnabled());
  EXPECT_EQ(traceOf(strict), "DN [;a], depth [2]");
  strict.disableEmptyRDN();
  strict.enableEmptyRDN();
  EXPECT_TRUE(strict.setDN(";"));
}

TEST(BasicX500Name, HasUpTo65535Levels) {
  // Each with an escape, which comes to stand everywhere in the scanners' blocks and chunks.
  string upper;
  for (int level = 1; level != 65534; ++level) upper += R"(\;;)";
  // A level more than can be told is held and scanned like any other.
  for (const auto& [end, depth] : {std::pair("leaf", 65534), {"a;leaf", 65535}, {"a;leaf;below", 65535}}) {
    const CBasicX500Name name = named(upper + end);
    CBasicX500Name part;
    EXPECT_EQ(name.depth(), depth);
    EXPECT_TRUE(name.getSubname(part, 65533) && part.aDN() == end);
    EXPECT_FALSE(name.getSubname(part, name.depth()));
  }
}

class Refusing : public CBasicX500Name {
 public:
  explicit Refusing(const string& dn) : CBasicX500Name(dn) {}
  using CBasicX500Name::setDN;
  bool setDN(const wstring& dn) override { return refused.push_back(dn), false; }
  std::vector<wstring> refused;
};

TEST(BasicX500Name, AsksOverridesOfSetDNWhereThatIsPromised) {
  const CBasicX500Name source = named("a;b");
  const CBasicX500Name root = named("root");
  Refusing target("kept");
  bool isRootName = true;
  EXPECT_FALSE(target.setDN("caf\u00e9") || source.getRoot(target) || root.getRoot(target));
  EXPECT_TRUE(source.getSubname(target, 0) && source.getSubname(target, 1) && named("a;").getSubname(target, 1));
  EXPECT_FALSE(source.getSubname(target, 2) || CBasicX500Name().getParent(target, isRootName) || isRootName);
  EXPECT_TRUE(root.getParent(target, isRootName) && isRootName && target.aDN() == "kept");
  EXPECT_THAT(std::exchange(target.refused, {}),
              ElementsAre(wide(u"caf\u00e9"), wide(u"a"), wide(u"root"), wide(u"a;b"), wide(u"b"), wide(u"")));
  EXPECT_TRUE(target.addRDN("x") && target.aDN() == "kept;x");
  EXPECT_TRUE(source.getParent(target, isRootName) && target.aDN() == "a");
  EXPECT_TRUE(CBasicX500Name::createBasicX500NameFromDN(target, "c;d") && Refusing(target).aDN() == "c;d");
  EXPECT_EQ(target.depth(), 2);
  static_cast<CBasicX500Name&>(target) = root;
  EXPECT_EQ(traceOf(target), "DN [root], depth [1]");
  EXPECT_TRUE(target.refused.empty());
}

TEST(BasicX500NameConcurrency, StaysWholeUnderManyThreads) {
  CBasicX500Name name = named("r;x");
  // Whatever the threads do, the name holds "r;x;x...": a text of another shape, or another depth, was seen half-way.
  const auto whole = [](const string& dn) { return dn.starts_with("r;x") && dn.find(";;") > dn.size(); };
  const auto use = [&](int thread) {
    for (int round = 0; round != 500; ++round) {
      if (round % 4 == thread % 4) name.setDN("r;x" + string(round % 3 ? "" : ";x;x;x;x;x;x;x"));
      name.addRDN("x");
      CBasicX500Name part;
      bool isRootName = true;
      EXPECT_TRUE(name.depth() >= 2 && name.getRoot(part) && part.aDN() == "r" && !name.isEqual(part));
      EXPECT_TRUE(name.getSubname(part, 1) && whole("r;" + part.aDN()));
      EXPECT_TRUE(name.getParent(part, isRootName) && !isRootName && whole(part.aDN() + ";x"));
      const string trace = traceOf(name);
      EXPECT_EQ(trace, traceOf(named(trace.substr(4, trace.find(']') - 4))));
    }
  };
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread != 8; ++thread) threads.emplace_back(use, thread);
  }
  EXPECT_EQ(named(name.aDN()).depth(), name.depth());
}

}  // namespace
}  // namespace kdx
