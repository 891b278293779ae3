#include "app/ui/program_icon.h"

#include <QString>

namespace vel {

QIcon programIcon() {
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    icon.addFile(QStringLiteral(":/icon/vel-%1.png").arg(size));
  }
  return icon;
}

}  // namespace vel
