// su-info FILE: traces, ns and dt of an SU file, by the record rule.
#include <cstdint>
#include <iostream>

#include "frame/conventions.h"
#include "su/binary_file.h"
#include "su/su_record.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: su-info FILE.su\n";
    return 2;
  }
  try {
    tf::BinaryFile file;
    file.open(argv[1]);
    int16_t ns = 0, dt = 0;
    file.read_value(tf::su::word("ns").offset, ns);
    file.read_value(tf::su::word("dt").offset, dt);
    std::cout << "traces " << tf::su::trace_count(file.length(), ns) << ", ns " << ns << ", dt " << dt << "\n";
  } catch (const tf::RunTimeError& e) {
    std::cerr << "su-info: error " << e.number << "\n";
    return 1;
  }
  return 0;
}
