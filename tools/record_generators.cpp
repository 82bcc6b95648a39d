#include "tools/record_generators.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace tf::gen {

int16_t gather_sample(int record, int channel, int sample) {
  int arrival = 40 + channel * 12 + record * 3;
  unsigned noise_seed = static_cast<unsigned>(record * 7919 + channel * 104729 + sample * 31);
  noise_seed = noise_seed * 1103515245u + 12345u;
  int noise = static_cast<int>((noise_seed >> 16) % 41) - 20;
  if (sample < arrival) return static_cast<int16_t>(noise);
  double t = (sample - arrival) / 12.0;
  double wavelet = 8000.0 * std::exp(-t / 4.0) * std::sin(t * 1.7);
  return static_cast<int16_t>(std::lround(wavelet) + noise);
}

namespace {
// Channel `channel` of a record as int16 samples from byte `start`.
void put_gather(std::vector<uint8_t>& bytes, size_t start, int record, int channel, int samples) {
  for (int s = 0; s < samples; ++s) {
    int16_t v = gather_sample(record, channel, s);
    std::memcpy(&bytes[start + 2 * static_cast<size_t>(s)], &v, 2);
  }
}

}  // namespace

std::string write_record(const std::string& folder, int record, const char* extension,
                         const std::vector<uint8_t>& bytes) {
  std::filesystem::create_directories(folder);
  char name[32];
  std::snprintf(name, sizeof name, "rec%03d.%s", record, extension);
  std::string path = (std::filesystem::path(folder) / name).string();
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                               static_cast<std::streamsize>(bytes.size()));
  return path;
}

std::vector<uint8_t> es1225_record(int record, const Es1225Layout& layout) {
  const size_t block = 2 * static_cast<size_t>(layout.samples) + 48;
  std::vector<uint8_t> bytes(static_cast<size_t>(layout.header) + block * layout.channels, 0);
  for (size_t i = 0; i < static_cast<size_t>(layout.header); ++i) bytes[i] = static_cast<uint8_t>('H');
  for (int c = 0; c < layout.channels; ++c) {
    // The importer takes each channel's samples two bytes ahead of its
    // block, so the samples sit there; the 48 bytes close the block.
    put_gather(bytes, static_cast<size_t>(layout.header) + c * block - 2, record, c + 1, layout.samples);
  }
  return bytes;
}

std::string write_es1225(const std::string& folder, int record, const Es1225Layout& layout) {
  return write_record(folder, record, "dat", es1225_record(record, layout));
}

std::vector<uint8_t> abem_record(int record, const AbemLayout& layout) {
  constexpr size_t header = 2048;
  std::string text(header, ' ');
  // Line 1: a 15-character name, an 8-character line name, the date YYMMDD
  // and the time HH:MM, each field at its fixed byte.
  char first_line[64];
  std::snprintf(first_line, sizeof first_line, "%-15s%-8s%-8s%-7s", "TERRALOC MK3", "LINE01",
                ("9604" + std::to_string(10 + record % 20)).c_str(), "14:32  ");
  std::string lines = std::string(first_line) + "\r\n";
  for (int line = 2; line <= 113; ++line) {
    // The other parameter lines hold 0.
    std::string value = line == 11    ? std::to_string(layout.rate_code)
                        : line == 113 ? std::to_string(layout.channels)
                                      : "0";
    lines += value + "\r\n";
  }
  text.replace(0, lines.size(), lines);
  std::vector<uint8_t> bytes(text.begin(), text.end());
  bytes.resize(header + 2 * static_cast<size_t>(layout.samples) * layout.channels, 0);
  for (int c = 0; c < layout.channels; ++c)
    put_gather(bytes, header + 2 * static_cast<size_t>(c) * layout.samples, record, c + 1, layout.samples);
  return bytes;
}

std::string write_abem(const std::string& folder, int record, const AbemLayout& layout) {
  return write_record(folder, record, "abm", abem_record(record, layout));
}

}  // namespace tf::gen
