// Access keys of buttons beside those of a form.
#pragma once

#include <QString>

#include <string_view>

namespace qx {

/// Gives each caption the first of its letters that is still free.
class AccessKeys {
public:
  /// Takes the key that is marked in a caption.
  void take(std::string_view caption);
  /// The caption with its key marked; without a mark when every letter is taken. A mark that stands there
  /// already stays: the button has the same key everywhere.
  QString mark(const QString& caption);

private:
  QString taken_;
};

} // namespace qx
