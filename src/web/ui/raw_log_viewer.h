#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "core/context.h"
#include "core/job.h"
#include "core/ui/outer_placement.h"
#include "web/raw_log.h"
#include "web/ui/findable_text.h"
#include "web/ui/kml_export.h"

namespace vel {

class OwnSite;

/// The window with the raw message log of one aircraft. It is made once; each
/// look-up sets another path and shows it again. The file is read afresh
/// whenever the window is activated, and its raw text goes to the KML export.
class RawLogViewer : public QWidget {
  Q_OBJECT

 public:
  /// The context and the site outlive the window.
  RawLogViewer(const Context& context, OwnSite& site);
  ~RawLogViewer() override;

  /// Shows the window, in front, and reads this log. Where there is no such
  /// file, says so and closes the window.
  void showLog(const std::filesystem::path& file);

  /// Goes to a message of the log that is being read, counted from 0, once it is
  /// shown. Nothing where what is shown of the log ends before it.
  void goToMessage(std::size_t message) { wantedMessage_ = message; }

  /// Says that a folder has no log of that name, and closes the window. The
  /// name is only text: it need not be one that a file can have.
  void showMissingLog(const std::filesystem::path& folder, const std::string& name);

  /// The lines of the file that were read, each ended by CR LF, as bytes.
  [[nodiscard]] const std::string& rawText() const { return log_.rawText; }
  [[nodiscard]] KmlExport& kmlExport() { return *export_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  /// Where the focus is, and whether coming back from there is an activation.
  enum class Focus { here, ownDialog, elsewhere };

  QWidget* makeButtonFrame();
  void focusMoved(const QWindow* focused);
  /// Reads the log again, as each activation does; closes the window when the
  /// file is gone.
  void readAgain();
  /// False when there is no such file; the window is closed then.
  bool read();
  void takeRead(const Status& outcome);
  /// Says beside the buttons which part of the log is shown, if not all of it.
  void showExtent(bool hasNoMessage);
  void showWantedMessage();
  void showMissing();
  void takePlaceFromSettings();
  void givePlaceToSettings();
  void recordPlace();
  void layOutFrames();
  /// Starts the export once the log has been read.
  void exportLog();
  void showProgress(qint64 done, qint64 total);
  void showExportRunning(bool running);

  const Context& context_;
  std::filesystem::path path_;
  RawLog log_;
  RawLog read_;  // by the job that runs
  JobSlot reading_;
  JobSlot filling_;
  bool exportWhenRead_ = false;
  std::optional<std::size_t> wantedMessage_;
  FindableText* text_;      // Text1
  QWidget* buttons_;        // Frame1
  QPushButton* sendToMap_;  // Command1
  QLabel* shortened_;       // Label1
  QProgressBar* progress_;  // ProgressBar1
  QPushButton* cancel_;     // Command3
  KmlExport* export_;
  OuterPlacement* placement_;
  NormalPlace normalPlace_;
  Focus focus_ = Focus::elsewhere;
  std::optional<std::chrono::steady_clock::time_point> shownAt_;
};

}  // namespace vel
