#include "ui/qt/end_on_signal.h"

#include <QCoreApplication>

#include <chrono>

namespace qx {

EndOnSignal::EndOnSignal(ImportJobObject2& engine)
    : stop_(engine), requests_([](void* stop) { static_cast<StandingStop*>(stop)->ask(); }, &stop_) {
  // What comes in a signal handler may not wake the event loop, so the loop looks from time to time.
  constexpr std::chrono::milliseconds betweenLooks{200};
  QObject::connect(&look_, &QTimer::timeout, [this] {
    if (!stop_.asked()) return;
    look_.stop();
    QCoreApplication::exit(0);
  });
  look_.start(betweenLooks);
}

} // namespace qx
