#include <cstdint>
#include <utility>

#include <sqlite3.h>

#include "core/file.h"
#include "exchange/import_rows.h"
#include "exchange/list_saving.h"

namespace vel {
namespace {

// So many steps of the database's machine give one row; a view or a trick of a
// hostile file that goes on and on is broken off.
constexpr int kStepsAtOnce = 1000;
constexpr int kMostSteps = 100'000;

Error databaseError(int code) {
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return importError("Another program has locked the database: close it and try again.",
                         "他のプログラムがデータベースを使用中です。");
    default:
      return importError(std::string("The database cannot be read: ") + sqlite3_errstr(code) + ".",
                         "データベースを読み込めません。");
  }
}

std::string quotedName(const std::string& name) { return '"' + name + '"'; }

}  // namespace

struct DatabaseRows::Database {
  Database() = default;
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() {
    sqlite3_finalize(rows);
    // Each has no result to use: what was only read is closed.
    sqlite3_close(handle);
  }

  /// Prepares a statement in place of the one before.
  int prepare(const std::string& sql) {
    sqlite3_finalize(std::exchange(rows, nullptr));
    return sqlite3_prepare_v2(handle, sql.c_str(), static_cast<int>(sql.size()), &rows, nullptr);
  }

  /// The number that the statement gives, or -1.
  std::int64_t number(const std::string& sql, int& code) {
    code = prepare(sql);
    if (code != SQLITE_OK) return -1;
    code = sqlite3_step(rows);
    return code == SQLITE_ROW ? sqlite3_column_int64(rows, 0) : -1;
  }

  static int tooLong(void* database) {
    return ++static_cast<Database*>(database)->steps > kMostSteps / kStepsAtOnce ? 1 : 0;
  }

  sqlite3* handle = nullptr;
  sqlite3_stmt* rows = nullptr;
  int columns = 0;
  std::int64_t inAll = 0;
  std::size_t row = 0;
  int steps = 0;
  ImportLimits limits;
};

DatabaseRows::DatabaseRows(std::unique_ptr<Database> database) : database_(std::move(database)) {}
DatabaseRows::~DatabaseRows() = default;

Result<std::unique_ptr<DatabaseRows>> DatabaseRows::open(const std::filesystem::path& file,
                                                         const std::string& table,
                                                         const std::vector<std::string>& columns,
                                                         const ImportLimits& limits) {
  auto database = std::make_unique<Database>();
  database->limits = limits;
  int code =
      sqlite3_open_v2(toUtf8(file).c_str(), &database->handle, SQLITE_OPEN_READONLY, nullptr);
  if (code != SQLITE_OK) return databaseError(code);
  sqlite3_extended_result_codes(database->handle, 0);
  // The file came from a stranger: it is data and nothing else.
  sqlite3_db_config(database->handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database->handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_limit(database->handle, SQLITE_LIMIT_LENGTH, static_cast<int>(limits.longestRow));

  const auto isTable = database->number(
      "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND lower(name) = lower('" + table +
          "') AND sql NOT LIKE 'CREATE VIRTUAL%'",
      code);
  if (code != SQLITE_ROW) return databaseError(code);
  if (isTable != 1) {
    return importError("The database has no table " + table + ".",
                       "データベースに必要な表がありません。");
  }
  const std::string countOf =
      "SELECT count(*) FROM pragma_table_info('" + table + "') WHERE lower(name) = lower('";
  std::string list;
  for (const std::string& column : columns) {
    std::string query = countOf;
    query.append(column).append("')");
    const auto has = database->number(query, code);
    if (code != SQLITE_ROW) return databaseError(code);
    if (has != 1) {
      std::string problem = "The database's table ";
      problem.append(table).append(" has no column ").append(column).append(".");
      return importError(std::move(problem), "データベースに必要な列がありません。");
    }
    list += (list.empty() ? "" : ", ") + quotedName(column);
  }
  database->inAll = database->number("SELECT max(rowid) FROM " + quotedName(table), code);
  if (code != SQLITE_ROW) return databaseError(code);
  code = database->prepare("SELECT " + list + " FROM " + quotedName(table));
  if (code != SQLITE_OK) return databaseError(code);
  database->columns = static_cast<int>(columns.size());
  sqlite3_progress_handler(database->handle, kStepsAtOnce, &Database::tooLong, database.get());
  return std::unique_ptr<DatabaseRows>(new DatabaseRows(std::move(database)));
}

Result<bool> DatabaseRows::next(std::vector<std::string_view>& fields) {
  fields.clear();
  database_->steps = 0;
  const int code = sqlite3_step(database_->rows);
  if (code == SQLITE_DONE) return false;
  if (code != SQLITE_ROW) return databaseError(code);
  if (++database_->row > database_->limits.mostRows) {
    return importError("The file has more than " + std::to_string(database_->limits.mostRows) +
                           " rows, which is the limit.",
                       "行数が多すぎます。");
  }
  for (int column = 0; column < database_->columns; ++column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(database_->rows, column));
    const int size = sqlite3_column_bytes(database_->rows, column);
    fields.emplace_back(text == nullptr ? "" : text,
                        text == nullptr ? 0U : static_cast<std::size_t>(size));
  }
  return true;
}

double DatabaseRows::progress() const {
  if (database_->inAll <= 0) return 1;
  const double part = static_cast<double>(database_->row) / static_cast<double>(database_->inAll);
  return part < 1 ? part : 1;
}

}  // namespace vel
