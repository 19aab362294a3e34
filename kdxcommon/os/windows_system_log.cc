// The event log.

#include <windows.h>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/os/windows_operating_system.h"

namespace kdx::os {
namespace {

// The one message of cmake/windows/log_messages.mc, whose text is its insert.
constexpr DWORD kTextItself = 1;

WORD eventTypeOf(int severity) {
  return severity <= kSeverityError ? EVENTLOG_ERROR_TYPE : EVENTLOG_INFORMATION_TYPE;
}

class WindowsSystemLog : public SystemLog {
 public:
  explicit WindowsSystemLog(HANDLE source) : source_(source) {}
  ~WindowsSystemLog() override { ::DeregisterEventSource(source_); }
  WindowsSystemLog(const WindowsSystemLog&) = delete;
  WindowsSystemLog& operator=(const WindowsSystemLog&) = delete;

  int report(int severity, const string& text) override {
    wstring wide;
    if (!utf8ToUtf16(text, wide)) {
      ::SetLastError(ERROR_NO_UNICODE_TRANSLATION);
      return -1;
    }
    LPCWSTR insert = wide.c_str();
    return ::ReportEventW(source_, eventTypeOf(severity), 0, kTextItself, nullptr, 1, 0, &insert, nullptr) ? 0 : -1;
  }

 private:
  HANDLE source_;
};

}  // namespace

std::unique_ptr<SystemLog> WindowsOperatingSystem::openSystemLog(const char* source, const char* /*address*/) {
  wstring name;
  if (!source || !utf8ToUtf16(source, name)) {
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const HANDLE opened = ::RegisterEventSourceW(nullptr, name.c_str());
  return opened ? std::make_unique<WindowsSystemLog>(opened) : nullptr;
}

}  // namespace kdx::os
