#include "tools/field_generators.h"

#include <cmath>
#include <cstring>

#include "tools/record_generators.h"

namespace tf::gen {

int16_t bison_gain(int group) {
  static constexpr int16_t cycle[] = {-2, 0, -1};
  return cycle[group % 3];
}

int bison_words(int samples) { return static_cast<int>(std::nearbyint(samples * 1.25)); }

namespace {
std::string bison_header(const BisonLayout& layout) {
  // Each line's text has an even length, so that its CR falls on an even offset.
  auto line = [](std::string text) {
    if (text.size() % 2) text += ' ';
    return text + "\r\n";
  };
  char interval[32];
  std::snprintf(interval, sizeof interval, "%g", layout.interval_ms);
  std::string header = line("BISON INSTRUMENTS 5000 SERIES");
  for (int i = 1; i <= 20; ++i) {
    std::string value = i == 14   ? std::to_string(layout.channels)
                        : i == 16 ? std::to_string(layout.samples)
                        : i == 17 ? interval
                                  : "PARAMETER " + std::to_string(i);
    header += line(value);
  }
  if (layout.odd_header) header += 'X';
  return header + "\x03\x03";
}
}  // namespace

size_t bison_header_size(const BisonLayout& layout) { return bison_header(layout).size(); }

std::vector<uint8_t> bison_record(int record, const BisonLayout& layout) {
  const std::string header = bison_header(layout);
  const int words = bison_words(layout.samples);
  std::vector<uint8_t> bytes(header.begin(), header.end());
  for (int c = 1; c <= layout.channels; ++c) {
    int sample = 0;
    for (int k = 1; k <= words; ++k) {
      const int16_t w = k % 5 == 0 ? bison_gain(k / 5 - 1) : static_cast<int16_t>(gather_sample(record, c, sample++) / 2);
      bytes.push_back(static_cast<uint8_t>(w & 0xFF));
      bytes.push_back(static_cast<uint8_t>((w >> 8) & 0xFF));
    }
  }
  return bytes;
}

std::string write_bison(const std::string& folder, int record, const BisonLayout& layout) {
  return write_record(folder, record, "dat", bison_record(record, layout));
}

}  // namespace tf::gen
