#include "kdxcommon/logging/error_traits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "kdxcommon/inhouse/jxutils/jx_exception.h"

namespace kdx {

// The class shows no message of its error.
struct testing::ErrorTraitsPeer {
  static string message(const KDXErrorTraits& errors) { return errors.zqError_.message(); }
  static bool isDbError(const KDXErrorTraits& errors) { return errors.isDbError(); }
};

namespace {

using ::testing::AllOf;
using ::testing::Property;
using ::testing::Throws;
using State = std::tuple<std::uint32_t, int, string, string>;  // number, severity, text and message

State stateOf(const KDXErrorTraits& errors) {
  const bool levels[] = {errors.isInformational(), errors.isMinor(), errors.isMajor(), errors.isCritical()};
  for (int level = 0; level < 4; ++level) EXPECT_EQ(levels[level], errors.severity() == level);
  return {errors.errorID(), errors.severity(), errors.textMessage(), testing::ErrorTraitsPeer::message(errors)};
}

void refuse(const std::function<void()>& set) {
  EXPECT_THAT(set, Throws<JxException>(AllOf(Property(&JxException::text, "Unsupported severity!"),
                                             Property(&JxException::where, "here"))));
}

TEST(ErrorTraits, EverySetterReplacesTheErrorBefore) {
  constexpr std::uint32_t kId = 0x56000002;
  const char kText[] = "Invalid argument";
  const struct {
    void (*set)(KDXErrorTraits&);
    State state;
  } rows[] = {
      {[](KDXErrorTraits& e) { e.setInformational(kId); }, {kId, 0, "", kText}},
      {[](KDXErrorTraits& e) { e.setOSMinor(kId); }, {kId, 1, "", kText}},
      {[](KDXErrorTraits& e) { e.setOSMajor(kId); }, {kId, 2, "", kText}},
      {[](KDXErrorTraits& e) { e.setOSCritical(kId); }, {kId, 3, "", kText}},
      {[](KDXErrorTraits& e) { e.setTextError(kId, "new", "here", 0); }, {kId, 0, "new", kText}},
      {[](KDXErrorTraits& e) { e.setTextError(kId, "new", "here", 1); }, {kId, 1, "new", kText}},
      {[](KDXErrorTraits& e) { e.setTextError(kId, "new", "here", 2); }, {kId, 2, "new", kText}},
      {[](KDXErrorTraits& e) { e.setTextError(kId, "new", "here", 3); }, {kId, 3, "new", kText}},
      {[](KDXErrorTraits& e) { e.setInvalidArgumentError(3); }, {kId, 2, "", kText}},
      {[](KDXErrorTraits& e) { e.setInsufficientMemoryError(77); }, {0x56000003, 77, "", "Insufficient memory"}},
      {[](KDXErrorTraits& e) { e.setFileNotFoundError("f", 1); }, {0x56000004, 1, "", "File not found: f"}},
      {[](KDXErrorTraits& e) { e.setAPICallError("a", "b", 0); },
       {0x56000006, 0, "", "A call of an interface failed: a, b"}},
      {[](KDXErrorTraits& e) { e.clear(); }, {0, 0, "", "No error"}},
      {[](KDXErrorTraits& e) { refuse([&] { e.setTextError(7, "new", "here", -1); }); }, {0, 0, "", "No error"}},
      {[](KDXErrorTraits& e) { refuse([&] { e.setDbError(7, 4, "here"); }); }, {0, 0, "", "No error"}},
  };
  KDXErrorTraits withText;
  withText.setTextError(kId, "old", "here", 3);
  KDXErrorTraits withArgument;
  withArgument.setFileNotFoundError("old", 3);
  for (const auto& row : rows) {
    for (KDXErrorTraits errors : {withText, withArgument}) {
      row.set(errors);
      EXPECT_EQ(stateOf(errors), row.state);
    }
  }
  EXPECT_EQ(stateOf(KDXErrorTraits(withText)), (State{kId, 3, "old", kText}));
  EXPECT_EQ(stateOf(withText = withArgument), (State{0x56000004, 3, "", "File not found: old"}));
  EXPECT_FALSE(withText.isOSError());
  withText.setOSMajor(5);
  EXPECT_TRUE(withText.isOSError());
}

TEST(ErrorTraits, FoldsTheOutcomesOfADatabase) {
  using Errors = KDXErrorTraits;
  bool (Errors::*const tests[])()
      const = {&Errors::isKDXErrorRowNotFound,         &Errors::isKDXErrorDuplicateRow,  &Errors::isKDXErrorTooManyRows,
               &Errors::isKDXErrorConstraintViolation, &Errors::isKDXErrorDBLockTimeout, &Errors::isKDXErrorDBDeadLock,
               &Errors::isKDXErrorOutOfDiskSpace};
  const struct {
    std::uint32_t code;
    State state;
    string_view answers;  // of the tests, in their order
  } rows[] = {
      {0, {0, 0, "", "No error"}, "0000000"},
      {100, {0x16000001, 2, "", "Database: row not found"}, "1000000"},
      {101, {0x16000005, 2, "", "Database: duplicate row, or too many rows"}, "0110000"},
      {1004, {0x16000005, 2, "", "Database: duplicate row, or too many rows"}, "0110000"},
      {1016, {0x1600000F, 2, "", "Database: constraint violation"}, "0001000"},
      {1011, {0x1600000C, 2, "", "Database: lock timeout"}, "0000100"},
      {1012, {0x1600000B, 2, "", "Database: deadlock"}, "0000010"},
      {1025, {0x1600000B, 2, "", "Database: deadlock"}, "0000010"},
      {1000, {0x16000014, 2, "", "Database: error: 1000"}, "0000000"},
      {UINT32_MAX, {0x16000014, 2, "", "Database: error: 4294967295"}, "0000000"},
  };
  KDXErrorTraits errors;
  for (const auto& row : rows) {
    errors.setDbError(row.code, 2, "here");
    EXPECT_EQ(stateOf(errors), row.state);
    for (std::size_t i = 0; i < std::size(tests); ++i)
      EXPECT_EQ((errors.*tests[i])(), row.answers[i] == '1') << row.code;
    EXPECT_TRUE(errors.isKDXError(std::get<0>(row.state)) && !errors.isKDXError(77));
    EXPECT_EQ(testing::ErrorTraitsPeer::isDbError(errors), row.code != 0);
  }
  errors.setMajor(0x16000025);
  EXPECT_TRUE(errors.isKDXErrorOutOfDiskSpace());
  // The family stands higher where bit 17 is set.
  for (const std::uint32_t id : {0x16FDFFFFU, 0x005BFFFFU, 0x56000002U, 0x16020000U, 0x015A0000U}) {
    EXPECT_EQ(testing::ErrorTraitsPeer::isDbError({id, ZQLE_MINOR}), id == 0x16FDFFFF || id == 0x005BFFFF) << id;
  }
}

TEST(ErrorTraits, DerivedClassesSeeTheCallsThatAreVirtual) {
  // Redirects the error's number.
  struct Derived : KDXErrorTraits {
    MOCK_METHOD(void, setMinor, (std::uint32_t id), (override));
    MOCK_METHOD(void, clear, (), (override));
    const KDXErrorTraits& lastError() const override { return redirected; }
    KDXErrorTraits redirected{99, ZQLE_MINOR};
  } errors;
  EXPECT_CALL(errors, setMinor(7));  // by the text error alone
  EXPECT_CALL(errors, clear());      // by the invalid argument alone
  errors.setTextError(7, "text", "here", 1);
  errors.setOSMinor(8);
  errors.setInvalidArgumentError(0);
  EXPECT_EQ(errors.errorID(), 99U);
  EXPECT_TRUE(errors.isMajor());

  struct WithTextError : KDXErrorTraits {
    MOCK_METHOD(void, setTextError, (std::uint32_t, const string&, const string&, int), (override));
  } outcome;
  EXPECT_CALL(outcome, setTextError(kDbErrorRowNotFound, string(), string("Agent::store"), 7));
  outcome.setDbError(100, 7, "Agent::store");
}

}  // namespace
}  // namespace kdx
