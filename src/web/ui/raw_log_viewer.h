#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>
#include <filesystem>
#include <memory>
#include <string>

#include "core/context.h"
#include "core/ui/outer_placement.h"
#include "web/raw_log.h"
#include "web/ui/findable_text.h"
#include "web/ui/kml_export.h"

namespace vel {

class WebAccess;

/// The window with the raw message log of one aircraft. It is made once; each
/// look-up sets another path and shows it again. The file is read afresh
/// whenever the window is activated, and its raw text goes to the KML export.
class RawLogViewer : public QWidget {
  Q_OBJECT

 public:
  /// The program and the web access outlive the window.
  RawLogViewer(const Context& context, WebAccess& web);
  ~RawLogViewer() override;

  /// Reads this log and shows the window, in front. Where there is no such
  /// file, says so and closes the window.
  void showLog(const std::filesystem::path& file);

  /// Takes the window's place from the settings.
  void Form_Load();
  /// Reads the log again; closes the window when it is gone.
  void Form_Activate();
  void Form_Resize();
  /// Gives a running export up, and the window's place to the settings.
  void Form_Unload();
  /// The KML export.
  void Command1_Click();
  /// Close.
  void Command2_Click();
  /// Gives the export up.
  void Command3_Click();

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
  /// False when there is no such file.
  bool load();
  void sayNotFound();
  void recordPlace();
  void showProgress(qint64 done, qint64 total);
  void showExportRunning(bool running);

  const Context& context_;
  std::filesystem::path path_;
  RawLog log_;
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
  QElapsedTimer sinceShowLog_;
  bool loading_ = false;
};

/// The one raw log viewer that both browsers use; closed before the settings
/// are saved.
class RawLogs {
 public:
  RawLogs(const Context& context, WebAccess& web);
  RawLogs(const RawLogs&) = delete;
  RawLogs& operator=(const RawLogs&) = delete;

  /// Opens the raw log of that name (the registration, or what stands in
  /// column 3), whatever the letter case of its file. A name that would leave
  /// the folder counts as having none.
  void open(const std::string& name);

  /// Closes the viewer, which gives its place to the settings.
  void close();

  /// The viewer, null before the first use.
  [[nodiscard]] RawLogViewer* viewer() const { return viewer_.get(); }

 private:
  const Context& context_;
  WebAccess& web_;
  std::unique_ptr<RawLogViewer> viewer_;
};

}  // namespace vel
