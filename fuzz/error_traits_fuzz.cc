// Any sequence of setters and assignments on two errors: each must replace the error's whole content.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "kdxcommon/inhouse/jxutils/jx_exception.h"
#include "kdxcommon/logging/error_traits.h"

namespace kdx {

// The class has no public access to its error's message.
struct ErrorTraitsPeer {
  static string message(const KDXErrorTraits& errors) { return errors.zqError_.message(); }
};

}  // namespace kdx

namespace {

using Errors = kdx::KDXErrorTraits;

constexpr std::uint32_t kOfTheSystem = 5;

struct State {
  std::uint32_t id;
  int severity;
  kdx::string text;
  kdx::string message;
};

const struct {
  void (*set)(Errors&);
  State state;
} kSetters[] = {
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
    {[](Errors& e) { e.setDbError(101, 2, "here"); }, {0x16000005, 2, "", "Database: duplicate row, or too many rows"}},
    {[](Errors& e) { e.setDbError(1004, 2, "here"); },
     {0x16000005, 2, "", "Database: duplicate row, or too many rows"}},
    {[](Errors& e) { e.setDbError(1016, 2, "here"); }, {0x1600000F, 2, "", "Database: constraint violation"}},
    {[](Errors& e) { e.setDbError(1011, 2, "here"); }, {0x1600000C, 2, "", "Database: lock timeout"}},
    {[](Errors& e) { e.setDbError(1012, 2, "here"); }, {0x1600000B, 2, "", "Database: deadlock"}},
    {[](Errors& e) { e.setDbError(1025, 2, "here"); }, {0x1600000B, 2, "", "Database: deadlock"}},
    {[](Errors& e) { e.setDbError(1000, 2, "here"); }, {0x16000014, 2, "", "Database: error: 1000"}},
    {[](Errors& e) { e.setDbError(UINT32_MAX, 2, "here"); }, {0x16000014, 2, "", "Database: error: 4294967295"}},
};

constexpr struct {
  bool (Errors::*holds)() const;
  std::uint32_t id;
} kTests[] = {{&Errors::isKDXErrorRowNotFound, 0x16000001},   {&Errors::isKDXErrorConstraintViolation, 0x1600000F},
              {&Errors::isKDXErrorDuplicateRow, 0x16000005},  {&Errors::isKDXErrorTooManyRows, 0x16000005},
              {&Errors::isKDXErrorDBLockTimeout, 0x1600000C}, {&Errors::isKDXErrorDBDeadLock, 0x1600000B},
              {&Errors::isKDXErrorOutOfDiskSpace, 0x16000025}};

void require(bool holds, const State& expected) {
  if (holds) return;
  std::fprintf(stderr, "expected %x, severity %d, text [%s], message [%s]\n", expected.id, expected.severity,
               expected.text.c_str(), expected.message.c_str());
  std::abort();
}

void requireHolds(const Errors& errors, const State& expected) {
  require(errors.errorID() == expected.id && errors.severity() == expected.severity, expected);
  require(errors.textMessage() == expected.text && errors.isOSError() == (expected.id == kOfTheSystem), expected);
  const bool namedByTheSystem = expected.id == kOfTheSystem;
  require(namedByTheSystem || kdx::ErrorTraitsPeer::message(errors) == expected.message, expected);
  const bool levels[] = {errors.isInformational(), errors.isMinor(), errors.isMajor(), errors.isCritical()};
  for (int level = 0; level < 4; ++level) require(levels[level] == (expected.severity == level), expected);
  for (const auto& test : kTests) require((errors.*test.holds)() == (expected.id == test.id), expected);
}

// An invalid severity is refused, and leaves no error.
State setText(Errors& errors, std::uint32_t id, const kdx::string& text, int severity) {
  const bool refuses = severity < 0 || severity > 3;
  bool refused = false;
  try {
    errors.setTextError(id, text, "here", severity);
  } catch (const kdx::JxException&) {
    refused = true;
  }
  const State state = refuses ? State{0, 0, "", "No error"} : State{id, severity, text, "Invalid argument"};
  require(refused == refuses, state);
  return state;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Errors errors[2];
  State states[2] = {{0, 0, "", "No error"}, {0, 0, "", "No error"}};
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    const std::size_t at = data[i] % 2, setter = data[i + 1] % (std::size(kSetters) + 8);
    const int severity = data[i] / 2 % 6 - 1;
    if (setter < std::size(kSetters)) {
      kSetters[setter].set(errors[at]);
      states[at] = kSetters[setter].state;
    } else if (setter % 4 == 0) {
      errors[at] = errors[1 - at];
      states[at] = states[1 - at];
    } else {
      const std::uint32_t id = setter % 4 == 1 ? kOfTheSystem : 0x56000002;
      states[at] = setText(errors[at], id, kdx::string(1 + i % 40, 't'), severity);
    }
    for (int which : {0, 1}) requireHolds(Errors(errors[which]), states[which]);
  }
  return 0;
}
