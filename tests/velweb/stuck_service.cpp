// Stands for a velweb whose connections never close.

#include <cstdio>
#include <cstdlib>

#include "velweb/process.h"

int main() {
  vel::endWithParent([] { vel::waitForever(); });
  if (std::puts("http://127.0.0.1:1") < 0 || std::fflush(stdout) != 0) return EXIT_FAILURE;
  vel::waitForever();
}
