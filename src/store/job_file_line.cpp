#include "store/job_file_line.h"

#include "platform/path_text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace qx {
namespace {

[[noreturn]] void raise(const std::string& file, int error) {
  throw std::system_error(error == 0 ? EIO : error, std::generic_category(), file);
}

} // namespace

std::string whyNoJobFile(const std::filesystem::path& file) {
  if (file.empty()) return "the job file has no name";
  std::error_code failure;
  const auto status = std::filesystem::status(file, failure);
  if (std::filesystem::is_regular_file(status)) return {};
  std::string reason = "there is no such file";
  if (std::filesystem::is_directory(status))
    reason = "it is a directory";
  else if (std::filesystem::exists(status))
    reason = "it is not a regular file";
  else if (!std::filesystem::status_known(status))
    reason = failure.message();
  return textOf(file) + ": " + reason;
}

std::ifstream openJobFile(const std::filesystem::path& file) {
  if (std::filesystem::is_directory(file)) raise(textOf(file), EISDIR);
  std::ifstream stream;
  // Lines are cut from a buffer of the reader's own.
  stream.rdbuf()->pubsetbuf(nullptr, 0);
  errno = 0;
  stream.open(file, std::ios::binary);
  if (!stream) raise(textOf(file), errno);
  return stream;
}

JobFileLines::JobFileLines(std::istream& stream, std::string name, std::size_t readAhead)
    : stream_(stream), name_(std::move(name)), readAhead_(readAhead), buffer_(readAhead) {}

std::optional<PhysicalLine> JobFileLines::next() {
  if (skipping_) skipRest();
  std::size_t scanned = 0; // behind begin_
  for (;;) {
    if (number_ == 0) decideLineEnd();
    if (const auto end = findEnd(begin_ + scanned)) {
      const bool cr = lineEnd_ != LineEnd::Cr && *end > begin_ && buffer_[*end - 1] == '\r';
      if (number_ == 0 && cr) lineEnd_ = LineEnd::CrLf;
      return take(cr ? *end - 1 : *end, *end + 1);
    }
    scanned = end_ - begin_;
    if (scanned > longestRecord) {
      skipping_ = true;
      PhysicalLine line = take(begin_ + longestRecord, begin_ + longestRecord);
      line.overlong = true;
      return line;
    }
    if (!fill()) break;
  }
  if (begin_ == end_) return std::nullopt;
  // The file may have been cut between the two characters of its last line end.
  return take(lineEnd_ == LineEnd::CrLf && buffer_[end_ - 1] == '\r' ? end_ - 1 : end_, end_);
}

void JobFileLines::decideLineEnd() {
  const std::string_view read(buffer_.data(), std::min(end_, longestBannerLine + 2));
  const std::size_t cr = read.find('\r');
  if (cr <= longestBannerLine && cr + 1 < read.size() && read[cr + 1] != '\n' && read.find('\n') > cr)
    lineEnd_ = LineEnd::Cr;
}

void JobFileLines::skipRest() {
  skipping_ = false;
  for (;;) {
    if (const auto end = findEnd(begin_)) {
      begin_ = *end + 1;
      return;
    }
    // A CR at the end may be the first half of a CR LF.
    begin_ = end_ > begin_ && buffer_[end_ - 1] == '\r' ? end_ - 1 : end_;
    if (fill()) continue;
    begin_ = end_;
    return;
  }
}

/// The position of the character that ends the line.
std::optional<std::size_t> JobFileLines::findEnd(std::size_t from) const {
  while (from < end_) {
    const void* const found = std::memchr(&buffer_[from], lineEnd_ == LineEnd::Cr ? '\r' : '\n', end_ - from);
    if (found == nullptr) return std::nullopt;
    const auto at = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
    if (lineEnd_ != LineEnd::CrLf || (at > begin_ && buffer_[at - 1] == '\r')) return at;
    from = at + 1;
  }
  return std::nullopt;
}

/// Reads more; unconsumed bytes move to the front. False at the end of the file.
bool JobFileLines::fill() {
  if (atEnd_) return false;
  if (begin_ > 0) {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= begin_;
    begin_ = 0;
  }
  if (buffer_.size() - end_ < readAhead_)
    buffer_.resize(std::max(end_ + readAhead_, std::min(buffer_.size() * 2, longestRecord + 2 * readAhead_)));
  errno = 0;
  stream_.read(&buffer_[end_], static_cast<std::streamsize>(buffer_.size() - end_));
  if (stream_.bad()) raise(name_, errno);
  const auto got = static_cast<std::size_t>(stream_.gcount());
  end_ += got;
  bytesRead_ += got;
  atEnd_ = stream_.eof();
  return got > 0;
}

PhysicalLine JobFileLines::take(std::size_t end, std::size_t after) {
  PhysicalLine line;
  line.number = ++number_;
  if (scrambler_ != nullptr)
    for (std::size_t i = begin_; i < end; ++i) buffer_[i] = scrambler_->decrypted(i - begin_ + 1, buffer_[i]);
  if (end > begin_) line.text = {&buffer_[begin_], end - begin_};
  begin_ = after;
  return line;
}

} // namespace qx
