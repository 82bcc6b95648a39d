#include "operations/su_traces.h"

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

void convert_records(FileTable& files, int input, int output, int32_t traces, int64_t in_record, int64_t out_record,
                     const RecordBuffers& b, const std::function<void(const void*)>& convert) {
  int64_t length = 0;
  bool apart = false;
  resume_next([&] {
    length = files[input].length();
    apart = files[input].path() != files[output].path();
  });
  const int32_t whole = static_cast<int32_t>(std::min<int64_t>(traces, in_record > 0 ? length / in_record : 0));
  // Whole records by blocks, converted where they lie; between two files the
  // next block is read while this one is converted and written.
  std::vector<uint8_t> in_blocks[2], out_block;
  auto read = [&](int32_t first, int32_t count, int slot) {
    in_blocks[slot].resize(static_cast<size_t>(count * in_record));
    resume_next([&] { files[input].read_at((first - 1) * in_record, in_blocks[slot].data(), in_blocks[slot].size()); });
  };
  auto work = [&](int32_t first, int32_t count, int slot) {
    out_block.resize(static_cast<size_t>(count * out_record));
    const uint8_t* from = in_blocks[slot].data();
    for (int32_t j = 0; j < count; ++j, from += in_record) {
      convert(from + su::header_size);
      uint8_t* to = out_block.data() + j * out_record;
      std::memcpy(to, from, su::header_size);
      std::memcpy(to + su::header_size, b.samples_out, b.out_bytes);
    }
    from -= in_record;
    std::memcpy(b.header, from, su::header_size);
    std::memcpy(b.samples_in, from + su::header_size, b.in_bytes);
    resume_next([&] { files[output].write_at((first - 1) * out_record, out_block.data(), out_block.size()); });
  };
  read_blocks_ahead(whole, traces_per_write(in_record), apart, read, work);
  int32_t k = whole + 1;
  for (; k <= traces; ++k) {
    resume_next([&] { files[input].read_at((k - 1) * in_record, b.header, su::header_size); });
    resume_next([&] { files[input].read_at((k - 1) * in_record + su::header_size, b.samples_in, b.in_bytes); });
    convert(b.samples_in);
    resume_next([&] { files[output].write_at((k - 1) * out_record, b.header, su::header_size); });
    resume_next([&] { files[output].write_at((k - 1) * out_record + su::header_size, b.samples_out, b.out_bytes); });
  }
}

int32_t traces_per_write(int64_t record_size) {
  constexpr int64_t write_size = 4 << 20;
  return static_cast<int32_t>(std::max<int64_t>(1, write_size / std::max<int64_t>(1, record_size)));
}

}  // namespace tf
