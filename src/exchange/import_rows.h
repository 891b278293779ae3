#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/result.h"
#include "core/text.h"
#include "exchange/import_bytes.h"

namespace vel {

/// The rows of a file, one after another.
class ImportRows {
 public:
  virtual ~ImportRows() = default;

  /// The fields of the next row, in UTF-8; false at the end. The views live until
  /// the next call. An Error has its message, which names the row.
  virtual Result<bool> next(std::vector<std::string_view>& fields) = 0;

  /// Of the file that has been read, 0 to 1.
  [[nodiscard]] virtual double progress() const = 0;
};

/// How the fields of a text file stand in it.
struct CsvDialect {
  char separator = ',';
  char quote = '"';                    ///< 0 for none: every quote is text
  bool backslashEscapes = false;       ///< within quotes, before a quote or itself
  const Encoding* encoding = nullptr;  ///< of the text; null for UTF-8
};

/// Rows of separated fields. A field that begins with the quote ends with one;
/// in between stand separators and line ends, and a quote is doubled. Rows end
/// with LF, CR LF or CR; empty ones are left out.
class CsvRows : public ImportRows {
 public:
  /// `begin` are bytes that were read before, of which the first row begins at
  /// the beginning. The encoding outlives the rows.
  CsvRows(std::unique_ptr<ImportBytes> bytes, std::string begin, const CsvDialect& dialect,
          const ImportLimits& limits);

  Result<bool> next(std::vector<std::string_view>& fields) override;
  [[nodiscard]] double progress() const override;

 private:
  enum class Cut { whole, needsMore, wrongQuotes };

  Result<bool> readOn();
  Cut cut(std::vector<std::string_view>& fields, std::size_t& end);
  Cut cutQuoted(std::size_t& at, std::vector<std::string_view>& fields);
  Result<bool> take(std::vector<std::string_view>& fields);
  [[nodiscard]] Error atRow(const std::string& english, std::string_view japanese) const;

  std::unique_ptr<ImportBytes> bytes_;
  std::string buffer_;
  std::size_t begin_ = 0;
  bool atEnd_ = false;
  CsvDialect dialect_;
  ImportLimits limits_;
  std::size_t row_ = 0;           // the number of the row at hand, from 1
  std::deque<std::string> made_;  // texts that do not stand in the buffer as they are
  std::size_t madeCount_ = 0;
};

/// The columns of one table of an SQLite database.
class DatabaseRows : public ImportRows {
 public:
  /// An Error with its message where another program has locked the database,
  /// where it is damaged, or where it has no such table or columns.
  static Result<std::unique_ptr<DatabaseRows>> open(const std::filesystem::path& file,
                                                    const std::string& table,
                                                    const std::vector<std::string>& columns,
                                                    const ImportLimits& limits);
  ~DatabaseRows() override;

  Result<bool> next(std::vector<std::string_view>& fields) override;
  [[nodiscard]] double progress() const override;

 private:
  struct Database;
  explicit DatabaseRows(std::unique_ptr<Database> database);
  std::unique_ptr<Database> database_;
};

}  // namespace vel
