#include "convert/csv_rows.h"

#include "model/code_page.h"
#include "model/text.h"
#include "program/program_error.h"

#include <csv.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace qx::convert {
namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16U;
/// Beyond it a quote is missing rather than a value that long.
constexpr std::size_t longestValue = std::size_t{1} << 20U;
constexpr std::size_t mostColumns = 4096;

extern "C" int isNoSpace(unsigned char /*character*/) { return 0; }

std::int64_t lineBreaksIn(std::string_view text) {
  std::int64_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'))) ++count;
  return count;
}

bool isPlain(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

/// The bytes in printable characters, for messages.
std::string printable(std::string_view bytes) {
  constexpr std::size_t longest = 60;
  std::string text(firstCharacters(isUtf8(bytes) ? std::string(bytes) : textFromCodePage(bytes), longest));
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

} // namespace

/// Its callbacks only store: the library's own frames lie between them and the caller.
struct CsvRows::Parser {
  csv_parser state{};
  std::exception_ptr failure;

  static void takeValue(void* bytes, std::size_t length, void* rows) noexcept {
    auto& self = *static_cast<CsvRows*>(rows);
    try {
      self.add({static_cast<const char*>(bytes), length});
    } catch (...) {
      self.parser_->failure = std::current_exception();
    }
  }
  static void endRow(int /*terminator*/, void* rows) noexcept {
    static_cast<CsvRows*>(rows)->rowEnded_ = true;
  }
};

CsvRows::CsvRows(File& file, const CsvForm& form, std::string name)
    : file_(file), form_(form), name_(std::move(name)), parser_(std::make_unique<Parser>()),
      buffer_(bufferSize) {
  if (csv_init(&parser_->state, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  csv_set_delim(&parser_->state, static_cast<unsigned char>(form_.delimiter));
  csv_set_quote(&parser_->state, static_cast<unsigned char>(form_.quote));
  // Blanks belong to the value.
  csv_set_space_func(&parser_->state, isNoSpace);
  skipMark();
}

CsvRows::~CsvRows() { csv_free(&parser_->state); }

void CsvRows::refuse(std::int64_t line, std::string_view column, const std::string& reason) const {
  throw ProgramError(ExitCode::BadInput,
                     (column.empty() ? "" : "column " + std::string(column) + ": ") + reason,
                     "Nothing can be staged of the output. Correct the file or its map and convert it again.",
                     {name_, line, std::string(column)});
}

void CsvRows::skipMark() {
  fill();
  // A pipe may hand over a single byte at first.
  while (!unread_.empty() && unread_.size() < utf8Mark.size()) {
    std::vector<char> more(bufferSize - unread_.size());
    const std::size_t count = file_.read(more.data(), more.size());
    if (count == 0) break;
    std::copy_n(more.begin(), count, buffer_.begin() + static_cast<std::ptrdiff_t>(unread_.size()));
    unread_ = {buffer_.data(), unread_.size() + count};
  }
  if (unread_.starts_with("\xFF\xFE") || unread_.starts_with("\xFE\xFF"))
    refuse(1, {}, "the file is in UTF-16; save it as UTF-8");
  if (!unread_.starts_with(utf8Mark)) return;
  if (form_.encoding != Encoding::Utf8)
    refuse(1, {}, "the file begins with the byte order mark of UTF-8, but its map says windows-1252");
  unread_.remove_prefix(utf8Mark.size());
}

bool CsvRows::fill() {
  unread_ = {buffer_.data(), file_.read(buffer_.data(), buffer_.size())};
  return !unread_.empty();
}

bool CsvRows::next() {
  count_ = 0;
  rowEnded_ = false;
  while (!rowEnded_ && !atEnd_) {
    if (unread_.empty() && !fill())
      finish();
    else
      feedPiece();
  }
  values_.resize(count_);
  return rowEnded_;
}

/// Up to the next end of a line, so that at most one row ends and its line is known.
void CsvRows::feedPiece() {
  const auto ends = [](char c) { return c == '\n' || c == '\r' || c == '\0'; };
  const auto at = static_cast<std::size_t>(std::ranges::find_if(unread_, ends) - unread_.begin());
  if (at < unread_.size() && unread_[at] == '\0') {
    feed(unread_.substr(0, at));
    refuse(line_, nextColumn(), "the file holds the character NUL");
  }
  const std::string_view piece = unread_.substr(0, std::min(at + 1, unread_.size()));
  unread_.remove_prefix(piece.size());
  if (afterReturn_ && piece == "\n") {
    afterReturn_ = false;
    --line_;
  }
  feed(piece);
  afterReturn_ = piece.back() == '\r';
  if (piece.back() == '\n' || piece.back() == '\r') ++line_;
}

void CsvRows::feed(std::string_view piece) {
  csv_parser& state = parser_->state;
  const std::size_t taken =
      csv_parse(&state, piece.data(), piece.size(), Parser::takeValue, Parser::endRow, this);
  if (parser_->failure) std::rethrow_exception(std::exchange(parser_->failure, nullptr));
  if (taken == piece.size()) {
    if (state.entry_pos > longestValue)
      refuse(line_, nextColumn(), "the value is longer than 1 MiB; is a closing quote missing?");
    return;
  }
  if (csv_error(&state) == CSV_ENOMEM || csv_error(&state) == CSV_ETOOBIG) throw std::bad_alloc();
  refuse(line_, nextColumn(),
         "a quote stands inside of a value; a value with quotes is quoted itself, and the inner ones are "
         "doubled");
}

void CsvRows::finish() {
  atEnd_ = true;
  const unsigned char* const open = parser_->state.entry_buf;
  const std::int64_t begun = line_ - lineBreaksIn(std::string(open, open + parser_->state.entry_pos));
  if (csv_fini(&parser_->state, Parser::takeValue, Parser::endRow, this) != 0)
    refuse(begun, nextColumn(), "the closing quote of the value is missing");
  if (parser_->failure) std::rethrow_exception(std::exchange(parser_->failure, nullptr));
}

std::string CsvRows::nextColumn() const { return std::to_string(count_ + 1); }

void CsvRows::add(std::string_view bytes) {
  if (count_ == mostColumns) refuse(line_, {}, "the row has more than 4096 columns");
  if (count_ == values_.size()) values_.emplace_back();
  CsvValue& value = values_[count_++];
  value.bytes.assign(bytes);
  value.line = line_ - lineBreaksIn(bytes);
}

std::string CsvRows::textOf(const CsvValue& value, std::string_view column) const {
  const std::string_view bytes = trimBlanks(value.bytes);
  if (isPlain(bytes)) return std::string(bytes);
  const bool utf8 = isUtf8(bytes);
  if (form_.encoding == Encoding::Utf8) {
    if (!utf8)
      refuse(value.line, column,
             "'" + printable(bytes) + "' is not UTF-8; is the file in another encoding, as windows-1252?");
    return std::string(bytes);
  }
  // No word of that code page looks like this.
  if (utf8) refuse(value.line, column, "'" + printable(bytes) + "' is UTF-8, but the map says windows-1252");
  for (const char c : {'\x81', '\x8D', '\x8F', '\x90', '\x9D'})
    if (bytes.find(c) != std::string_view::npos)
      refuse(value.line, column, "'" + printable(bytes) + "' holds a byte that windows-1252 does not define");
  return textFromCodePage(bytes);
}

} // namespace qx::convert
