// Synthetic records of the Bison 5000, Ambrogeo and PASI LCM-12 recorders.
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

struct AmbrogeoLayout {
  int channels = 24;
  int samples = 500;
  int interval_us = 250;
  int day_code = 4;           // characters 5 and 6 of the date line
  std::string year = "  03";  // the date line's last four characters
  int hour = 14, minute = 35;
};
// The value of column `column` (from 1) of row `row` (from 1): the gather for
// the channels, a marker for the columns past them.
int16_t ambrogeo_value(int record, int column, int row, const AmbrogeoLayout& layout);
// The text of one Ambrogeo record: 37 header lines (5 date, 6 time, 8
// channels, 9 samples, 11 recording time in ms, 14 to 37 one a column),
// then `samples` rows of 24 numbers separated by blanks.
std::string ambrogeo_record(int record, const AmbrogeoLayout& layout);
std::string write_ambrogeo(const std::string& folder, int record, const AmbrogeoLayout& layout);

struct PasiLayout {
  int channels = 12;
  int samples = 512;
};
// Sample `sample` (from 0) of a channel: the gather halved, so that every
// other value ends in .5.
double pasi_value(int record, int channel, int sample);
// The text of one PASI record: no header, the values of channel 1, then of
// channel 2 ..., eight to a line separated by commas.
std::string pasi_record(int record, const PasiLayout& layout);
std::string write_pasi(const std::string& folder, int record, const PasiLayout& layout);

}  // namespace tf::gen
