// A way to the database server that can break.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace qx {

/// Stands between programs and the server of a connection string, on a port of its own.
class ServerProxy {
public:
  enum class State { Open, Gone, Silent };

  explicit ServerProxy(const std::string& connectionString);
  ServerProxy(const ServerProxy&) = delete;
  ServerProxy& operator=(const ServerProxy&) = delete;
  ~ServerProxy();

  /// That of the server, by way of the proxy.
  const std::string& connectionString() const { return connectionString_; }
  /// `Gone` ends all connections, and every new one at once; `Silent` lets them wait for ever.
  void set(State state);
  /// Ends all connections with this message to the server, counted from now, and enters the state.
  void cutAt(int message, State afterwards);
  /// Whether that has happened.
  bool hasCut() const { return messagesLeft_ <= 0; }
  /// Passes the next message with this text on, and ends all connections in place of the server's answer.
  void loseAnswerTo(const std::string& text);

private:
  struct Way {
    int program = -1;
    int server = -1;
  };

  void work();
  void accept();
  bool pass(int from, int to);
  void closeAll();

  std::string connectionString_;
  int serverPort_ = 0;
  int listener_ = -1;
  std::vector<Way> ways_;
  std::atomic<State> state_ = State::Open;
  std::atomic<State> afterwards_ = State::Open;
  std::atomic<int> messagesLeft_ = 0;
  std::string unanswered_; ///< set before `watches_`
  std::atomic<bool> watches_ = false;
  bool answerIsLost_ = false; ///< the message has been passed on
  bool ends_ = false;
  std::atomic<bool> counting_ = false;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

} // namespace qx
