#include "servers/delayed_way.h"

#include "adapters/odbc/connection_string.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace qx::bench {
namespace {

sockaddr_in loopbackAt(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

sockaddr* plain(sockaddr_in& address) { return reinterpret_cast<sockaddr*>(&address); }

void require(bool done, const char* what) {
  if (!done) throw std::system_error(errno, std::generic_category(), what);
}

/// Small messages must not wait for each other.
void sendAtOnce(int connection) {
  const int on = 1;
  setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void sendAll(int to, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto sent = send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return; // its reader will notice the end
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

} // namespace

DelayedWay::DelayedWay(std::string_view connectionString, std::chrono::microseconds delay)
    : delay_(delay),
      serverPort_(std::stoi(std::string(odbc::ConnectionString(connectionString).value("Port")))) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopbackAt(0);
  socklen_t length = sizeof address;
  constexpr int waiting = 16;
  require(bind(listener_, plain(address), length) == 0, "bind");
  require(listen(listener_, waiting) == 0, "listen");
  require(getsockname(listener_, plain(address), &length) == 0, "getsockname");
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { work(); });
}

DelayedWay::~DelayedWay() {
  ending_ = true;
  thread_.join();
  for (const Way& way : ways_) {
    close(way.toServer.from);
    close(way.toServer.to);
  }
  close(listener_);
}

void DelayedWay::accept() {
  const int program = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  if (program < 0) return;
  const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopbackAt(serverPort_);
  if (connect(server, plain(address), sizeof address) != 0) {
    close(program);
    close(server);
    return;
  }
  sendAtOnce(program);
  sendAtOnce(server);
  ways_.push_back({{program, server}, {server, program}});
}

void DelayedWay::read(Way& way, Direction& direction) {
  std::array<char, 65536> bytes{};
  const auto length = recv(direction.from, bytes.data(), bytes.size(), 0);
  direction.ended = length <= 0;
  const auto size = static_cast<std::size_t>(std::max<ssize_t>(length, 0));
  direction.messages.push_back({Clock::now() + delay_, std::string(bytes.data(), size)});
  if (direction.ended) return;
  if (&direction == &way.toServer) {
    way.asked = true;
  } else if (way.asked) {
    way.asked = false;
    ++roundTrips_;
  }
}

void DelayedWay::sendDue(Direction& direction) {
  while (!direction.messages.empty() && direction.messages.front().due <= Clock::now()) {
    const Message& message = direction.messages.front();
    if (message.bytes.empty())
      shutdown(direction.to, SHUT_WR);
    else
      sendAll(direction.to, message.bytes);
    direction.messages.pop_front();
  }
}

std::chrono::nanoseconds DelayedWay::untilNextDue() const {
  // Long enough to sleep, short enough to notice the end.
  std::chrono::nanoseconds shortest = std::chrono::milliseconds(20);
  for (const Way& way : ways_)
    for (const Direction* direction : {&way.toServer, &way.toProgram})
      if (!direction->messages.empty())
        shortest =
            std::min<std::chrono::nanoseconds>(shortest, direction->messages.front().due - Clock::now());
  return std::max(shortest, std::chrono::nanoseconds(0));
}

void DelayedWay::work() {
  // Wakes up when a message is due, not when it suits the system.
  prctl(PR_SET_TIMERSLACK, 1);
  while (!ending_) {
    std::vector<pollfd> watched{{listener_, POLLIN, 0}};
    for (const Way& way : ways_)
      for (const Direction* direction : {&way.toServer, &way.toProgram})
        watched.push_back({direction->ended ? -1 : direction->from, POLLIN, 0});
    const timespec timeout{0, static_cast<long>(untilNextDue().count())};
    ppoll(watched.data(), watched.size(), &timeout, nullptr);
    for (std::size_t i = 0; i < ways_.size(); ++i) {
      if (watched[2 * i + 1].revents != 0) read(ways_[i], ways_[i].toServer);
      if (watched[2 * i + 2].revents != 0) read(ways_[i], ways_[i].toProgram);
      sendDue(ways_[i].toServer);
      sendDue(ways_[i].toProgram);
    }
    std::erase_if(ways_, [](const Way& way) {
      const bool over = way.toServer.ended && way.toProgram.ended && way.toServer.messages.empty() &&
                        way.toProgram.messages.empty();
      if (over) {
        close(way.toServer.from);
        close(way.toServer.to);
      }
      return over;
    });
    if (watched.front().revents != 0) accept();
  }
}

} // namespace qx::bench
