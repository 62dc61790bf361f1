// A connection that writes down the text of every statement before it passes it on.
#pragma once

#include "platform/database.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace qx {

/// Everything else is the connection's behind it; as a host's it has no units of work of its own.
class RecordingConnection final : public Connection {
public:
  explicit RecordingConnection(std::shared_ptr<Connection> connection, bool host = false)
      : connection_(std::move(connection)), host_(host) {}

  const std::string& connectionString() const override { return connection_->connectionString(); }
  std::int64_t execute(const Sql& statement) override { return connection_->execute(recorded(statement)); }
  std::unique_ptr<Recordset> open(const Sql& statement) override {
    return connection_->open(recorded(statement));
  }
  std::unique_ptr<Recordset> openKeyset(const Sql& statement) override {
    return connection_->openKeyset(recorded(statement));
  }
  std::unique_ptr<Recordset> openStream(const Sql& statement) override {
    return connection_->openStream(recorded(statement));
  }

  bool ownsWork() const override { return !host_ && connection_->ownsWork(); }
  bool inWork() const override { return connection_->inWork(); }
  void beginWork(BusyWait* wait) override {
    if (!host_) connection_->beginWork(wait);
  }
  void commitWork() override {
    if (!host_) connection_->commitWork();
  }
  void rollbackWork() noexcept override {
    if (!host_) connection_->rollbackWork();
  }
  void setSavepoint() override {
    if (!host_) connection_->setSavepoint();
  }
  void releaseSavepoint() override {
    if (!host_) connection_->releaseSavepoint();
  }
  void rollbackToSavepoint() noexcept override {
    if (!host_) connection_->rollbackToSavepoint();
  }

  std::vector<std::string> statements;

private:
  const Sql& recorded(const Sql& statement) {
    statements.push_back(statement.text());
    return statement;
  }

  std::shared_ptr<Connection> connection_;
  bool host_;
};

} // namespace qx
