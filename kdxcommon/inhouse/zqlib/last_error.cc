#include "kdxcommon/inhouse/zqlib/last_error.h"

#include <utility>

#include "kdxcommon/os/system_message.h"

namespace kdx {
namespace {

struct OwnText {
  std::uint32_t number;
  const char* text;
};

constexpr OwnText kOwnTexts[] = {
    {0, "No error"},
    {kErrorInvalidArgument, "Invalid argument"},
    {kErrorInsufficientMemory, "Insufficient memory"},
    {kErrorFileNotFound, "File not found"},
    {kErrorInterfaceCall, "A call of an interface failed"},
    {kDbErrorRowNotFound, "Database: row not found"},
    {kDbErrorDuplicateRow, "Database: duplicate row, or too many rows"},
    {kDbErrorDeadLock, "Database: deadlock"},
    {kDbErrorLockTimeout, "Database: lock timeout"},
    {kDbErrorConstraintViolation, "Database: constraint violation"},
    {kDbErrorOther, "Database: error"},
    {kDbErrorOutOfDiskSpace, "Database: out of disk space"},
};

const char* ownText(std::uint32_t number) {
  for (const OwnText& own : kOwnTexts) {
    if (own.number == number) return own.text;
  }
  return nullptr;
}

// Without its line break; empty where the system has none.
string systemText(std::uint32_t number) {
  string text = os::systemMessage(number).value_or(string());
  text.resize(text.find_last_not_of("\r\n") + 1);
  return text;
}

string textOf(const ZQLastError& error) {
  if (const char* own = ownText(error.number())) return own;
  string text;
  if (error.isOSError()) text = systemText(error.number());
  return text.empty() ? "Error " + std::to_string(error.number()) : text;
}

}  // namespace

bool ZQLastError::isOSError() const {
  constexpr std::uint32_t kDatabaseFamily = 0x16;
  return number_ >> 24 != kDatabaseFamily && ownText(number_) == nullptr;
}

bool ZQLastError::addArgument(const char* argument) {
  arguments_.emplace_back(argument ? argument : "");
  message_.clear();
  return true;
}

bool ZQLastError::addArgument(std::uint32_t argument) {
  return addArgument(std::to_string(argument).c_str());
}

const char* ZQLastError::message() const {
  if (message_.empty()) {
    string text = textOf(*this);
    const char* separator = ": ";
    for (const string& argument : arguments_) {
      text += separator + argument;
      separator = ", ";
    }
    message_ = std::move(text);
  }
  return message_.c_str();
}

}  // namespace kdx
