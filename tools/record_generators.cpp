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

std::vector<uint8_t> es1225_record(int record, const Es1225Layout& layout) {
  const size_t block = 2 * static_cast<size_t>(layout.samples) + 48;
  std::vector<uint8_t> bytes(static_cast<size_t>(layout.header) + block * layout.channels, 0);
  for (size_t i = 0; i < static_cast<size_t>(layout.header); ++i) bytes[i] = static_cast<uint8_t>('H');
  for (int c = 0; c < layout.channels; ++c) {
    // The importer takes each channel's samples two bytes ahead of its
    // block, so the samples sit there; the 48 bytes close the block.
    size_t start = static_cast<size_t>(layout.header) + c * block - 2;
    for (int s = 0; s < layout.samples; ++s) {
      int16_t v = gather_sample(record, c + 1, s);
      std::memcpy(&bytes[start + 2 * static_cast<size_t>(s)], &v, 2);
    }
  }
  return bytes;
}

std::string write_es1225(const std::string& folder, int record, const Es1225Layout& layout) {
  std::filesystem::create_directories(folder);
  char name[32];
  std::snprintf(name, sizeof name, "rec%03d.dat", record);
  std::string path = (std::filesystem::path(folder) / name).string();
  auto bytes = es1225_record(record, layout);
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                               static_cast<std::streamsize>(bytes.size()));
  return path;
}

}  // namespace tf::gen
