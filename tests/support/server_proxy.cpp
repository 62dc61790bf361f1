#include "support/server_proxy.h"

#include "adapters/odbc/connection_string.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <cstdint>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace qx {
namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

sockaddr* generic(sockaddr_in& address) { return reinterpret_cast<sockaddr*>(&address); }

} // namespace

ServerProxy::ServerProxy(const std::string& connectionString)
    : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  odbc::ConnectionString text(connectionString);
  serverPort_ = std::stoi(std::string(text.value("Port")));
  sockaddr_in address = loopback(0);
  socklen_t length = sizeof address;
  constexpr int waiting = 16;
  if (bind(listener_, generic(address), length) != 0 || listen(listener_, waiting) != 0 ||
      getsockname(listener_, generic(address), &length) != 0)
    throw std::runtime_error("there is no port for the proxy");
  text.set("Port", std::to_string(ntohs(address.sin_port)));
  connectionString_ = text.text();
  thread_ = std::thread([this] { work(); });
}

ServerProxy::~ServerProxy() {
  ending_ = true;
  thread_.join();
  closeAll();
  close(listener_);
}

void ServerProxy::set(State state) {
  counting_ = false;
  state_ = state;
  // Longer than the thread takes to notice.
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
}

void ServerProxy::cutAt(int message, State afterwards) {
  set(State::Open);
  afterwards_ = afterwards;
  messagesLeft_ = message;
  counting_ = true;
}

void ServerProxy::loseAnswerTo(const std::string& text) {
  set(State::Open);
  unanswered_ = text;
  watches_ = true;
}

void ServerProxy::work() {
  while (!ending_) {
    const bool open = state_ == State::Open;
    std::vector<pollfd> watched{{listener_, POLLIN, 0}};
    for (const Way& way : ways_) {
      if (!open) break;
      watched.push_back({way.program, POLLIN, 0});
      watched.push_back({way.server, POLLIN, 0});
    }
    constexpr int pause = 10;
    poll(watched.data(), watched.size(), pause);
    if (state_ == State::Gone) closeAll();
    if (open)
      for (std::size_t i = 0; i < ways_.size(); ++i) {
        Way& way = ways_[i];
        if ((watched[2 * i + 1].revents != 0 && !pass(way.program, way.server)) ||
            (watched[2 * i + 2].revents != 0 && !pass(way.server, way.program))) {
          close(way.program);
          close(way.server);
          way = {};
        }
        if (counting_ && messagesLeft_ <= 0) {
          counting_ = false;
          state_ = afterwards_.load();
          closeAll();
          break;
        }
        if (std::exchange(ends_, false)) {
          closeAll();
          break;
        }
      }
    std::erase_if(ways_, [](const Way& way) { return way.program < 0; });
    if (watched.front().revents != 0) accept();
  }
}

void ServerProxy::accept() {
  Way way;
  way.program = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  if (way.program < 0) return;
  way.server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(serverPort_);
  if (state_ == State::Gone || connect(way.server, generic(address), sizeof address) != 0) {
    close(way.program);
    close(way.server);
    return;
  }
  ways_.push_back(way);
}

/// False when one side has ended.
bool ServerProxy::pass(int from, int to) {
  std::array<char, 65536> bytes{};
  const auto length = recv(from, bytes.data(), bytes.size(), 0);
  if (length <= 0) return false;
  const bool toServer = std::ranges::any_of(ways_, [&](const Way& way) { return way.server == to; });
  const std::string_view message(bytes.data(), static_cast<std::size_t>(length));
  if (answerIsLost_ && !toServer) {
    answerIsLost_ = false;
    ends_ = true;
    return true;
  }
  if (watches_ && toServer && message.find(unanswered_) != std::string_view::npos) {
    watches_ = false;
    answerIsLost_ = true;
  }
  // The message itself does not arrive any more.
  if (counting_ && toServer && --messagesLeft_ <= 0) return true;
  return send(to, bytes.data(), static_cast<std::size_t>(length), MSG_NOSIGNAL) == length;
}

void ServerProxy::closeAll() {
  for (const Way& way : ways_) {
    close(way.program);
    close(way.server);
  }
  ways_.clear();
}

} // namespace qx
