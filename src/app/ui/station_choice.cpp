#include "app/ui/station_choice.h"

#include <QStandardPaths>

#include "app/installed_files.h"
#include "app/station.h"
#include "app/ui/first_start_dialog.h"
#include "core/file.h"
#include "core/platform.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

fs::path userFolder(QStandardPaths::StandardLocation location) {
  return toPath(QStandardPaths::writableLocation(location).toStdString());
}

}  // namespace

std::optional<fs::path> chooseProgramFolder(const Options& options, Desktop& desktop) {
  if (!options.programFolder.empty()) return options.programFolder;
  const fs::path own = platform::executableFolder();
  const fs::path note = userFolder(QStandardPaths::AppConfigLocation) / "station";
  const auto remembered = rememberedStation(note);
  if (!options.chooseStation) {
    if (isProgramFolder(own)) return own;
    if (remembered && isProgramFolder(*remembered)) return remembered;
  }
  if (!options.screenshot.empty()) {
    desktop.showMessage("No station is known: name its program folder with --program-folder.");
    desktop.endProgram(1);
    return std::nullopt;
  }
  FirstStartDialog dialog(
      {.sampleMaker = sampleMaker(own),
       .sampleParent = userFolder(QStandardPaths::DocumentsLocation),
       .missing = remembered && !isProgramFolder(*remembered) ? *remembered : fs::path()});
  if (dialog.exec() != QDialog::Accepted) {
    desktop.endProgram(0);
    return std::nullopt;
  }
  if (const Status status = rememberStation(note, dialog.programFolder()); !status) {
    desktop.showMessage("Can't remember the station. 受信局を記憶できませんでした。\n" +
                        toUtf8(note) + ": " + status.error().text());
  }
  return dialog.programFolder();
}

}  // namespace vel
