#include "tools/binary_record_generators.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tools/record_generators.h"

namespace tf::gen {

int sample_width(SampleType type) { return type == SampleType::i16 ? 2 : 4; }

double binary_sample(int record, int channel, int sample, SampleType type) {
  const int16_t v = gather_sample(record, channel, sample);
  switch (type) {
    case SampleType::i16: return v;
    case SampleType::i32: return v * 65536.0 + channel;  // uses the upper bytes too
    case SampleType::f32: return v / 8.0;                // exact in a float
  }
  return 0;
}

std::vector<uint8_t> binary_record(int record, const BinaryLayout& layout) {
  const size_t width = static_cast<size_t>(sample_width(layout.type));
  const size_t block = static_cast<size_t>(layout.trace_header) + width * static_cast<size_t>(layout.samples);
  std::vector<uint8_t> bytes(static_cast<size_t>(layout.file_header) + block * static_cast<size_t>(layout.channels), 'T');
  std::fill_n(bytes.begin(), layout.file_header, 'F');
  for (int c = 1; c <= layout.channels; ++c) {
    uint8_t* at = bytes.data() + layout.file_header + (c - 1) * block + layout.trace_header;
    for (int s = 0; s < layout.samples; ++s, at += width) {
      const double v = binary_sample(record, c, s, layout.type);
      uint8_t raw[4];
      if (layout.type == SampleType::i16) {
        const auto x = static_cast<int16_t>(v);
        std::memcpy(raw, &x, 2);
      } else if (layout.type == SampleType::i32) {
        const auto x = static_cast<int32_t>(v);
        std::memcpy(raw, &x, 4);
      } else {
        const auto x = static_cast<float>(v);
        std::memcpy(raw, &x, 4);
      }
      if (layout.big_endian) std::reverse(raw, raw + width);
      std::memcpy(at, raw, width);
    }
  }
  return bytes;
}

std::string write_binary(const std::string& folder, int record, const BinaryLayout& layout) {
  return write_record(folder, record, "bin", binary_record(record, layout));
}

double dolang_sample(int shot, int channel, int sample) { return gather_sample(shot, channel, sample) / 4.0; }

std::string dolang_channel_text(int shot, int channel, const DolangLayout& layout) {
  std::string text;
  char line[32];
  for (int s = 0; s < layout.samples; ++s) {
    std::snprintf(line, sizeof line, "%.2f\r\n", dolang_sample(shot, channel, s));
    text += line;
  }
  return text;
}

std::string dolang_adt_text(const DolangLayout& layout) {
  // Station, line, date and time; channels, records, the pre-trigger and
  // the recording time, samples, stack count; the source, its number; the
  // gains and positions.
  const double recording_ms = static_cast<double>(layout.samples) * layout.dt / 1000.0;
  char text[256];
  std::snprintf(text, sizeof text,
                "DOLANG,LINE01,23/11/26,14:32\r\n%d,1,0,%g,%d,1\r\nHAMMER,1\r\n0,0,0,0,0,0\r\n", layout.channels,
                recording_ms, layout.samples);
  return text;
}

std::string dolang_channel_name(int shot, int channel) {
  char name[32];
  std::snprintf(name, sizeof name, "shot%03d.A%02d", shot, channel);
  return name;
}

std::string write_dolang(const std::string& folder, int shot, const DolangLayout& layout) {
  namespace fs = std::filesystem;
  fs::create_directories(folder);
  auto write = [&](const std::string& name, const std::string& text) {
    const std::string path = (fs::path(folder) / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  };
  for (int c = 1; c <= layout.channels; ++c) write(dolang_channel_name(shot, c), dolang_channel_text(shot, c, layout));
  char adt[32];
  std::snprintf(adt, sizeof adt, "shot%03d.ADT", shot);
  return write(adt, dolang_adt_text(layout));
}

}  // namespace tf::gen
