#pragma once

#include <QObject>
#include <QString>
#include <filesystem>
#include <string>

#include "core/desktop.h"

namespace vel {

/// The guide: F1 in any window of the program opens that window's page with the
/// desktop's browser, in the user's language where there is one.
class Help : public QObject {
  Q_OBJECT

 public:
  /// The desktop outlives the object. The language is a two-letter code.
  Help(Desktop& desktop, std::filesystem::path executableFolder, std::string language);

  /// "ja" where that is the session's language, else "en".
  [[nodiscard]] static std::string sessionLanguage();

  /// The page about a window ("acars"); the first page where it has none of its
  /// own.
  [[nodiscard]] static std::string pageOf(const QWidget& window);

  /// Opens a page; tells the user where that is not possible.
  void open(const std::string& page);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Desktop& desktop_;
  std::filesystem::path executableFolder_;
  std::string language_;
};

}  // namespace vel
