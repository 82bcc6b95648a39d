#include "ui/headless/picture_png.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <vector>

namespace tf {

namespace {

struct Canvas {
  int width, height;
  std::vector<uint8_t> rgb;
  Canvas(int w, int h) : width(w), height(h), rgb(static_cast<size_t>(w) * h * 3, 255) {}
  void set(int x, int y, int32_t color) {
    if (x < 0 || y < 0 || x >= width || y >= height) return;
    uint8_t* p = &rgb[(static_cast<size_t>(y) * width + x) * 3];
    p[0] = color & 0xFF, p[1] = (color >> 8) & 0xFF, p[2] = (color >> 16) & 0xFF;  // 0x00BBGGRR
  }
  void line(PixelPoint a, PixelPoint b, int32_t color) {
    int64_t x = a.x, y = a.y;
    const int64_t dx = std::abs(int64_t{b.x} - a.x), dy = -std::abs(int64_t{b.y} - a.y);
    const int sx = a.x < b.x ? 1 : -1, sy = a.y < b.y ? 1 : -1;
    int64_t err = dx + dy;
    // Long runs outside the picture are walked only as far as it reaches.
    for (int64_t steps = 0; steps <= std::max(dx, -dy) && steps < 4 * (width + height) + 4; ++steps) {
      set(static_cast<int>(x), static_cast<int>(y), color);
      if (x == b.x && y == b.y) break;
      const int64_t e2 = 2 * err;
      if (e2 >= dy) err += dy, x += sx;
      if (e2 <= dx) err += dx, y += sy;
    }
  }
  // Even-odd fill through pixel centres.
  void fill(const std::vector<PixelPoint>& points, int32_t color) {
    const size_t n = points.size();
    if (n < 3) return;
    std::vector<double> crossings;
    for (int y = 0; y < height; ++y) {
      crossings.clear();
      const double cy = y + 0.5;
      for (size_t i = 0; i < n; ++i) {
        const PixelPoint& p = points[i];
        const PixelPoint& q = points[(i + 1) % n];
        if ((p.y <= cy) == (q.y <= cy)) continue;
        crossings.push_back(p.x + (cy - p.y) * (q.x - p.x) / double(q.y - p.y));
      }
      std::sort(crossings.begin(), crossings.end());
      for (size_t i = 0; i + 1 < crossings.size(); i += 2) {
        const int from = std::max(0, static_cast<int>(std::ceil(crossings[i] - 0.5)));
        const int to = std::min(width - 1, static_cast<int>(std::floor(crossings[i + 1] - 0.5)));
        for (int x = from; x <= to; ++x) set(x, y, color);
      }
    }
  }
};

uint32_t crc32(const uint8_t* data, size_t size, uint32_t crc = 0) {
  static const std::array<uint32_t, 256> table = [] {
    std::array<uint32_t, 256> t{};
    for (uint32_t n = 0; n < 256; ++n) {
      uint32_t c = n;
      for (int k = 0; k < 8; ++k) c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      t[n] = c;
    }
    return t;
  }();
  crc = ~crc;
  for (size_t i = 0; i < size; ++i) crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

void put32(std::vector<uint8_t>& out, uint32_t v) {
  for (int shift : {24, 16, 8, 0}) out.push_back(static_cast<uint8_t>(v >> shift));
}

void chunk(std::vector<uint8_t>& png, const char* type, const std::vector<uint8_t>& data) {
  put32(png, static_cast<uint32_t>(data.size()));
  std::vector<uint8_t> body(type, type + 4);
  body.insert(body.end(), data.begin(), data.end());
  png.insert(png.end(), body.begin(), body.end());
  put32(png, crc32(body.data(), body.size()));
}

// The rows in zlib stored blocks: no compression, nothing to link.
std::vector<uint8_t> zlib_stored(const std::vector<uint8_t>& raw) {
  std::vector<uint8_t> z{0x78, 0x01};
  for (size_t at = 0; at < raw.size() || at == 0; at += 65535) {
    const size_t len = std::min<size_t>(65535, raw.size() - at);
    z.push_back(at + len >= raw.size() ? 1 : 0);
    z.push_back(len & 0xFF), z.push_back(len >> 8);
    z.push_back(~len & 0xFF), z.push_back((~len >> 8) & 0xFF);
    z.insert(z.end(), raw.begin() + static_cast<long>(at), raw.begin() + static_cast<long>(at + len));
    if (raw.empty()) break;
  }
  uint32_t a = 1, b = 0;
  for (uint8_t c : raw) a = (a + c) % 65521, b = (b + a) % 65521;
  put32(z, (b << 16) | a);
  return z;
}

}  // namespace

bool save_picture_png(const Control& picture, const std::string& file) {
  if (picture.picture_width <= 0 || picture.picture_height <= 0) return false;
  Canvas canvas(picture.picture_width, picture.picture_height);
  for (const DrawnShape& shape : picture.shapes) {
    if (shape.filled) canvas.fill(shape.points, shape.fill);
    for (size_t i = 1; i < shape.points.size(); ++i) canvas.line(shape.points[i - 1], shape.points[i], shape.pen);
    if (shape.filled && shape.points.size() > 2) canvas.line(shape.points.back(), shape.points.front(), shape.pen);
    if (shape.points.size() == 1) canvas.set(shape.points[0].x, shape.points[0].y, shape.pen);
  }
  std::vector<uint8_t> raw;
  raw.reserve(static_cast<size_t>(canvas.height) * (canvas.width * 3 + 1));
  for (int y = 0; y < canvas.height; ++y) {
    raw.push_back(0);
    const auto row = canvas.rgb.begin() + static_cast<long>(y) * canvas.width * 3;
    raw.insert(raw.end(), row, row + canvas.width * 3);
  }
  std::vector<uint8_t> png{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<uint8_t> header;
  put32(header, static_cast<uint32_t>(canvas.width));
  put32(header, static_cast<uint32_t>(canvas.height));
  header.insert(header.end(), {8, 2, 0, 0, 0});  // 8-bit RGB
  chunk(png, "IHDR", header);
  chunk(png, "IDAT", zlib_stored(raw));
  chunk(png, "IEND", {});
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
  return static_cast<bool>(out);
}

}  // namespace tf
