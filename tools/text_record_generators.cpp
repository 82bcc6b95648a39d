#include "tools/text_record_generators.h"

#include <cstdio>
#include <cstring>
#include <filesystem>

#include "tools/record_generators.h"

namespace tf::gen {

namespace {
std::vector<uint8_t> bytes_of(const std::string& text) { return std::vector<uint8_t>(text.begin(), text.end()); }

// A text column at a fixed byte, right-aligned in its width.
void put_column(std::vector<uint8_t>& bytes, size_t offset, size_t width, const std::string& value) {
  std::string field = value.size() < width ? std::string(width - value.size(), ' ') + value : value.substr(0, width);
  std::memcpy(&bytes[offset], field.data(), width);
}
}  // namespace

int text_sample(int trace, int sample, bool radar) {
  const int v = gather_sample(1, trace, sample);
  return radar ? v + 32768 : v;
}

std::string ascii_matrix(const AsciiMatrixLayout& layout) {
  std::string text;
  text.reserve(static_cast<size_t>(layout.traces) * layout.samples * 7);
  char value[16];
  for (int s = 0; s < layout.samples; ++s) {
    for (int t = 1; t <= layout.traces; ++t) {
      int n = std::snprintf(value, sizeof value, t == 1 ? "%d" : ",%d", text_sample(t, s, layout.radar));
      text.append(value, static_cast<size_t>(n));
    }
    text += "\r\n";
  }
  return text;
}

std::string write_ascii_matrix(const std::string& folder, int record, const AsciiMatrixLayout& layout) {
  return write_record(folder, record, "TXT", bytes_of(ascii_matrix(layout)));
}

std::vector<uint8_t> dzt_head(int samples, float rate_divisor, int scans) {
  std::vector<uint8_t> bytes(1024, 0);
  const int16_t tag = 0x00ff, ns = static_cast<int16_t>(samples), bits = 16, n = static_cast<int16_t>(scans);
  std::memcpy(&bytes[0], &tag, 2);
  std::memcpy(&bytes[4], &ns, 2);
  std::memcpy(&bytes[6], &bits, 2);
  std::memcpy(&bytes[10], &rate_divisor, 4);
  std::memcpy(&bytes[52], &n, 2);
  return bytes;
}

std::string write_dzt_beside(const std::string& matrix_path, int samples, float rate_divisor, int scans) {
  std::string path = matrix_path.substr(0, matrix_path.size() - 3) + "DZT";
  const auto bytes = dzt_head(samples, rate_divisor, scans);
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (f) {
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
  }
  return path;
}

std::string ascii_trace(int trace, int samples) {
  std::string text;
  for (int s = 0; s < samples; ++s) text += std::to_string(text_sample(trace, s, false)) + "\r\n";
  return text;
}

std::string write_ascii_trace(const std::string& folder, int trace, int samples) {
  return write_record(folder, trace, "txt", bytes_of(ascii_trace(trace, samples)));
}

std::vector<uint8_t> oyo_record(int record, const OyoLayout& layout) {
  const size_t slots = static_cast<size_t>(layout.channels) * layout.samples;
  std::vector<uint8_t> bytes(oyo_trace_data + 4 * slots, 0);
  std::memset(bytes.data(), ' ', oyo_trace_data);
  put_column(bytes, 2816, 4, std::to_string(record));
  put_column(bytes, 2866, 4, std::to_string(layout.channels));
  put_column(bytes, 2870, 4, std::to_string(layout.samples));
  put_column(bytes, 2875, 5, layout.interval_ms);
  put_column(bytes, 2881, 9, std::to_string(layout.delay));
  put_column(bytes, 2891, 4, std::to_string(layout.low_cut));
  put_column(bytes, 2896, 4, std::to_string(layout.high_cut));
  put_column(bytes, 2901, 4, std::to_string(layout.notch));
  put_column(bytes, 2906, 6, std::to_string(layout.first_position + record));
  put_column(bytes, 2913, 6, std::to_string(layout.second_position));
  put_column(bytes, 2920, 6, std::to_string(layout.third));
  put_column(bytes, 2927, 6, std::to_string(layout.fourth));
  for (int c = 0; c < layout.channels; ++c) {
    // Each channel has four bytes a sample, whatever the type.
    uint8_t* channel = &bytes[oyo_trace_data + 4 * static_cast<size_t>(c) * layout.samples];
    for (int s = 0; s < layout.samples; ++s) {
      const int16_t v = gather_sample(record, c + 1, s);
      if (layout.type == OyoSamples::long_integer) {
        const int32_t wide = v * 3;  // beyond the 16-bit range here and there
        std::memcpy(channel + 4 * s, &wide, 4);
      } else if (layout.type == OyoSamples::short_integer) {
        const int16_t filler = 0x7777;
        std::memcpy(channel + 2 * s, &v, 2);
        std::memcpy(channel + 2 * (layout.samples + s), &filler, 2);
      } else {
        const float f = v / 8.0f;
        std::memcpy(channel + 4 * s, &f, 4);
      }
    }
  }
  return bytes;
}

std::string write_oyo(const std::string& folder, int record, const OyoLayout& layout) {
  return write_record(folder, record, "org", oyo_record(record, layout));
}

}  // namespace tf::gen
