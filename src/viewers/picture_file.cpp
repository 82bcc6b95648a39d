#include "viewers/picture_file.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <vector>

namespace tf {

namespace {
uint32_t le(const std::vector<uint8_t>& b, size_t at, int bytes) {
  uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | b[at + static_cast<size_t>(i)];
  return v;
}
uint32_t be16(const std::vector<uint8_t>& b, size_t at) { return (uint32_t{b[at]} << 8) | b[at + 1]; }

bool bmp_size(const std::vector<uint8_t>& b, int& width, int& height) {
  if (b.size() < 26 || b[0] != 'B' || b[1] != 'M') return false;
  const uint32_t info_size = le(b, 14, 4);
  if (info_size == 12) {  // the old core header: 16-bit sizes
    width = static_cast<int>(le(b, 18, 2));
    height = static_cast<int>(le(b, 20, 2));
  } else {
    if (b.size() < 26) return false;
    width = static_cast<int32_t>(le(b, 18, 4));
    height = static_cast<int32_t>(le(b, 22, 4));
    if (height < 0) height = -height;  // rows stored top down
  }
  return width > 0 && height > 0;
}

// The frame header of the first start-of-frame marker.
bool jpeg_size(const std::vector<uint8_t>& b, int& width, int& height) {
  if (b.size() < 4 || b[0] != 0xFF || b[1] != 0xD8) return false;
  size_t at = 2;
  while (at + 4 <= b.size()) {
    if (b[at] != 0xFF) return false;
    const uint8_t marker = b[at + 1];
    if (marker == 0xFF) {
      ++at;
      continue;
    }
    if (marker == 0xD8 || (marker >= 0xD0 && marker <= 0xD7) || marker == 0x01) {
      at += 2;
      continue;
    }
    const size_t length = be16(b, at + 2);
    if (length < 2) return false;
    const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (frame) {
      if (at + 9 > b.size()) return false;
      height = static_cast<int>(be16(b, at + 5));
      width = static_cast<int>(be16(b, at + 7));
      return width > 0 && height > 0;
    }
    at += 2 + length;
  }
  return false;
}

bool wmf_size(const std::vector<uint8_t>& b, int& width, int& height) {
  if (b.size() < 22 || le(b, 0, 4) != 0x9AC6CDD7u) return false;
  auto s16 = [&](size_t at) { return static_cast<int16_t>(le(b, at, 2)); };
  const int units_per_inch = static_cast<int>(le(b, 14, 2));
  if (units_per_inch <= 0) return false;
  width = (s16(10) - s16(6)) * 96 / units_per_inch;
  height = (s16(12) - s16(8)) * 96 / units_per_inch;
  if (width < 0) width = -width;
  if (height < 0) height = -height;
  return width > 0 && height > 0;
}
}  // namespace

bool picture_size(const std::string& file, int& width, int& height) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return false;
  // The headers lie near the start, but a JPEG may carry large thumbnails
  // before its frame header.
  std::vector<uint8_t> head(1 << 20);
  in.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<size_t>(in.gcount()));
  int w = 0, h = 0;
  if (!bmp_size(head, w, h) && !jpeg_size(head, w, h) && !wmf_size(head, w, h)) return false;
  width = w;
  height = h;
  return true;
}

}  // namespace tf
