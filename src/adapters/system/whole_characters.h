// UTF-8 in portions that end with a character.
#pragma once

#include <functional>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>

namespace qx {

/// Hands text on to a sink that takes whole characters only, as a console does. What is begun and not
/// complete waits for its rest, at the latest until the end of the object.
class WholeCharacters final : public std::streambuf {
public:
  /// False when the text could not be taken.
  using Sink = std::function<bool(std::string_view text)>;

  explicit WholeCharacters(Sink sink) : sink_(std::move(sink)) {}
  WholeCharacters(const WholeCharacters&) = delete;
  WholeCharacters& operator=(const WholeCharacters&) = delete;
  ~WholeCharacters() override;

protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override;

private:
  Sink sink_;
  std::string waiting_;
};

} // namespace qx
