// A way to a database server on which messages take time.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace qx::bench {

/// Passes messages on between programs and the server of a connection string, each after a delay, and counts
/// those of the programs that wait for an answer.
class DelayedWay {
public:
  /// `delay`: for each message, in either direction.
  DelayedWay(std::string_view connectionString, std::chrono::microseconds delay);
  DelayedWay(const DelayedWay&) = delete;
  DelayedWay& operator=(const DelayedWay&) = delete;
  ~DelayedWay();

  /// The port of this machine at which programs find the server.
  int port() const { return port_; }
  /// So far. What a program sends before it reads again counts once.
  std::uint64_t roundTrips() const { return roundTrips_; }

private:
  using Clock = std::chrono::steady_clock;

  struct Message {
    Clock::time_point due;
    std::string bytes; ///< empty: the sender has ended
  };
  struct Direction {
    int from = -1;
    int to = -1;
    std::deque<Message> messages{};
    bool ended = false; ///< nothing more is read
  };
  struct Way {
    Direction toServer;
    Direction toProgram;
    bool asked = false; ///< the program has sent something that is not answered yet
  };

  void work();
  void accept();
  void read(Way& way, Direction& direction);
  static void sendDue(Direction& direction);
  std::chrono::nanoseconds untilNextDue() const;

  std::chrono::microseconds delay_;
  int serverPort_;
  int port_ = 0;
  int listener_ = -1;
  std::vector<Way> ways_;
  std::atomic<std::uint64_t> roundTrips_ = 0;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

} // namespace qx::bench
