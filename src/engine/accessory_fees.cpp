#include "engine/accessory_fees.h"

#include "engine/section_runner.h"
#include "model/german_text.h"
#include "platform/failure.h"

#include <algorithm>

namespace qx {

double AccessoryFees::minimumOrderFee(double orderValue) {
  load();
  return minimum_ && orderValue < minimum_->bound ? minimum_->fee : 0;
}

double AccessoryFees::gradedFee(double accessoryValue) {
  load();
  if (graded_.empty()) return 0;
  const auto row = std::ranges::find_if(
      graded_, [accessoryValue](const Row& each) { return each.bound > accessoryValue; });
  return row == graded_.end() ? graded_.back().fee : row->fee;
}

std::optional<AccessoryFees::Row> AccessoryFees::parse(std::string_view key, const std::string& entry) {
  std::string doubt = "has no semicolon";
  if (const auto separator = entry.find(';'); separator != std::string::npos) {
    const std::string bound = entry.substr(0, separator);
    const std::string fee = entry.substr(separator + 1);
    const std::string& doubtful = doubtAbout(bound).empty() ? fee : bound;
    doubt = doubtAbout(doubtful);
    if (doubt.empty()) return Row{*parseTypedNumber(bound), *parseTypedNumber(fee)};
    doubt.insert(0, "is not used: '" + doubtful + "' ");
  }
  malformed_ += (malformed_.empty() ? "" : ", ") + std::string(key);
  environment_.diagnostics.report({"Zubehoer.ini", std::string(key) + "=" + entry + " " + doubt, ""});
  return std::nullopt;
}

void AccessoryFees::load() {
  if (loaded_) return;
  loaded_ = true;
  trapped(environment_.diagnostics, {"Zubehoer.ini", {}, &isFatal}, [&] {
    const std::string file = environment_.components.createProfile()->GetAppPath() + "\\Zubehoer.ini";
    const std::string minimum = environment_.iniFile.read(file, "Allgemein", "MinBestGebuehr");
    // An empty value, or one without a semicolon, means no fee.
    if (!minimum.empty()) minimum_ = parse("MinBestGebuehr", minimum);
    for (int number = 1;; ++number) {
      const std::string key = std::to_string(number);
      const std::string entry = environment_.iniFile.read(file, "Werte", key);
      if (entry.empty()) break;
      if (const auto row = parse(key, entry)) graded_.push_back(*row);
    }
  });
}

} // namespace qx
