#include "operations/su_first_trace.h"

#include <algorithm>
#include <cstring>

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

void ForwardReader::read_at(int64_t pos, void* data, size_t size) {
  constexpr size_t window_size = 4 << 20;
  BinaryFile& file_ = files_[number_];
  const int64_t end = pos + static_cast<int64_t>(size);
  const int64_t inside_end = std::min(end, file_.length());
  if (size > window_size || pos < 0) return file_.read_at(pos, data, size);
  if (pos < start_ || inside_end > start_ + static_cast<int64_t>(window_.size())) {
    start_ = pos;
    window_.resize(static_cast<size_t>(std::max<int64_t>(0, std::min<int64_t>(window_size, file_.length() - pos))));
    file_.read_at(pos, window_.data(), window_.size());
  }
  if (inside_end > pos) std::memcpy(data, window_.data() + (pos - start_), static_cast<size_t>(inside_end - pos));
}

int32_t traces_per_write(int64_t record_size) {
  constexpr int64_t write_size = 4 << 20;
  return static_cast<int32_t>(std::max<int64_t>(1, write_size / std::max<int64_t>(1, record_size)));
}

}  // namespace tf
