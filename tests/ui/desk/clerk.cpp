#include "clerk.h"

#include <gtest/gtest.h>

#include <QEventLoop>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <thread>

namespace qx {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 8s;

constexpr xcb_keysym_t shift = 0xffe1;
constexpr xcb_keysym_t control = 0xffe3;
constexpr xcb_keysym_t alt = 0xffe9;
constexpr xcb_keysym_t firstFunctionKey = 0xffbe;

const std::map<std::string_view, xcb_keysym_t>& namedKeys() {
  static const std::map<std::string_view, xcb_keysym_t> keys{
      {"Eingabe", 0xff0d}, {"Esc", 0xff1b},      {"Tab", 0xff09},
      {"Entf", 0xffff},    {"Einfg", 0xff63},    {"Leertaste", 0x0020},
      {"Pos1", 0xff50},    {"Ende", 0xff57},     {"Pfeil nach links", 0xff51},
      {"Pfeil", 0xff54},   {"Bild auf", 0xff55}, {"Pfeil nach rechts", 0xff53},
      {"Pfeile", 0xff54},  {"Bild ab", 0xff56},  {"Pfeil nach oben", 0xff52},
      {"Menü", 0xff67},    {"Rück", 0xff08},     {"Pfeil nach unten", 0xff54},
  };
  return keys;
}

xcb_keysym_t symbolOf(std::string_view key) {
  if (const auto named = namedKeys().find(key); named != namedKeys().end()) return named->second;
  if (key.size() == 1) return static_cast<unsigned char>(key.front());
  if (key.size() <= 3 && key.front() == 'F')
    return firstFunctionKey + static_cast<xcb_keysym_t>(std::atoi(std::string(key.substr(1)).c_str())) - 1;
  throw std::invalid_argument("there is no key " + std::string(key));
}

} // namespace

/// The keyboard of the display.
class Clerk::Keyboard {
public:
  Keyboard() : connection_(xcb_connect(nullptr, nullptr), &xcb_disconnect) {
    const xcb_setup_t* setup = xcb_get_setup(link());
    first_ = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - first_ + 1);
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&std::free)> map(
        xcb_get_keyboard_mapping_reply(link(), xcb_get_keyboard_mapping(link(), first_, count), nullptr),
        &std::free);
    if (!map) throw std::runtime_error("the display has no keyboard");
    width_ = map->keysyms_per_keycode;
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(map.get());
    symbols_.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(map.get()));
  }

  void press(xcb_keysym_t symbol, std::vector<xcb_keysym_t> held) {
    if (symbol >= 'A' && symbol <= 'Z') {
      symbol += 'a' - 'A';
      if (held.empty()) held.push_back(shift);
    }
    const auto [code, shifted] = codeOf(symbol);
    if (shifted) held.push_back(shift);
    for (const xcb_keysym_t each : held) send(XCB_KEY_PRESS, codeOf(each).first);
    send(XCB_KEY_PRESS, code);
    send(XCB_KEY_RELEASE, code);
    for (auto each = held.rbegin(); each != held.rend(); ++each) send(XCB_KEY_RELEASE, codeOf(*each).first);
    // Returns when the server has passed all of them on.
    std::free(xcb_get_input_focus_reply(link(), xcb_get_input_focus(link()), nullptr));
  }

private:
  xcb_connection_t* link() { return connection_.get(); }
  /// The key that bears a symbol, and whether Shift is needed for it.
  std::pair<std::uint8_t, bool> codeOf(xcb_keysym_t symbol) const {
    for (const std::size_t level : {0, 1})
      for (std::size_t at = level; at < symbols_.size(); at += width_)
        if (symbols_[at] == symbol) return {static_cast<std::uint8_t>(first_ + at / width_), level == 1};
    throw std::invalid_argument("the keyboard has no key " + std::to_string(symbol));
  }
  void send(std::uint8_t kind, std::uint8_t code) {
    xcb_test_fake_input(link(), kind, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
  }

  std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
  std::uint8_t first_ = 0;
  std::size_t width_ = 1;
  std::vector<xcb_keysym_t> symbols_;
};

Clerk::Clerk() : keyboard_(std::make_unique<Keyboard>()) {}
Clerk::~Clerk() = default;

void Clerk::work(const std::function<void(Clerk&)>& day) {
  QEventLoop loop;
  std::thread thread([&] {
    try {
      Clerk clerk;
      day(clerk);
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
    // Whatever was left open would keep the loop from ending.
    QMetaObject::invokeMethod(
        qApp,
        [&loop] {
          while (QWidget* open = QApplication::activeModalWidget()) {
            open->close();
            if (open->isVisible()) open->hide();
          }
          loop.quit();
        },
        Qt::QueuedConnection);
  });
  loop.exec();
  thread.join();
}

void Clerk::press(std::string_view keys, int times) {
  std::vector<xcb_keysym_t> held;
  for (bool more = true; more;) {
    more = false;
    for (const auto& [name, symbol] :
         {std::pair<std::string_view, xcb_keysym_t>{"Strg+", control}, {"Umschalt+", shift}, {"Alt+", alt}})
      if (keys.starts_with(name)) {
        held.push_back(symbol);
        keys.remove_prefix(name.size());
        more = true;
      }
  }
  for (int i = 0; i < times; ++i) keyboard_->press(symbolOf(keys), held);
}

void Clerk::type(std::string_view text) {
  for (const char letter : text) keyboard_->press(static_cast<unsigned char>(letter), {});
}

bool Clerk::sees(const std::function<bool()>& fact) const {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!look(fact)) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(5ms);
  }
  return true;
}

void Clerk::awaitWindow(const char* name) const {
  if (sees([name] { return windowWithKeys(name) != nullptr; })) return;
  const std::string instead = look([] {
    const QWidget* window = QApplication::activeWindow();
    return window == nullptr ? std::string("none") : window->objectName().toStdString();
  });
  throw std::runtime_error("the keys never came to " + std::string(name) + " but to " + instead);
}

QWidget* windowWithKeys(const char* name) {
  QWidget* window = QApplication::activeWindow();
  if (window == nullptr || !window->isActiveWindow() || QApplication::focusWidget() == nullptr)
    return nullptr;
  return window->objectName() == QLatin1String(name) || window->inherits(name) ? window : nullptr;
}

} // namespace qx
