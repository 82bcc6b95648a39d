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

int16_t ambrogeo_value(int record, int column, int row, const AmbrogeoLayout& layout) {
  if (column > layout.channels) return static_cast<int16_t>(-1000 * column);
  return static_cast<int16_t>(gather_sample(record, column, row - 1) / 4);
}

std::string ambrogeo_record(int record, const AmbrogeoLayout& layout) {
  char line[64];
  std::string text = "AMBROGEO SEISMOGRAPH\r\nLINE 1\r\nSHOT " + std::to_string(record) + "\r\nOPERATOR\r\n";
  std::snprintf(line, sizeof line, "Dat %02d/11/%s\r\n", layout.day_code, layout.year.c_str());
  text += line;
  std::snprintf(line, sizeof line, " %02d:%02d:00\r\n", layout.hour, layout.minute);
  text += line;
  text += "GEOMETRY\r\n" + std::to_string(layout.channels) + "\r\n" + std::to_string(layout.samples) + "\r\nTIME\r\n";
  std::snprintf(line, sizeof line, "%g\r\n", layout.samples * layout.interval_us / 1000.0);
  text += line;
  text += "GAINS\r\nCOLUMNS\r\n";
  for (int c = 1; c <= 24; ++c) text += "CHANNEL " + std::to_string(c) + "\r\n";
  for (int row = 1; row <= layout.samples; ++row) {
    for (int c = 1; c <= 24; ++c) text += (c > 1 ? " " : "") + std::to_string(ambrogeo_value(record, c, row, layout));
    text += "\r\n";
  }
  return text;
}

std::string write_ambrogeo(const std::string& folder, int record, const AmbrogeoLayout& layout) {
  const std::string text = ambrogeo_record(record, layout);
  return write_record(folder, record, "dta", std::vector<uint8_t>(text.begin(), text.end()));
}

double pasi_value(int record, int channel, int sample) { return gather_sample(record, channel, sample) / 2.0; }

std::string pasi_record(int record, const PasiLayout& layout) {
  std::string text;
  char value[32];
  for (int c = 1; c <= layout.channels; ++c)
    for (int s = 0; s < layout.samples; ++s) {
      std::snprintf(value, sizeof value, "%.1f", pasi_value(record, c, s));
      text += value;
      text += (s % 8 == 7 || s + 1 == layout.samples) ? "\r\n" : ",";
    }
  return text;
}

std::string write_pasi(const std::string& folder, int record, const PasiLayout& layout) {
  const std::string text = pasi_record(record, layout);
  return write_record(folder, record, "asc", std::vector<uint8_t>(text.begin(), text.end()));
}

}  // namespace tf::gen
