// The hash of what a sender hands over as one job.
#pragma once

#include "model/text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qx::cli {

/// Takes the properties of one job, those of each position behind the begin of the position. Equal digits
/// mean equal properties in the same order. They are the same in every build and version of the program,
/// since they are stored.
class ContentHash {
public:
  /// The name of a property as it goes into the hash.
  struct Name {
    constexpr Name() = default;
    constexpr explicit Name(std::string_view property) : hash(textHash(property)) {}
    std::uint64_t hash = 0;
  };

  ContentHash();
  ContentHash(const ContentHash&) = delete;
  ContentHash& operator=(const ContentHash&) = delete;
  ~ContentHash();

  /// Forgets what was added.
  void begin();
  void beginPosition() { add(Name("Positionen"), ""); }
  /// `text` is without NUL.
  void add(Name name, std::string_view text);
  /// A number is the same whatever its type; a truth value is 0 or 1.
  void add(Name name, double number);

  /// 32 hexadecimal digits.
  std::string digits();

private:
  void put(std::uint64_t bits);
  void put(std::string_view text);
  void spill();

  struct State;
  std::unique_ptr<State> state_;
  std::array<char, 4096> bytes_{}; ///< not yet in the state
  std::size_t filled_ = 0;
};

} // namespace qx::cli
