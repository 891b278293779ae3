#include "exchange/import_command.h"

#include <chrono>
#include <thread>

#include "core/file.h"
#include "core/program_files.h"
#include "core/services.h"
#include "exchange/list_saving.h"
#include "tables/rewrite.h"

namespace vel {
namespace {

// How long another program's rewrite is waited for.
constexpr std::chrono::milliseconds kPatience{1000};
constexpr std::chrono::milliseconds kShortWait{2};

void say(std::FILE* to, const std::string& text) { std::fputs((text + "\n").c_str(), to); }

std::string counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

// "" or why the table was not written.
std::string write(const Folders& folders, const Encoding& encoding, const TablePlan& plan) {
  if (const Status made = makeMissingTable(folders, plan.table()); !made) {
    return reasonOf(made.error());
  }
  ReferenceTableRewrite rewrite(folders, encoding, plan.records);
  const auto patience = std::chrono::steady_clock::now() + kPatience;
  while (true) {
    switch (rewrite.next()) {
      case RewriteOutcome::more:
        break;
      case RewriteOutcome::done:
        return {};
      case RewriteOutcome::refused:
        return kIllegalCharacter;
      case RewriteOutcome::busy:
        if (std::chrono::steady_clock::now() > patience) return kTableHeld;
        std::this_thread::sleep_for(kShortWait);
        break;
      case RewriteOutcome::held:
        return kTableHeld;
      case RewriteOutcome::failed:
        return rewrite.error().text();
    }
  }
}

}  // namespace

std::optional<Table> tableNamed(std::string_view name) {
  for (const Table table : kTables) {
    if (equalIgnoringCase(tableName(table), name)) return table;
  }
  return std::nullopt;
}

std::string planText(const ImportPlan& plan) {
  std::string text = nameOf(plan.format) + ": " + counted(plan.rows, "row", "rows") + " read";
  if (plan.unusable > 0) text += ", " + std::to_string(plan.unusable) + " without a record";
  if (plan.altered > 0) {
    text += ", " + counted(plan.altered, "text", "texts") + " made storable";
  }
  if (plan.unstorable > 0) text += ", " + std::to_string(plan.unstorable) + " not storable";
  for (const TablePlan& table : plan.tables) {
    text += "\n" + tableName(table.table()) + ".csv: " + std::to_string(table.fresh) + " new, " +
            counted(table.differences.size(), "differs", "differ") + ", " +
            std::to_string(table.same) + " the same";
  }
  return text;
}

Status makeMissingTable(const Folders& folders, Table table) {
  const TableFiles files = filesOf(folders, table);
  if (fileExists(files.live)) return {};
  recoverTables(folders);
  // Another program may be between its renames at this moment.
  const std::optional<FolderLock> lock = waitForLock(files);
  if (!lock) return Error{ErrorNumber::permissionDenied, kTableHeld};
  if (fileExists(files.live)) return {};
  std::error_code error;
  // Whatever else stands there is not taken away.
  if (std::filesystem::exists(std::filesystem::symlink_status(files.live, error))) {
    return ErrorNumber::permissionDenied;
  }
  Result<OutputFile> made = OutputFile::create(files.live);
  return made ? made->finish() : Status(made.error());
}

int runImport(const Folders& folders, const ImportCommand& command, std::FILE* out,
              std::FILE* errors) {
  const Result<Encoding> encoding = Services::load(servicesFile(folders)).textEncoding();
  if (!encoding) {
    say(errors, encoding.error().text());
    return 1;
  }
  recoverTables(folders);
  ImportPlanning planning(folders, *encoding, command.file, command.wish);
  while (true) {
    const auto deadline = Job::Clock::now() + std::chrono::seconds(1);
    const Result<JobProgress> progress = planning.step(deadline);
    if (!progress) {
      say(errors, "vel: " + toUtf8(command.file) + ": " + reasonOf(progress.error()));
      return 1;
    }
    if (*progress == JobProgress::done) break;
  }
  const ImportPlan& plan = planning.plan();
  say(out, planText(plan));
  if (command.dryRun) {
    say(out, "Nothing was written.");
    return 0;
  }
  for (const TablePlan& table : plan.tables) {
    const std::size_t records = table.written();
    if (records > 0) {
      const std::string problem = write(folders, *encoding, table);
      if (!problem.empty()) {
        say(errors, "vel: " + tableName(table.table()) + ".csv: " + problem);
        return 1;
      }
    }
    say(out,
        tableName(table.table()) + ".csv: " + counted(records, "record", "records") + " written");
  }
  return 0;
}

}  // namespace vel
