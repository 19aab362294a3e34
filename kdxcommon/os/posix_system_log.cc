// The system's log: a datagram for each message, in the form that the daemons expect from local programs.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <utility>

#include "kdxcommon/os/posix_calls.h"
#include "kdxcommon/os/posix_operating_system.h"

namespace kdx::os {
namespace {

constexpr int kFacilityUser = 1;
constexpr int kSeverities = 8;  // a priority is the facility times this number plus the severity

// Its socket is never connected, so that each message reaches the socket that has the address then.
class PosixSystemLog : public SystemLog {
 public:
  PosixSystemLog(int socket, string source, const sockaddr_un& address)
      : socket_(socket), source_(std::move(source)), address_(address) {}
  ~PosixSystemLog() override { ::close(socket_); }
  PosixSystemLog(const PosixSystemLog&) = delete;
  PosixSystemLog& operator=(const PosixSystemLog&) = delete;

  int report(int severity, const string& text) override {
    const string message = '<' + std::to_string(kFacilityUser * kSeverities + severity) + '>' + source_ + '[' +
                           std::to_string(::getpid()) + "]: " + text;
    const auto send = [&] {
      return ::sendto(socket_, message.data(), message.size(), MSG_NOSIGNAL,
                      reinterpret_cast<const sockaddr*>(&address_), sizeof address_);
    };
    return retriedAfterSignals(send) == -1 ? -1 : 0;
  }

 private:
  int socket_;
  string source_;
  sockaddr_un address_;
};

}  // namespace

std::unique_ptr<SystemLog> PosixOperatingSystem::openSystemLog(const char* source, const char* address) {
  sockaddr_un name{};
  name.sun_family = AF_UNIX;
  const std::size_t length = address ? std::strlen(address) : sizeof name.sun_path;
  if (!source || length >= sizeof name.sun_path) {
    badArgument();
    return nullptr;
  }
  std::memcpy(name.sun_path, address, length);
  const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socket == -1) return nullptr;
  return std::make_unique<PosixSystemLog>(socket, source, name);
}

}  // namespace kdx::os
