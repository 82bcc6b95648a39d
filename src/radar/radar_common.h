// What the radar panels share: the header text beside a record, the
// time-zero shift of the samples, the overwrite question and the arrays that
// count from 1.
#pragma once

#include <climits>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "frame/conventions.h"
#include "frame/panel.h"
#include "su/su_record.h"

namespace tf::radar {

// Opens a record for reading only: a missing one is error 53, never a new
// empty file.
BinaryFile& open_existing(FileTable& files, int number, const std::string& name);

// The output dialog of the DZT and DT1 panels.
std::string su_file_dialog(Platform& platform);

inline constexpr const char* time_zero_tip = "Enter here the number of samples to remove from each trace";

// A name less its last three characters, plus `ending` (the header beside a
// record); a name shorter than three characters is error 5.
std::string beside(const std::string& name, const std::string& ending);

// The header text of a record (.HD, .rad) into the panel's text pane; true
// when it was there. A missing header leaves a line saying so and the fields
// as they stand.
bool show_header_text(Panel& panel, const std::string& pane, const std::string& header_name,
                      const std::string& record_name, const std::string& crlf);

// The number behind `key` in the header text into a field. A missing key
// beeps and leaves the field as it was.
void key_into_field(Panel& panel, Platform& platform, const std::string& header_text, const std::string& key,
                    const std::string& field);
// The same into a number; `value` is left when the key is missing.
void key_into_number(Platform& platform, const std::string& header_text, const std::string& key, double& value);

// An existing output: the question, and on Yes the file goes. On No it is
// written over in place and keeps any longer tail.
void offer_to_delete(Platform& platform, const std::string& name, const std::string& question);
inline constexpr const char* output_exists_question = "Output file name already exists, kill this file ?";

// A computed field value: past the range of its type it is the overflow
// error (6), as the platform's arithmetic raises it, and the field keeps its
// text.
template <typename T>
T finite(T value) {
  if (!std::isfinite(value)) throw RunTimeError(err::overflow);
  return value;
}

// An array of 1 .. n (index 0 unused, zero-filled); n below 1 is error 9,
// a trace longer than any radar writes (a garbled header) error 7, and the
// array then keeps its earlier size and values.
inline constexpr int64_t most_samples = int64_t{1} << 24;
template <typename T>
void size_from_one(std::vector<T>& values, int64_t n) {
  if (n < 1) throw RunTimeError(err::subscript);
  if (n > most_samples) throw RunTimeError(err::out_of_memory);
  values.assign(static_cast<size_t>(n) + 1, T{});
}
// Elements 1 .. n of such an array.
template <typename T>
size_t count_from_one(const std::vector<T>& values) {
  return values.empty() ? 0 : values.size() - 1;
}

// Where element 1 of such an array lies (the start of an empty one).
template <typename T>
T* from_one(std::vector<T>& values) {
  return values.empty() ? values.data() : values.data() + 1;
}

// Output places are 32-bit numbers: once trace `index` (from 0) of
// `record_bytes` lies past 2 GB, no later trace has a place either. The job
// ends there rather than turn over the last place for every trace left of an
// absurd count.
inline bool past_last_place(int64_t index, int64_t record_bytes) {
  return index * record_bytes > int64_t{INT32_MAX};
}

// Samples 1 .. n of a trace behind its header (nothing for an array never
// sized).
inline void put_samples(su::RecordImage& image, std::vector<float>& samples) {
  if (!samples.empty()) image.put_block(su::header_size, from_one(samples), count_from_one(samples));
}

// A radar line is one long run of traces: they go to the file 16 at a time,
// so that the gathered image stays small and its memory is reused.
inline void write_out_every_16(su::RecordImage& image, int64_t trace) {
  if (trace % 16 == 0) resume_next([&] { image.flush(); });
}

// The words that number trace i of a radar line: tracl, tracr, tracf and
// cdp i, fldr 1 (the whole line is one record).
void put_line_numbers(su::RecordImage& image, int32_t i);

// Output sample k = input sample k + time_zero - 1 for k from 1 to `last`,
// where both arrays hold the index; the other output samples keep their
// values. A time zero of 0 thus leaves the first sample as it was and the
// trace one sample late.
void shift_by_time_zero(const std::vector<int16_t>& input, std::vector<float>& output, int time_zero, int64_t last);

}  // namespace tf::radar
