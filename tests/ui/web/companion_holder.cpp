// Holds the companion service as the program does, says its address, and waits
// to be killed, or for a line on its standard input to end as programs do.
#include <QCoreApplication>
#include <cstdio>
#include <string>

#include "core/file.h"
#include "web/ui/companion.h"

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc != 3) return 2;
  vel::Companion companion(vel::Folders::of(vel::toPath(argv[2])), QString::fromLocal8Bit(argv[1]));
  bool said = false;
  companion.request(&companion, [&said](const std::string& address) {
    said = std::printf("%s\n", address.c_str()) > 0 && std::fflush(stdout) == 0;
    QCoreApplication::quit();
  });
  QCoreApplication::exec();
  if (!said) return 1;
  std::getchar();
  return 0;
}
