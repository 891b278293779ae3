#include "exchange/list_saving.h"

#include <utility>

#include "core/csv_text.h"

namespace vel {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string inStationsEncoding(const Encoding& station, const std::string& text) {
  if (isAscii(text)) return text;
  if (auto bytes = station.encode(text)) return *std::move(bytes);
  std::string encoded;
  for (std::string_view rest = text; !rest.empty();) {
    const Character character = firstCharacter(rest);
    encoded += station.encode(rest.substr(0, character.size)).value_or("?");
    rest.remove_prefix(character.size);
  }
  return encoded;
}

// Text between tags. What no page may hold becomes U+FFFD.
std::string pageText(std::string_view text) {
  std::string page;
  for (const char c : text) {
    if (c == '&') {
      page += "&amp;";
    } else if (c == '<') {
      page += "&lt;";
    } else if (c == '>') {
      page += "&gt;";
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      page += "\xEF\xBF\xBD";
    } else {
      page += c;
    }
  }
  return page;
}

std::string pageRow(const std::vector<std::string>& cells, std::string_view element) {
  std::string row = "<tr>";
  for (const std::string& cell : cells) {
    row.append("<").append(element).append(">").append(pageText(cell));
    row.append("</").append(element).append(">");
  }
  return row + "</tr>\r\n";
}

}  // namespace

std::string listHead(ListFormat format, const Encoding& station, const ShownList& list) {
  if (format != ListFormat::html) {
    const std::string titles = listRow(format, station, list.columns);
    return format == ListFormat::spreadsheet ? std::string(kByteOrderMark) + titles : titles;
  }
  const std::string title = pageText(list.title);
  return "<!DOCTYPE html>\r\n<html>\r\n<head>\r\n<meta charset=\"utf-8\">\r\n<title>" + title +
         "</title>\r\n<style>table { border-collapse: collapse } th, td { border: 1px solid #aaa; "
         "padding: 1px 6px; text-align: left }</style>\r\n</head>\r\n<body>\r\n<h1>" +
         title + "</h1>\r\n<table>\r\n" + pageRow(list.columns, "th");
}

std::string listRow(ListFormat format, const Encoding& station,
                    const std::vector<std::string>& cells) {
  if (format == ListFormat::html) return pageRow(cells, "td");
  std::string row;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) row += ',';
    row += format == ListFormat::spreadsheet ? csvField(notAFormula(cells[i]))
                                             : inStationsEncoding(station, csvField(cells[i]));
  }
  return row + "\r\n";
}

std::string listEnd(ListFormat format) {
  return format == ListFormat::html ? "</table>\r\n</body>\r\n</html>\r\n" : "";
}

std::string reasonOf(const Error& error) {
  if (!error.message.empty()) return error.message;
  switch (error.number) {
    case ErrorNumber::fileNotFound:
      return "There is no such file. ファイルがありません。";
    case ErrorNumber::pathNotFound:
      return "There is no such folder. フォルダがありません。";
    case ErrorNumber::permissionDenied:
    case ErrorNumber::pathAccess:
      return "Access is denied, or another program holds the file. "
             "アクセスできないか、他のプログラムが使用中です。";
    case ErrorNumber::diskFull:
      return "The disk is full. ディスクの空き容量がありません。";
    default:
      return error.text();
  }
}

ListSaving::ListSaving(std::filesystem::path file, ListFormat format, const Encoding& station,
                       ShownList list)
    : path_(std::move(file)), format_(format), station_(station), list_(std::move(list)) {}

Result<JobProgress> ListSaving::step(Clock::time_point deadline) {
  if (!file_) {
    Result<WholeFile> created = WholeFile::create(path_, kSuffix);
    if (!created) return created.error();
    file_.emplace(*std::move(created));
    if (const Status status = file_->write(listHead(format_, station_, list_)); !status) {
      return status.error();
    }
  }
  // Looking at the clock for every row would cost as much as the row.
  constexpr std::size_t kRowsAtOnce = 64;
  while (next_ < list_.rows) {
    for (std::size_t i = 0; i < kRowsAtOnce && next_ < list_.rows; ++i, ++next_) {
      const Status status = file_->write(listRow(format_, station_, list_.cells(next_)));
      if (!status) return status.error();
    }
    if (Clock::now() >= deadline) return JobProgress::more;
  }
  Status status = file_->write(listEnd(format_));
  if (status) status = file_->finish();
  if (!status) return status.error();
  return JobProgress::done;
}

}  // namespace vel
