// What the SU operations read of an input before they work on it: ns and dt
// of the first trace, and the trace count by the record size.
#pragma once

#include <cstdint>
#include <string>

#include "su/binary_file.h"

namespace tf {

// ns and dt (int16 at 114 and 116) of the first trace, through file
// `number`, which stays open. Failing statements are passed over: a missing
// or short file leaves the values as they were.
void read_first_ns_dt(FileTable& files, int number, const std::string& file, int16_t& ns, int16_t& dt);

// File length / record size, rounded half to even; the division by a zero
// record size fails with error 11.
int32_t traces_by_record_size(int64_t length, int64_t record_size);

// Traces gathered before a write: about 4 MB, so that the gathering buffer
// stays in the cache and is reused from write to write.
int32_t traces_per_write(int64_t record_size);

}  // namespace tf
