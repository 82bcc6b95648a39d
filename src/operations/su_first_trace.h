// What the SU operations read of an input before they work on it: ns and dt
// of the first trace, and the trace count by the record size.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "su/binary_file.h"

namespace tf {

// ns and dt (int16 at 114 and 116) of the first trace, through file
// `number`, which stays open. Failing statements are passed over: a missing
// or short file leaves the values as they were.
void read_first_ns_dt(FileTable& files, int number, const std::string& file, int16_t& ns, int16_t& dt);

// File length / record size, rounded half to even; the division by a zero
// record size fails with error 11.
int32_t traces_by_record_size(int64_t length, int64_t record_size);

// Reads of a file that walks forward through its traces, served from a
// window of a few MB read at once. Each read gives what BinaryFile::read_at
// gives: the bytes inside the file, the rest of the buffer left as it was.
// A file number that is not open fails each read with error 52.
class ForwardReader {
 public:
  ForwardReader(FileTable& files, int number) : files_(files), number_(number) {}
  void read_at(int64_t pos, void* data, size_t size);
  template <typename T>
  void read_block(int64_t pos, std::vector<T>& values) { read_at(pos, values.data(), values.size() * sizeof(T)); }

 private:
  FileTable& files_;
  int number_;
  std::vector<uint8_t> window_;
  int64_t start_ = 0;
};

// Traces gathered before a write: about 4 MB, so that the gathering buffer
// stays in the cache and is reused from write to write.
int32_t traces_per_write(int64_t record_size);

}  // namespace tf
