#include <QProcess>

#include "core/file.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

constexpr int kOpened = 42;
constexpr int kFileNotFound = 2;
constexpr int kNoProgram = 31;

}  // namespace

int openWithDesktop(const std::string& target) {
  const bool isAddress = target.find("://") != std::string::npos;
  if (!isAddress && !fileExists(toPath(target))) return kFileNotFound;
  const bool started =
      QProcess::startDetached(QStringLiteral("xdg-open"), {toQString(target)}, QStringLiteral("/"));
  return started ? kOpened : kNoProgram;
}

}  // namespace vel
