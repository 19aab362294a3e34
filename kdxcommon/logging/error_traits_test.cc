#include "kdxcommon/logging/error_traits.h"

#include <gtest/gtest.h>

#include <array>

#include "kdxcommon/inhouse/jxutils/jx_exception.h"

namespace kdx {

// The class shows no message of its error.
struct testing::ErrorTraitsPeer {
  static string message(const KDXErrorTraits& errors) { return errors.zqError_.message(); }
};

namespace {

struct State {
  std::uint32_t id;
  int severity;
  std::string text;
  bool operator==(const State&) const = default;
};

State stateOf(const KDXErrorTraits& errors) {
  EXPECT_EQ(errors.isInformational(), errors.severity() == 0);
  EXPECT_EQ(errors.isMinor(), errors.severity() == 1);
  EXPECT_EQ(errors.isMajor(), errors.severity() == 2);
  EXPECT_EQ(errors.isCritical(), errors.severity() == 3);
  EXPECT_EQ(errors.isOSError(), errors.errorID() != 0 && errors.errorID() < 0x56000000);
  return {errors.errorID(), errors.severity(), errors.textMessage()};
}

TEST(ErrorTraits, EverySetterReplacesTheErrorBefore) {
  const struct {
    void (*set)(KDXErrorTraits&);
    State state;
  } rows[] = {
      {[](KDXErrorTraits& e) { e.setInformational(5); }, {5, 0, ""}},
      {[](KDXErrorTraits& e) { e.setMinor(5); }, {5, 1, ""}},
      {[](KDXErrorTraits& e) { e.setOSMinor(5); }, {5, 1, ""}},
      {[](KDXErrorTraits& e) { e.setMajor(5); }, {5, 2, ""}},
      {[](KDXErrorTraits& e) { e.setOSMajor(5); }, {5, 2, ""}},
      {[](KDXErrorTraits& e) { e.setCritical(5); }, {5, 3, ""}},
      {[](KDXErrorTraits& e) { e.setOSCritical(5); }, {5, 3, ""}},
      {[](KDXErrorTraits& e) { e.setTextError(7, "new", "here", 0); }, {7, 0, "new"}},
      {[](KDXErrorTraits& e) { e.setTextError(7, "new", "here", 1); }, {7, 1, "new"}},
      {[](KDXErrorTraits& e) { e.setTextError(7, "new", "here", 2); }, {7, 2, "new"}},
      {[](KDXErrorTraits& e) { e.setTextError(7, "new", "here", 3); }, {7, 3, "new"}},
      {[](KDXErrorTraits& e) { e.setInvalidArgumentError(3); }, {0x56000002, 2, ""}},
      {[](KDXErrorTraits& e) { e.setInsufficientMemoryError(3); }, {0x56000003, 3, ""}},
      {[](KDXErrorTraits& e) { e.setInsufficientMemoryError(77); }, {0x56000003, 77, ""}},
      {[](KDXErrorTraits& e) { e.setFileNotFoundError("f", 1); }, {0x56000004, 1, ""}},
      {[](KDXErrorTraits& e) { e.setAPICallError("a", "b", 0); }, {0x56000006, 0, ""}},
      {[](KDXErrorTraits& e) { e.clear(); }, {0, 0, ""}},
  };
  for (const auto& row : rows) {
    KDXErrorTraits errors(1, ZQLE_CRITICAL);
    errors.setTextError(2, "old", "here", 2);
    const KDXErrorTraits copy = errors;
    row.set(errors);
    EXPECT_EQ(stateOf(errors), row.state);
    EXPECT_EQ(stateOf(copy), (State{2, 2, "old"}));
  }
  EXPECT_EQ(stateOf(KDXErrorTraits()), (State{0, 0, ""}));
}

TEST(ErrorTraits, ArgumentsReachTheMessageAndItsCopies) {
  KDXErrorTraits errors;
  errors.setAPICallError("first", "second", 1);
  const KDXErrorTraits copy = errors;
  errors.setFileNotFoundError("jobs.xml", 1);
  EXPECT_EQ(testing::ErrorTraitsPeer::message(errors), "File not found: jobs.xml");
  EXPECT_EQ(testing::ErrorTraitsPeer::message(copy), "A call of an interface failed: first, second");
}

TEST(ErrorTraits, AnUnknownSeverityThrowsAndLeavesNoError) {
  for (const int severity : {-1, 4}) {
    KDXErrorTraits errors(1, ZQLE_CRITICAL);
    try {
      errors.setTextError(7, "text", "Agent::run", severity);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const JxException& failure) {
      EXPECT_STREQ(failure.what(), "Unsupported severity!");
      EXPECT_EQ(failure.where(), "Agent::run");
    }
    EXPECT_EQ(stateOf(errors), (State{0, 0, ""}));
  }
}

// Counts what goes through the virtual operations, and redirects the error's number.
class Derived : public KDXErrorTraits {
 public:
  void setMinor(std::uint32_t id) override {
    ++minors;
    KDXErrorTraits::setMinor(id);
  }
  void clear() override {
    ++clears;
    KDXErrorTraits::clear();
  }
  const KDXErrorTraits& lastError() const override { return redirected; }
  std::array<int, 4> levels() const { return {informationalLevel(), minorLevel(), majorLevel(), criticalLevel()}; }

  KDXErrorTraits redirected{99, ZQLE_MINOR};
  int minors = 0;
  int clears = 0;
};

TEST(ErrorTraits, DerivedClassesSeeTheCallsThatAreVirtual) {
  Derived errors;
  errors.setTextError(7, "text", "here", 1);
  errors.setOSMinor(8);
  EXPECT_EQ(errors.minors, 1);
  EXPECT_EQ(errors.clears, 0);
  errors.setInvalidArgumentError(0);
  EXPECT_EQ(errors.clears, 1);
  EXPECT_EQ(errors.errorID(), 99u);
  EXPECT_TRUE(errors.isMajor());
  EXPECT_EQ(&errors.setLastError(), &errors);
  EXPECT_EQ(errors.levels(), (std::array{0, 1, 2, 3}));
}

}  // namespace
}  // namespace kdx
