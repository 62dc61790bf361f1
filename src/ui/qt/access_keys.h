// Access keys of buttons that share a window with a form.
#pragma once

#include <QString>

#include <string_view>

namespace qx {

/// Marks in each caption the first letter that is still free.
class AccessKeys {
public:
  /// Reserves the key marked in a caption.
  void take(std::string_view caption);
  /// The caption with its key marked, or unmarked when every letter is taken. An existing mark is kept, so
  /// that a button has the same key everywhere.
  QString mark(const QString& caption);

private:
  QString taken_;
};

} // namespace qx
