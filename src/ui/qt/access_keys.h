// The access keys of a window.
#pragma once

#include <QString>

#include <string_view>

namespace qx {

/// The buttons and headings of the dialogs. A button has the same key in every dialog; the fields of a dialog
/// get letters that its buttons leave.
namespace captions {
inline constexpr std::string_view addresses = "Adr&essen…";
inline constexpr std::string_view remove = "&Löschen";
inline constexpr std::string_view takeAll = "Alle &übernehmen";
inline constexpr std::string_view release = "Fre&igeben";
inline constexpr std::string_view save = "Spei&chern";
inline constexpr std::string_view saveAndGoOn = "Speicher&n und weiter";
inline constexpr std::string_view cancel = "Abb&rechen";
inline constexpr std::string_view findings = "Be&funde";
inline constexpr std::string_view positions = "Posi&tionen";
inline constexpr std::string_view contracts = "Ver&träge";
} // namespace captions

/// Gives each caption a letter that is still free.
class AccessKeys {
public:
  /// Reserves the key marked in a caption.
  void take(std::string_view caption);
  /// The caption with a key: the one marked in it if that is free, else the first free letter, else none.
  QString mark(const QString& caption);

private:
  QString taken_;
};

} // namespace qx
