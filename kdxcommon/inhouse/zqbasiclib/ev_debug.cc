#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <optional>

#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/os/kept_last_error.h"
#include "kdxcommon/sinks/debug_level.h"
#include "kdxcommon/sinks/line_sink.h"

namespace kdx {
namespace {

string_view orEmpty(const char* text) {
  return text ? string_view(text) : string_view();
}

// Calls `write` with the site's sink, unless that drops its lines. Whoever logs has work to do that must not end for
// that, nor lose the error that it met: what is thrown loses the line, and the thread's last error stays.
template <typename Write>
void writeTo(Write write) {
  const os::KeptLastError kept;
  try {
    const std::shared_ptr<LineSink> sink = EmbeddedSite::current().lineSink();
    if (!sink->drops()) write(*sink);
  } catch (...) {
  }
}

// A printf text: on the stack where it fits, else on the heap, and cut to what fits where the heap has no room either.
class FormattedText {
 public:
  KDX_PRINTF(2, 0) FormattedText(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(stack_, sizeof stack_, format, arguments);
    if (length < 0) {
      text_ = format;
    } else if (static_cast<std::size_t>(length) < sizeof stack_) {
      text_ = {stack_, static_cast<std::size_t>(length)};
    } else {
      formatOnHeap(static_cast<std::size_t>(length), format, again);
    }
    va_end(again);
  }
  FormattedText(const FormattedText&) = delete;
  FormattedText& operator=(const FormattedText&) = delete;

  string_view text() const { return text_; }

 private:
  KDX_PRINTF(3, 0) void formatOnHeap(std::size_t length, const char* format, std::va_list arguments) {
    heap_.reset(new (std::nothrow) char[length + 1]);
    if (!heap_) {
      text_ = {stack_, sizeof stack_ - 1};
      return;
    }
    // Shorter, or not to be had, where an argument's text changed meanwhile.
    const int written = std::vsnprintf(heap_.get(), length + 1, format, arguments);
    text_ = written < 0 ? string_view(format)
                        : string_view(heap_.get(), std::min(length, static_cast<std::size_t>(written)));
  }

  char stack_[1024];
  std::unique_ptr<char[]> heap_;
  string_view text_;
};

}  // namespace

EvDebug::EvDebug(EvDebugFileInstance* /*file*/) {}

EvDebug::~EvDebug() = default;

int EvDebug::getDebugLevel() const {
  return configuredDebugLevel.load(std::memory_order_relaxed);
}

void EvDebug::DebugLvl(const char* function, int level, const char* format, ...) const {
  if (level > getDebugLevel()) return;
  std::va_list arguments;
  va_start(arguments, format);
  handleMsgEventDebug_NEW(level, function, 0, jobId_, nullptr, format, arguments);
  va_end(arguments);
}

void EvDebug::handleMsgEventDebug_NEW(int level, const char* function, int /*reserved*/, std::int64_t jobId,
                                      const char* errorText, const char* format, std::va_list arguments) const {
  writeTo([&](LineSink& sink) {
    const FormattedText formatted(format, arguments);
    sink.write({level, orEmpty(function), jobId, orEmpty(errorText), formatted.text()});
  });
}

void EvDebug::logMessage(char* text) const {
  writeTo([&](LineSink& sink) { sink.write({std::nullopt, {}, jobId_, {}, orEmpty(text)}); });
}

}  // namespace kdx
