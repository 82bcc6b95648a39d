// tracefold-batch FILE.bat: runs a batch file of Seismic Unix command lines.
#include <iostream>

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: tracefold-batch FILE.bat\n";
    return 2;
  }
  std::cerr << "tracefold-batch: not built yet\n";
  return 1;
}
