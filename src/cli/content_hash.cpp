#include "cli/content_hash.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <bit>

namespace qx::cli {

struct ContentHash::State {
  XXH3_state_t xxh3;
};

ContentHash::ContentHash() : state_(std::make_unique<State>()) { begin(); }

ContentHash::~ContentHash() = default;

void ContentHash::begin() {
  XXH3_128bits_reset(&state_->xxh3);
  filled_ = 0;
}

void ContentHash::add(Name name, std::string_view text) {
  put(name.hash);
  put(text);
  put(std::string_view("\0", 1));
}

void ContentHash::add(Name name, double number) {
  put(name.hash);
  // Zero has a sign.
  put(std::bit_cast<std::uint64_t>(number + 0.0));
}

void ContentHash::put(std::uint64_t bits) {
  std::array<char, sizeof bits> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes.at(i) = static_cast<char>(bits >> (8 * i));
  put({bytes.data(), bytes.size()});
}

void ContentHash::put(std::string_view text) {
  if (text.size() > bytes_.size() - filled_) spill();
  if (text.size() > bytes_.size()) {
    XXH3_128bits_update(&state_->xxh3, text.data(), text.size());
    return;
  }
  std::ranges::copy(text, bytes_.data() + filled_);
  filled_ += text.size();
}

void ContentHash::spill() {
  XXH3_128bits_update(&state_->xxh3, bytes_.data(), filled_);
  filled_ = 0;
}

std::string ContentHash::digits() {
  constexpr std::string_view hexadecimal = "0123456789ABCDEF";
  spill();
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical, XXH3_128bits_digest(&state_->xxh3));
  std::string digits(2 * sizeof canonical.digest, '0');
  char* digit = digits.data();
  for (const unsigned char byte : canonical.digest) {
    *digit++ = hexadecimal[byte >> 4U];
    *digit++ = hexadecimal[byte & 0xFU];
  }
  return digits;
}

} // namespace qx::cli
