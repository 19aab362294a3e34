#include "kdxcommon/logging/error_traits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "kdxcommon/inhouse/jxutils/jx_exception.h"

namespace kdx {

// The class shows no message of its error.
struct ErrorTraitsPeer {
  static string message(const KDXErrorTraits& errors) { return errors.zqError_.message(); }
  static bool isDbError(const KDXErrorTraits& errors) { return errors.isDbError(); }
};

namespace {

using ::testing::AllOf;
using ::testing::Property;
using ::testing::Throws;
using Errors = KDXErrorTraits;
using State = std::tuple<std::uint32_t, int, string, string>;  // number, severity, text and message

constexpr struct {
  bool (Errors::*holds)() const;
  std::uint32_t id;
} kTests[] = {{&Errors::isKDXErrorRowNotFound, 0x16000001},   {&Errors::isKDXErrorConstraintViolation, 0x1600000F},
              {&Errors::isKDXErrorDuplicateRow, 0x16000005},  {&Errors::isKDXErrorTooManyRows, 0x16000005},
              {&Errors::isKDXErrorDBLockTimeout, 0x1600000C}, {&Errors::isKDXErrorDBDeadLock, 0x1600000B},
              {&Errors::isKDXErrorOutOfDiskSpace, 0x16000025}};

State stateOf(const Errors& errors) {
  const bool levels[] = {errors.isInformational(), errors.isMinor(), errors.isMajor(), errors.isCritical()};
  for (int level = 0; level < 4; ++level) EXPECT_EQ(levels[level], errors.severity() == level);
  for (const auto& test : kTests) EXPECT_EQ((errors.*test.holds)(), errors.errorID() == test.id) << errors.errorID();
  return {errors.errorID(), errors.severity(), errors.textMessage(), ErrorTraitsPeer::message(errors)};
}

TEST(ErrorTraits, EverySetterReplacesTheErrorBefore) {
  const struct {
    void (*set)(Errors&);
    State state;
  } rows[] = {
      {[](Errors& e) { e.setInformational(0); }, {0, 0, "", "No error"}},
      {[](Errors& e) { e.setOSMinor(0x56000002); }, {0x56000002, 1, "", "Invalid argument"}},
      {[](Errors& e) { e.setOSMajor(0x16000025); }, {0x16000025, 2, "", "Database: out of disk space"}},
      {[](Errors& e) { e.setOSCritical(0x56000002); }, {0x56000002, 3, "", "Invalid argument"}},
      {[](Errors& e) { e.setInvalidArgumentError(3); }, {0x56000002, 2, "", "Invalid argument"}},
      {[](Errors& e) { e.setInsufficientMemoryError(77); }, {0x56000003, 77, "", "Insufficient memory"}},
      {[](Errors& e) { e.setFileNotFoundError("f", 1); }, {0x56000004, 1, "", "File not found: f"}},
      {[](Errors& e) { e.setAPICallError("a", "b", 0); }, {0x56000006, 0, "", "A call of an interface failed: a, b"}},
      {[](Errors& e) { e.clear(); }, {0, 0, "", "No error"}},
      {[](Errors& e) { e.setDbError(0, 3, "here"); }, {0, 0, "", "No error"}},
      {[](Errors& e) { e.setDbError(100, 2, "here"); }, {0x16000001, 2, "", "Database: row not found"}},
      {[](Errors& e) { e.setDbError(101, 2, "here"); },
       {0x16000005, 2, "", "Database: duplicate row, or too many rows"}},
      {[](Errors& e) { e.setDbError(1004, 2, "here"); },
       {0x16000005, 2, "", "Database: duplicate row, or too many rows"}},
      {[](Errors& e) { e.setDbError(1016, 2, "here"); }, {0x1600000F, 2, "", "Database: constraint violation"}},
      {[](Errors& e) { e.setDbError(1011, 2, "here"); }, {0x1600000C, 2, "", "Database: lock timeout"}},
      {[](Errors& e) { e.setDbError(1012, 2, "here"); }, {0x1600000B, 2, "", "Database: deadlock"}},
      {[](Errors& e) { e.setDbError(1025, 2, "here"); }, {0x1600000B, 2, "", "Database: deadlock"}},
      {[](Errors& e) { e.setDbError(1000, 2, "here"); }, {0x16000014, 2, "", "Database: error: 1000"}},
      {[](Errors& e) { e.setDbError(UINT32_MAX, 2, "here"); }, {0x16000014, 2, "", "Database: error: 4294967295"}},
  };
  Errors withText;
  withText.setTextError(5, "old", "here", 3);
  Errors withArgument;
  withArgument.setFileNotFoundError("old", 3);
  for (Errors errors : {withText, withArgument}) {
    for (const auto& row : rows) {
      Errors replaced(errors);
      row.set(replaced);
      EXPECT_EQ(stateOf(replaced), row.state);
    }
    for (int severity = 0; severity < 4; ++severity) {
      errors.setTextError(0x56000002, "new", "here", severity);
      EXPECT_EQ(stateOf(errors), (State{0x56000002, severity, "new", "Invalid argument"}));
    }
    EXPECT_THAT([&] { errors.setTextError(7, "refused", "here", -1); },
                Throws<JxException>(AllOf(Property(&JxException::text, "Unsupported severity!"),
                                          Property(&JxException::where, "here"))));
    EXPECT_EQ(stateOf(errors), stateOf(Errors()));
  }
  EXPECT_TRUE(withText.isOSError() && !withArgument.isOSError());
  EXPECT_TRUE((withText.severityLevels() == JxErrorTraits::SeverityLevels{0, 1, 2, 3}));
  EXPECT_EQ(stateOf(Errors(withText)), stateOf(withText));
  EXPECT_EQ(stateOf(withText = withArgument), stateOf(withArgument));
}

TEST(ErrorTraits, TakesTheFamilyFromWhereTheNumberHasIt) {
  // It stands higher where bit 17 is set.
  for (const std::uint32_t id : {0x16FDFFFFU, 0x005BFFFFU, 0U, 0x56000002U, 0x16020000U, 0x015A0000U, 0x045BFFFFU}) {
    EXPECT_EQ(ErrorTraitsPeer::isDbError({id, ZQLE_MINOR}), id == 0x16FDFFFF || id == 0x005BFFFF) << id;
  }
}

TEST(ErrorTraits, DerivedClassesSeeTheCallsThatAreVirtual) {
  // Redirects the error's number.
  struct Derived : Errors {
    MOCK_METHOD(void, setMinor, (std::uint32_t id), (override));
    MOCK_METHOD(void, clear, (), (override));
    MOCK_METHOD(void, setTextError, (std::uint32_t, const string&, const string&, int), (override));
    const Errors& lastError() const override { return redirected; }
    Errors redirected{99, ZQLE_MINOR};
  } errors;
  EXPECT_CALL(errors, setMinor(7));  // by the text error alone
  EXPECT_CALL(errors, clear());      // by the invalid argument alone
  EXPECT_CALL(errors, setTextError(kDbErrorRowNotFound, string(), string("Agent::store"), 7));
  errors.Errors::setTextError(7, "text", "here", 1);
  errors.setOSMinor(8);
  errors.setDbError(100, 7, "Agent::store");
  errors.setInvalidArgumentError(0);
  EXPECT_EQ(errors.errorID(), 99U);
  EXPECT_TRUE(errors.isMajor());
}

}  // namespace
}  // namespace kdx
