#pragma once

#include <QDialog>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <filesystem>
#include <functional>
#include <optional>

#include "app/ui/choice_button.h"

namespace vel {

/// Asks for the station of a program beside which none lies: the decoder's own
/// folder, a sample station made on the spot, or a new empty one. Accepted once
/// there is one, with all that a station needs.
class FirstStartDialog : public QDialog {
  Q_OBJECT

 public:
  /// Asks the user for a folder; an empty text where he names none.
  using ChooseFolder = std::function<QString(QWidget* parent, const QString& title)>;

  struct Choices {
    /// The program that makes a sample station; without it none is offered.
    std::optional<std::filesystem::path> sampleMaker;
    /// Where a sample station is made.
    std::filesystem::path sampleParent;
    /// The station that was chosen last and is gone; empty for none.
    std::filesystem::path missing = {};
    ChooseFolder chooseFolder = askForFolder;
  };

  explicit FirstStartDialog(Choices choices, QWidget* parent = nullptr);
  ~FirstStartDialog() override;

  /// The chosen station's program folder, once accepted.
  [[nodiscard]] const std::filesystem::path& programFolder() const { return programFolder_; }

  /// The desktop's own dialog for folders.
  static QString askForFolder(QWidget* parent, const QString& title);

 private:
  ChoiceButton* addChoice(const QString& name, const QString& english, const QString& japanese,
                          const QString& explanation);
  void openDecoderFolder();
  void makeSample();
  void makeEmpty();
  void finishSample(bool made);
  [[nodiscard]] bool agreesToEmptyTables(const std::vector<std::string>& missing);
  void finish(const std::filesystem::path& programFolder);
  void tell(const QString& text);

  Choices choices_;
  std::filesystem::path programFolder_;
  std::filesystem::path sample_;  // the base folder being made
  QProcess maker_;
  QLabel* note_;
  QProgressBar* progress_;
  QWidget* buttons_;
};

}  // namespace vel
