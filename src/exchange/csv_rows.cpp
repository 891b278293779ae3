#include <algorithm>
#include <utility>

#include "exchange/import_rows.h"

namespace vel {
namespace {

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    // Most text is ASCII.
    std::size_t ascii = 0;
    while (ascii < text.size() && static_cast<unsigned char>(text[ascii]) < 0x80) ++ascii;
    text.remove_prefix(ascii);
    if (text.empty()) return true;
    const Character character = firstCharacter(text);
    if (!character.wellFormed) return false;
    text.remove_prefix(character.size);
  }
  return true;
}

}  // namespace

CsvRows::CsvRows(std::unique_ptr<ImportBytes> bytes, std::string begin, const CsvDialect& dialect,
                 const ImportLimits& limits)
    : bytes_(std::move(bytes)), buffer_(std::move(begin)), dialect_(dialect), limits_(limits) {}

double CsvRows::progress() const {
  const auto size = static_cast<double>(bytes_->fileSize());
  return size > 0 ? std::min(1.0, static_cast<double>(bytes_->bytesRead()) / size) : 1.0;
}

Error CsvRows::atRow(const std::string& english, std::string_view japanese) const {
  const std::string row = std::to_string(row_);
  return importError("Row " + row + ": " + english,
                     std::string(row) + "行目: " + std::string(japanese));
}

Result<bool> CsvRows::readOn() {
  if (atEnd_) return false;
  buffer_.erase(0, std::exchange(begin_, 0));
  const Result<std::string_view> more = bytes_->next();
  if (!more) return more.error();
  atEnd_ = more->empty();
  buffer_.append(*more);
  return !atEnd_;
}

// A field in quotes that begins at `at`, which is left behind its closing quote.
CsvRows::Cut CsvRows::cutQuoted(std::size_t& at, std::vector<std::string_view>& fields) {
  const std::size_t start = ++at;
  std::string* made = nullptr;
  std::size_t copied = start;
  const auto keep = [&](std::size_t upTo) {
    if (made == nullptr) {
      if (madeCount_ == made_.size()) made_.emplace_back();
      made = &made_[madeCount_++];
      made->clear();
    }
    made->append(buffer_, copied, upTo - copied);
  };
  while (true) {
    const std::size_t place = dialect_.backslashEscapes
                                  ? buffer_.find_first_of(std::string{dialect_.quote, '\\'}, at)
                                  : buffer_.find(dialect_.quote, at);
    if (place == std::string::npos) return Cut::needsMore;
    const bool escapes = dialect_.backslashEscapes && buffer_[place] == '\\';
    if (place + 1 == buffer_.size() && (escapes || !atEnd_)) return Cut::needsMore;
    const char after = place + 1 < buffer_.size() ? buffer_[place + 1] : '\n';
    if (escapes) {
      const bool isEscape = after == dialect_.quote || after == '\\';
      if (isEscape) {
        keep(place);
        copied = place + 1;
      }
      at = place + (isEscape ? 2 : 1);
      continue;
    }
    if (after == dialect_.quote) {
      keep(place + 1);
      copied = at = place + 2;
      continue;
    }
    if (after != dialect_.separator && after != '\r' && after != '\n') return Cut::wrongQuotes;
    if (made != nullptr) {
      keep(place);
      fields.emplace_back(*made);
    } else {
      fields.emplace_back(buffer_.data() + start, place - start);
    }
    at = place + 1;
    return Cut::whole;
  }
}

// The row that begins at begin_, with where the next one begins.
CsvRows::Cut CsvRows::cut(std::vector<std::string_view>& fields, std::size_t& end) {
  fields.clear();
  madeCount_ = 0;
  const auto stopsAt = [this](char c) { return c == dialect_.separator || c == '\n' || c == '\r'; };
  for (std::size_t at = begin_;; ++at) {
    if (dialect_.quote != 0 && at < buffer_.size() && buffer_[at] == dialect_.quote) {
      if (const Cut cut = cutQuoted(at, fields); cut != Cut::whole) return cut;
    } else {
      std::size_t past = at;
      while (past < buffer_.size() && !stopsAt(buffer_[past])) ++past;
      if (past == buffer_.size() && !atEnd_) return Cut::needsMore;
      fields.emplace_back(buffer_.data() + at, past - at);
      at = past;
    }
    if (at < buffer_.size() && buffer_[at] == dialect_.separator) continue;
    // A CR may have an LF behind it.
    if (at + 1 >= buffer_.size() && !atEnd_) return Cut::needsMore;
    const bool two = at + 1 < buffer_.size() && buffer_[at] == '\r' && buffer_[at + 1] == '\n';
    end = std::min(at + (two ? 2 : 1), buffer_.size());
    return Cut::whole;
  }
}

Result<bool> CsvRows::take(std::vector<std::string_view>& fields) {
  while (true) {
    std::size_t end = 0;
    switch (cut(fields, end)) {
      case Cut::whole: {
        const bool isTooLong = end - begin_ > limits_.longestRow;
        begin_ = end;
        if (!isTooLong) return true;
        return atRow("it is longer than " + std::to_string(limits_.longestRow >> 20) +
                         " MiB, which is the limit.",
                     "長すぎます。");
      }
      case Cut::wrongQuotes:
        return atRow("a quote stands within a field, or is not closed.",
                     "引用符が正しくありません。");
      case Cut::needsMore:
        break;
    }
    if (buffer_.size() - begin_ > limits_.longestRow) {
      return atRow("it is longer than " + std::to_string(limits_.longestRow >> 20) +
                       " MiB, which is the limit.",
                   "長すぎます。");
    }
    const bool wasAtEnd = atEnd_;
    // A long row is looked at anew only when twice as much of it has come.
    const std::size_t had = buffer_.size() - begin_;
    do {
      if (const Result<bool> more = readOn(); !more) return more.error();
    } while (!atEnd_ && buffer_.size() < 2 * had && buffer_.size() <= limits_.longestRow);
    if (wasAtEnd) {
      return atRow("a quote is not closed; the file is cut off.",
                   "引用符が閉じていません。ファイルが途中で切れています。");
    }
  }
}

Result<bool> CsvRows::next(std::vector<std::string_view>& fields) {
  while (true) {
    if (begin_ == buffer_.size()) {
      const Result<bool> more = readOn();
      if (!more) return more.error();
      if (!*more) return false;
    }
    ++row_;
    if (row_ > limits_.mostRows + 1) {
      return importError("The file has more than " + std::to_string(limits_.mostRows) +
                             " rows, which is the limit.",
                         "行数が多すぎます。");
    }
    const Result<bool> taken = take(fields);
    if (!taken) return taken.error();
    if (fields.size() == 1 && fields[0].empty()) continue;
    for (std::string_view& field : fields) {
      if (isAscii(field)) continue;
      if (dialect_.encoding == nullptr) {
        if (isUtf8(field)) continue;
        return atRow("its text is not UTF-8.", "文字コードがUTF-8ではありません。");
      }
      std::string decoded = dialect_.encoding->decode(field);
      if (decoded.find("\xEF\xBF\xBD") != std::string::npos) {
        return atRow("its text is not in the station's encoding.", "文字コードが異なります。");
      }
      if (madeCount_ == made_.size()) made_.emplace_back();
      made_[madeCount_] = std::move(decoded);
      field = made_[madeCount_++];
    }
    return true;
  }
}

}  // namespace vel
