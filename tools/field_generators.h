// Synthetic records of the Bison 5000 and Ambrogeo recorders.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tf::gen {

struct BisonLayout {
  int channels = 12;
  int samples = 1000;
  double interval_ms = 0.5;
  bool odd_header = false;  // one byte more before the ETX pair: it falls on an odd offset
};

// The gain word of group g (0 from the start of a channel): -2, 0 and -1 in turn.
int16_t bison_gain(int group);
// Words of a channel: round(samples x 1.25), every fifth a gain word.
int bison_words(int samples);
// The bytes of one Bison 5000 record: header lines ended by CR LF at even
// offsets (line 14 channels, 16 samples, 17 interval in ms), ETX ETX, then
// each channel's words.
std::vector<uint8_t> bison_record(int record, const BisonLayout& layout);
// The header's size: the offset of the first data byte.
size_t bison_header_size(const BisonLayout& layout);
std::string write_bison(const std::string& folder, int record, const BisonLayout& layout);

}  // namespace tf::gen
