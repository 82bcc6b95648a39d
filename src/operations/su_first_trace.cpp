#include "operations/su_first_trace.h"

#include <algorithm>

#include "frame/conventions.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

void read_first_ns_dt(FileTable& files, int number, const std::string& file, int16_t& ns, int16_t& dt) {
  resume_next([&] {
    if (file.empty()) throw RunTimeError(err::bad_file_name);
    files.open(number, native_path(file));
  });
  resume_next([&] { files[number].read_value(su::word("ns").offset, ns); });
  resume_next([&] { files[number].read_value(su::word("dt").offset, dt); });
}

int32_t traces_by_record_size(int64_t length, int64_t record_size) {
  if (record_size == 0) throw RunTimeError(err::division_by_zero);
  return to_i32(static_cast<double>(length) / static_cast<double>(record_size));
}

int32_t traces_per_write(int64_t record_size) {
  constexpr int64_t write_size = 4 << 20;
  return static_cast<int32_t>(std::max<int64_t>(1, write_size / std::max<int64_t>(1, record_size)));
}

}  // namespace tf
