// Detects whether anything was written to a stream.
#pragma once

#include <streambuf>

namespace qx::cli {

/// Forwards everything to another buffer, which must outlive it.
class CountingBuffer final : public std::streambuf {
public:
  explicit CountingBuffer(std::streambuf* target) : target_(target) {}

  bool used() const { return used_; }

protected:
  int_type overflow(int_type character) override {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    used_ = true;
    return target_->sputc(traits_type::to_char_type(character));
  }
  std::streamsize xsputn(const char* text, std::streamsize length) override {
    if (length > 0) used_ = true;
    return target_->sputn(text, length);
  }
  int sync() override { return target_->pubsync(); }

private:
  std::streambuf* target_;
  bool used_ = false;
};

} // namespace qx::cli
