#include "tools/su_generators.h"

#include <cstring>
#include <fstream>

namespace tf::gen {

namespace {
template <typename T>
void put(std::vector<uint8_t>& bytes, size_t at, T value) {
  std::memcpy(bytes.data() + at, &value, sizeof value);
}
}  // namespace

std::vector<uint8_t> su_file(const SuLayout& layout) {
  const size_t size = 240 + 4 * static_cast<size_t>(layout.samples);
  std::vector<uint8_t> bytes(size * static_cast<size_t>(layout.traces), 0);
  for (int k = 1; k <= layout.traces; ++k) {
    const size_t pos = size * static_cast<size_t>(k - 1);
    const int channels = layout.channels > 0 ? layout.channels : 1;
    put<int32_t>(bytes, pos + 0, k);                           // tracl
    put<int32_t>(bytes, pos + 8, (k - 1) / channels + 1);      // fldr
    put<int32_t>(bytes, pos + 12, (k - 1) % channels + 1);     // tracf
    put<int16_t>(bytes, pos + 114, static_cast<int16_t>(layout.samples));
    put<int16_t>(bytes, pos + 116, static_cast<int16_t>(layout.dt));
    put<int16_t>(bytes, pos + 222, static_cast<int16_t>(10 * k));  // fbp
    for (int s = 0; s < layout.samples; ++s)
      put<float>(bytes, pos + 240 + 4 * static_cast<size_t>(s),
                 static_cast<float>(layout.seed * 1e6 + k * 1000.0 + s));
  }
  return bytes;
}

std::string write_su(const std::string& path, const SuLayout& layout) {
  const auto bytes = su_file(layout);
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return path;
}

}  // namespace tf::gen
