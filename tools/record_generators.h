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

}  // namespace tf::gen
