// Synthetic field records of the exact layouts the importers read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tf::gen {

// A shot gather: quiet noise, then a wavelet at a first arrival that moves
// out with the channel, deterministic for a record and channel.
int16_t gather_sample(int record, int channel, int sample);

struct Es1225Layout {
  int channels = 12;
  int samples = 1000;
  int header = 512;  // file header bytes; the importer does not read it
};

// The bytes of one ES-1225 record.
std::vector<uint8_t> es1225_record(int record, const Es1225Layout& layout);
// Writes record `record` as FOLDER/recNNN.dat and gives its path.
std::string write_es1225(const std::string& folder, int record, const Es1225Layout& layout);

struct AbemLayout {
  int channels = 24;
  int samples = 1024;
  int rate_code = 4;  // header line 11; 4 stands for 500 microseconds
};

// The bytes of one ABEM Mark 3 record: a 2048-byte header of text lines
// ended by CR LF (line 1 holds the name, line, date and time fields at bytes
// 0, 15, 23 and 31; line 11 the sample-rate code; line 113 the channels),
// then each channel's int16 samples, channel after channel.
std::vector<uint8_t> abem_record(int record, const AbemLayout& layout);
// Writes record `record` as FOLDER/recNNN.abm and gives its path.
std::string write_abem(const std::string& folder, int record, const AbemLayout& layout);

// Writes FOLDER/recNNN.EXT with `bytes` and gives its path.
std::string write_record(const std::string& folder, int record, const char* extension, const std::vector<uint8_t>& bytes);

}  // namespace tf::gen
