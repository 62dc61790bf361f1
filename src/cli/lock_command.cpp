#include "cli/commands.h"

#include "program/busy_notice.h"
#include "store/json_writer.h"

namespace qx::cli {
namespace {

/// `held`: whether the lock is held now; otherwise the holder has just lost it.
void writeJson(std::ostream& output, bool held, const std::optional<LockHolder>& holder) {
  const LockHolder shown = holder.value_or(LockHolder());
  JsonWriter json(output);
  json.beginObject().key("held").boolean(held);
  json.key("Benutzer").text(shown.Benutzer);
  json.key("SessionID").text(shown.SessionID);
  json.key("alive");
  if (shown.alive)
    json.boolean(*shown.alive);
  else
    json.null();
  json.endObject().finish();
}

std::string_view livenessText(const LockHolder& holder) {
  if (!holder.alive) return "it is unknown whether that program is still running";
  return *holder.alive ? "that program is running" : "that program is no longer running";
}

} // namespace

ExitCode LockShowCommand::work(const CommandContext& context) {
  const auto holder = context.engine.importLock().holder();
  if (context.output.json)
    writeJson(context.output.result, holder.has_value(), holder);
  else if (holder)
    context.output.result << "The import is locked by user '" << holder->Benutzer << "' (session "
                          << holder->SessionID << "); " << livenessText(*holder) << ".\n";
  else
    context.output.result << "The import is not locked.\n";
  return ExitCode::Success;
}

ExitCode LockReleaseCommand::work(const CommandContext& context) {
  ImportLock& lock = context.engine.importLock();
  BusyNotice wait(context.output.messages);
  const auto holder = lock.holder();
  if (holder && holder->alive == true && !force)
    throw ProgramError(
        ExitCode::Refused, "the lock is held by user '" + holder->Benutzer + "', whose program is running",
        "Nothing was changed. Two programs that process at once may write a job twice; --force "
        "removes the lock all the same.");
  if (holder && !lock.release(&wait))
    throw ProgramError(ExitCode::Failure, "the lock could not be released", "--verbose shows the reason.");
  if (context.output.json)
    writeJson(context.output.result, false, holder);
  else if (holder)
    context.output.result << "The lock of user '" << holder->Benutzer << "' was released.\n";
  else
    context.output.result << "The import was not locked.\n";
  return ExitCode::Success;
}

} // namespace qx::cli
