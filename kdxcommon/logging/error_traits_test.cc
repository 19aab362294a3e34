// What the setters leave is in fuzz/error_traits_fuzz.cc.

#include "kdxcommon/logging/error_traits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kdxcommon/inhouse/jxutils/jx_exception.h"

namespace kdx {

struct ErrorTraitsPeer {
  static bool isDbError(const KDXErrorTraits& errors) { return errors.isDbError(); }
};

namespace {

using ::testing::AllOf;
using ::testing::Property;
using ::testing::Throws;
using Errors = KDXErrorTraits;

TEST(ErrorTraits, RefuseASeverityThatIsNone) {
  Errors errors(5, ZQLE_MINOR);
  EXPECT_THAT([&] { errors.setTextError(7, "refused", "here", -1); },
              Throws<JxException>(
                  AllOf(Property(&JxException::text, "Unsupported severity!"), Property(&JxException::where, "here"))));
  EXPECT_TRUE((errors.severityLevels() == JxErrorTraits::SeverityLevels{0, 1, 2, 3}));
}

TEST(ErrorTraits, TakesTheFamilyFromWhereTheNumberHasIt) {
  // The family is in higher bits if bit 17 is set.
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
  EXPECT_CALL(errors, setMinor(7));  // only by the text error
  EXPECT_CALL(errors, clear());      // only by the invalid argument
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
