// A pipe to the user's pager.
#include "adapters/system/pager.h"

#include "adapters/system/user.h"

#include <cstdio>
#include <cstdlib>
#include <streambuf>
#include <string>

namespace qx {
namespace {

class PipeBuffer final : public std::streambuf {
public:
  explicit PipeBuffer(std::FILE* pipe) : pipe_(pipe) {}
  PipeBuffer(const PipeBuffer&) = delete;
  PipeBuffer& operator=(const PipeBuffer&) = delete;
  ~PipeBuffer() override { pclose(pipe_); }

protected:
  int_type overflow(int_type character) override {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    return std::fputc(character, pipe_) == EOF ? traits_type::eof() : character;
  }
  std::streamsize xsputn(const char* text, std::streamsize length) override {
    return static_cast<std::streamsize>(std::fwrite(text, 1, static_cast<std::size_t>(length), pipe_));
  }
  int sync() override { return std::fflush(pipe_); }

private:
  std::FILE* pipe_;
};

class PipeStream final : public std::ostream {
public:
  explicit PipeStream(std::FILE* pipe) : std::ostream(nullptr), buffer_(pipe) { rdbuf(&buffer_); }

private:
  PipeBuffer buffer_;
};

} // namespace

std::unique_ptr<std::ostream> openPager() {
  const std::string command = environmentVariable("PAGER").value_or("");
  if (command.empty()) return nullptr;
  // As less is asked by other programs: end when a screen holds all, and show colours.
  setenv("LESS", "FRX", 0);
  // The variable holds a command with its options, for the shell of the user who has set it.
  // NOLINTNEXTLINE(cert-env33-c)
  std::FILE* pipe = popen(command.c_str(), "w");
  if (pipe == nullptr) return nullptr;
  return std::make_unique<PipeStream>(pipe);
}

} // namespace qx
