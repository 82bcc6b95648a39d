// What the SU operations share: ns and dt of the first trace, the trace
// count by the record size, and the rewriting of every record of a file.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "su/binary_file.h"

// A sample loop built for the wider vectors too (where the compiler can),
// the one the processor has chosen when the program starts. Not under the
// sanitizers: their checks in the chooser run before they are set up.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__linux__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define VECTOR_CLONES
#endif

namespace tf {

// ns and dt (int16 at 114 and 116) of the first trace, through file
// `number`, which stays open. Failing statements are passed over: a missing
// or short file leaves the values as they were.
void read_first_ns_dt(FileTable& files, int number, const std::string& file, int16_t& ns, int16_t& dt);

// File length / record size, rounded half to even; the division by a zero
// record size fails with error 11.
int32_t traces_by_record_size(int64_t length, int64_t record_size);

// Where a record of one file is rewritten into another: its header, its
// samples as read and its samples as written. After a rewrite they hold the
// last record, as a walk record by record leaves them.
struct RecordBuffers {
  void* header;
  void* samples_in;
  size_t in_bytes;
  const void* samples_out;
  size_t out_bytes;
};

// Records 1 to `traces` of file `input` read, converted (`convert` is given
// the samples as read and fills the samples to write) and written to file
// `output` with their headers, record k at (k - 1) times the record size of
// each file. Whole records go by blocks of about 4 MB, one read and one
// write a block; a record that the count reaches past the end is read as far
// as the file goes. Failing reads and writes are passed over.
void convert_records(FileTable& files, int input, int output, int32_t traces, int64_t in_record, int64_t out_record,
                     const RecordBuffers& buffers, const std::function<void(const void* samples)>& convert);

// Traces gathered before a write: about 4 MB, so that the gathering buffer
// stays in the cache and is reused from write to write.
int32_t traces_per_write(int64_t record_size);

}  // namespace tf
