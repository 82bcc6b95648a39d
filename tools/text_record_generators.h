// Synthetic ASCII matrices, one-trace text files and OYO McSEIS 170 records,
// of the exact layouts their importers read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tf::gen {

// The value of sample s (from 0) of trace t (from 1) in the text files: a
// shot gather, lifted into unsigned 16-bit values for radar text.
int text_sample(int trace, int sample, bool radar);

struct AsciiMatrixLayout {
  int traces = 24;
  int samples = 512;
  bool radar = false;  // values of an exported DZT file: 0 to 65535
};

// One row a time sample, one column a trace, commas between the columns
// and CR LF after each row.
std::string ascii_matrix(const AsciiMatrixLayout& layout);
// Writes the matrix as FOLDER/recNNN.TXT and gives its path.
std::string write_ascii_matrix(const std::string& folder, int record, const AsciiMatrixLayout& layout);

// The head of a GSSI DZT file as the radar option of the matrix importer
// reads it: samples a scan at 4, a float32 at 10 whose 1000 / value is the
// rate, scans at 52. 1024 bytes, the rest zero.
std::vector<uint8_t> dzt_head(int samples, float rate_divisor, int scans);
// Writes it beside a matrix: the matrix name with extension DZT.
std::string write_dzt_beside(const std::string& matrix_path, int samples, float rate_divisor, int scans);

// One trace a file, one value a line ended by CR LF, as FOLDER/recNNN.txt.
std::string ascii_trace(int trace, int samples);
std::string write_ascii_trace(const std::string& folder, int trace, int samples);

enum class OyoSamples { long_integer, short_integer, floating };

struct OyoLayout {
  int channels = 24;
  int samples = 1024;
  std::string interval_ms = "0.250";  // five characters at 2875
  OyoSamples type = OyoSamples::long_integer;
  int delay = 0;
  int low_cut = 10, high_cut = 250, notch = 50;
  int first_position = 1200, second_position = 3400, third = 77, fourth = 88;
};

// The text header columns of an OYO record (bytes 2816 to 2932) in a
// 6144-byte header of blanks, then the channels at four bytes a sample. Short
// integers fill the first half of their channel's bytes; the second half
// holds 0x7777, so that a reader with a two-byte stride shows itself.
std::vector<uint8_t> oyo_record(int record, const OyoLayout& layout);
// Writes record `record` as FOLDER/recNNN.org and gives its path.
std::string write_oyo(const std::string& folder, int record, const OyoLayout& layout);

// Byte offsets of the OYO header columns and of the traces.
inline constexpr int oyo_trace_data = 6144;

}  // namespace tf::gen
