// zolmark-profiler: the desktop program of the Zolmark profiler's results.

#include "ui/app_main.h"

int main(int argc, char** argv) {
  return zol::runProfiler(argc, argv);
}
