#include "store/job_file_scrambling.h"

#include "platform/failure.h"
#include "platform/path_text.h"
#include "store/job_file_banner.h"
#include "store/job_file_line.h"
#include "store/job_file_target.h"

#include <exception>
#include <memory>
#include <vector>

namespace qx {
namespace {

constexpr std::size_t chunk = std::size_t{256} * 1024;

/// Copies a file character by character, whatever the length of its lines.
class FormChange {
public:
  FormChange(const Scrambler& scrambler, Scrambling scrambling, JobFileTarget& target)
      : scrambler_(scrambler), scramble_(scrambling == Scrambling::Scramble), target_(target) {}

  void take(std::string_view characters, std::string_view banner) {
    output_.clear();
    for (const char c : characters) {
      if (lines_ == 0)
        takeBanner(c, banner);
      else
        take(c);
    }
    target_.write(output_);
  }
  /// To be called after the last character.
  void finish(std::string_view banner) {
    output_.clear();
    if (lines_ == 0) endBanner(banner, behind_ && last_ == '\r' ? "\r" : "");
    target_.write(output_);
    if (position_ > 0) ++lines_;
  }
  std::int64_t lines() const { return lines_; }

private:
  /// The banner is replaced by that of the other form; the rest of the line stays.
  void takeBanner(char c, std::string_view banner) {
    if (c == '\n') {
      lineEnd_ = last_ == '\r' ? LineEnd::CrLf : LineEnd::Lf;
      endBanner(banner, lineEnd_ == LineEnd::CrLf ? "\r\n" : "\n");
    } else if (last_ == '\r' && bannerLength_ <= longestBannerLine + 1) {
      lineEnd_ = LineEnd::Cr;
      endBanner(banner, "\r");
      return take(c);
    } else if (behind_) {
      if (last_ == '\r') takeBehind(last_);
      if (c != '\r') takeBehind(c);
    } else if (c == ';' && last_ == '"' && bannerLength_ >= banner.size() + 2) {
      writeBanner(banner);
    }
    ++bannerLength_;
    last_ = c;
  }
  void writeBanner(std::string_view banner) {
    output_ += '"';
    output_ += banner;
    output_ += "\";";
    behind_ = true;
    position_ = banner.size() + 3;
  }
  void takeBehind(char c) {
    ++position_;
    output_ += changed(c);
  }
  char changed(char c) const {
    return scramble_ ? scrambler_.encrypted(position_, c) : scrambler_.decrypted(position_, c);
  }
  void endBanner(std::string_view banner, std::string_view lineEnd) {
    if (!behind_) writeBanner(banner);
    position_ = 0;
    output_ += lineEnd;
    ++lines_;
  }
  void take(char c) {
    const bool end =
        lineEnd_ == LineEnd::Cr ? c == '\r' : c == '\n' && (lineEnd_ == LineEnd::Lf || last_ == '\r');
    last_ = c;
    if (end) ++lines_;
    position_ = end ? 0 : position_ + 1;
    output_ += end ? c : changed(c);
  }

  const Scrambler& scrambler_;
  bool scramble_;
  JobFileTarget& target_;
  std::string output_;
  std::size_t position_ = 0;
  std::int64_t lines_ = 0;
  std::size_t bannerLength_ = 0;
  LineEnd lineEnd_ = LineEnd::Lf;
  char last_ = 0;
  bool behind_ = false; ///< the banner is written, the first line continues
};

/// The form of the file, null when it is no job file.
std::optional<JobFileForm> formOfFile(const std::filesystem::path& file, const Scrambler& scrambler) {
  std::ifstream stream = openJobFile(file);
  JobFileLines lines(stream, textOf(file));
  const auto first = lines.next();
  if (!first) return std::nullopt;
  const auto plain = plainForm(first->text);
  return plain ? plain : scrambledForm(first->text, scrambler);
}

std::string_view bannerOf(JobFileVersion version, Scrambling scrambling, const Scrambler& scrambler) {
  const bool first = version == JobFileVersion::One;
  if (scrambling == Scrambling::Scramble) return first ? scrambler.banner1() : scrambler.banner();
  return first ? jobFileBanner1 : jobFileBanner;
}

void changeForm(const std::filesystem::path& file, std::string_view banner, FormChange& change,
                JobFileObserver* observer) {
  std::ifstream stream = openJobFile(file);
  const std::uintmax_t total = std::filesystem::file_size(file);
  std::uintmax_t done = 0;
  std::vector<char> buffer(chunk);
  while (stream) {
    stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    if (stream.bad()) throw std::system_error(EIO, std::generic_category(), textOf(file));
    const auto got = static_cast<std::size_t>(stream.gcount());
    change.take({buffer.data(), got}, banner);
    done += got;
    if (observer != nullptr) observer->progress(done, total);
  }
  change.finish(banner);
}

/// `open` makes the target.
template <class Open>
JobFileReport scrambleTo(Environment& environment, std::string_view fileName, Scrambling scrambling,
                         JobFileObserver* observer, Open&& open) {
  JobFileReport report;
  try {
    const std::filesystem::path file = pathOf(fileName);
    if (const std::string reason = whyNoJobFile(file); !reason.empty()) {
      report.end = JobFileEnd::NoFile;
      throw std::runtime_error(reason);
    }
    const Scrambler scrambler = installedScrambler(environment);
    const auto form = formOfFile(file, scrambler);
    if (!form || form->scrambled == (scrambling == Scrambling::Scramble)) {
      report.end = JobFileEnd::WrongBanner;
      throw std::runtime_error(textOf(file) + (form ? ": it has that form already" : ": no job file"));
    }
    const std::unique_ptr<JobFileTarget> target = open();
    FormChange change(scrambler, scrambling, *target);
    changeForm(file, bannerOf(form->version, scrambling, scrambler), change, observer);
    target->finish();
    report.lines = change.lines();
    report.end = JobFileEnd::Complete;
  } catch (const std::exception& failure) {
    if (const auto end = endOfTarget(failure)) report.end = *end;
    report.failure = plainCause(failure);
    environment.diagnostics.report({"Scrambling", report.failure, {}});
  }
  return report;
}

} // namespace

JobFileReport scrambleJobFile(Environment& environment, std::string_view fileName,
                              std::string_view targetName, Scrambling scrambling, JobFileObserver* observer) {
  return scrambleTo(environment, fileName, scrambling, observer, [&] {
    return std::make_unique<JobFileTarget>(pathOf(targetName), protectedFiles(environment),
                                           permissionsOfNewFile(environment));
  });
}

JobFileReport scrambleJobFile(Environment& environment, std::string_view fileName, const OpenFile& target,
                              Scrambling scrambling, JobFileObserver* observer) {
  return scrambleTo(environment, fileName, scrambling, observer,
                    [&] { return std::make_unique<JobFileTarget>(target); });
}

} // namespace qx
