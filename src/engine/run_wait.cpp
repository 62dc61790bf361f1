#include "engine/run_wait.h"

namespace qx {
namespace {

constexpr std::chrono::milliseconds firstNotice{1000};
constexpr std::chrono::milliseconds noticeInterval{60000};

} // namespace

bool RunWait::goOn(std::chrono::milliseconds waited) {
  if (waited < firstNotice) nextNotice_ = firstNotice;
  if (waited >= nextNotice_) {
    nextNotice_ += noticeInterval;
    constexpr std::string_view notice =
        "Die Datenbank wird von einem anderen Programm benutzt. Es wird gewartet...";
    diagnostics_.report({"processing run", notice, ""});
    events_.raiseProcessInfo(notice);
  }
  desktop_.yield();
  return !stop_.requested();
}

} // namespace qx
