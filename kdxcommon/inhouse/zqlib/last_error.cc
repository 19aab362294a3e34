#include "kdxcommon/inhouse/zqlib/last_error.h"

#include "kdxcommon/os/operating_system.h"

namespace kdx {
namespace {

struct OwnText {
  std::uint32_t number;
  const char* text;  // %1 and %2 stand for the arguments
};

constexpr OwnText kOwnTexts[] = {
    {0, "No error."},
    {kErrorInvalidArgument, "Invalid argument."},
    {kErrorInsufficientMemory, "Insufficient memory."},
    {kErrorFileNotFound, "The file %1 was not found."},
    {kErrorInterfaceCall, "A call of an interface failed: %1, %2."},
    {0x16000001, "Database: the row was not found."},
    {0x16000005, "Database: the row stands more than once."},
    {0x1600000B, "Database: deadlock."},
    {0x1600000C, "Database: the wait for a lock took too long."},
    {0x1600000F, "Database: a constraint was violated."},
    {0x16000014, "Database: error %1."},
    {0x16000025, "Database: out of disk space."},
};

constexpr std::uint32_t kFamilyMask = 0xFF000000;
constexpr std::uint32_t kOwnFamily = 0x56000000;
constexpr std::uint32_t kDatabaseFamily = 0x16000000;

const char* ownText(std::uint32_t number) {
  for (const OwnText& own : kOwnTexts) {
    if (own.number == number) return own.text;
  }
  return nullptr;
}

// An argument's text is taken as it is, whatever it holds. One that was not given leaves its place empty.
string withArguments(string_view text, const std::vector<string>& arguments) {
  string filled;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      filled += text[i];
      continue;
    }
    const auto argument = static_cast<std::size_t>(text[++i] - '1');
    if (argument < arguments.size()) filled += arguments[argument];
  }
  return filled;
}

string systemText(std::uint32_t number) {
  OperatingSystem& system = OperatingSystem::current();
  char* buffer = nullptr;
  if (system.FormatMessageA(kFormatMessageAllocateIgnoreInsertsFromSystem, nullptr, number, 0, &buffer, 0) == 0 ||
      !buffer) {
    return "Error " + std::to_string(number) + ".";
  }
  string text = buffer;
  system.LocalFree(buffer);
  text.erase(text.find_last_not_of("\r\n") + 1);  // some systems end their texts with a line break
  return text;
}

}  // namespace

bool ZQLastError::isOSError() const {
  const std::uint32_t family = number_ & kFamilyMask;
  return number_ != 0 && family != kOwnFamily && family != kDatabaseFamily;
}

bool ZQLastError::addArgument(const char* argument) {
  arguments_.emplace_back(argument ? argument : "");
  return true;
}

bool ZQLastError::addArgument(std::uint32_t argument) {
  arguments_.push_back(std::to_string(argument));
  return true;
}

const char* ZQLastError::message() const {
  if (const char* text = ownText(number_)) {
    message_ = withArguments(text, arguments_);
  } else if (isOSError()) {
    message_ = systemText(number_);
  } else {
    message_ = "Error " + std::to_string(number_) + ".";
  }
  return message_.c_str();
}

}  // namespace kdx
