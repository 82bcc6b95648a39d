// Synthetic records for the generic binary importer and the Dolang importer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tf::gen {

enum class SampleType { i16, i32, f32 };

// A regular binary record: a file header, then per channel a trace header
// and its samples.
struct BinaryLayout {
  int channels = 3;
  int samples = 1000;
  int file_header = 512;
  int trace_header = 64;
  SampleType type = SampleType::i32;
  bool big_endian = false;
};

int sample_width(SampleType type);
// The value of a sample as the record holds it (before any byte swap): the
// shot gather, scaled to the type's range.
double binary_sample(int record, int channel, int sample, SampleType type);
// The bytes of one record: file header bytes 'F', trace header bytes 'T'.
std::vector<uint8_t> binary_record(int record, const BinaryLayout& layout);
// Writes record `record` as FOLDER/recNNN.bin and gives its path.
std::string write_binary(const std::string& folder, int record, const BinaryLayout& layout);

// A Dolang shot: channel files shotNNN.A01, .A02 ... with the samples as
// text, one a line, and the info file shotNNN.ADT.
struct DolangLayout {
  int channels = 24;
  int samples = 1000;
  int dt = 500;  // microseconds
};

// Sample `sample` (from 0) of a channel as the channel file writes it.
double dolang_sample(int shot, int channel, int sample);
std::string dolang_channel_text(int shot, int channel, const DolangLayout& layout);
// The info file: tokens separated by commas and line ends; token 5 the
// channels, 6 the records, 8 the recording time (ms), 9 the samples.
std::string dolang_adt_text(const DolangLayout& layout);
// Writes the channel files and the info file of shot `shot`; gives the
// info file's path.
std::string write_dolang(const std::string& folder, int shot, const DolangLayout& layout);
// The name of a channel file of a shot, "shot001.A07".
std::string dolang_channel_name(int shot, int channel);

}  // namespace tf::gen
