#include "ui/headless/json_line.h"

#include <cmath>
#include <cstdio>

namespace tf {

namespace {
// Windows-1252 for 0x80..0x9F; the rest of the high half is Latin-1.
constexpr char16_t cp1252_high[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void append_utf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// Length of the well-formed UTF-8 sequence at `i`, 0 when there is none.
size_t utf8_length(const std::string& s, size_t i) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  const unsigned char lead = byte(i);
  size_t n = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 && lead < 0xF0 ? 3 : lead >= 0xC2 && lead < 0xE0 ? 2 : 0;
  if (n == 0 || i + n > s.size()) return 0;
  for (size_t k = 1; k < n; ++k)
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
  if (n == 3 && ((lead == 0xE0 && byte(i + 1) < 0xA0) || (lead == 0xED && byte(i + 1) >= 0xA0))) return 0;
  if (n == 4 && ((lead == 0xF0 && byte(i + 1) < 0x90) || (lead == 0xF4 && byte(i + 1) >= 0x90))) return 0;
  return n;
}
}  // namespace

// The program's own texts are UTF-8; names and INI values come in the
// platform's single-byte code page, and a byte that starts no UTF-8
// sequence is read as Windows-1252.
std::string json_quote(const std::string& text) {
  std::string out = "\"";
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c >= 0x80) {
      if (size_t n = utf8_length(text, i)) {
        out.append(text, i, n);
        i += n - 1;
      } else {
        append_utf8(out, c < 0xA0 ? cp1252_high[c - 0x80] : c);
      }
      continue;
    }
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      case '\b': out += "\\b"; break;
      default:
        if (c < 0x20) {
          char buf[8];
          std::snprintf(buf, sizeof buf, "\\u%04x", c);
          out += buf;
        } else {
          out += static_cast<char>(c);
        }
    }
  }
  return out + "\"";
}

void JsonLine::key(const std::string& k) {
  if (!body_.empty()) body_ += ",";
  body_ += json_quote(k) + ":";
}

JsonLine& JsonLine::add(const std::string& k, const std::string& value) {
  key(k);
  body_ += json_quote(value);
  return *this;
}

JsonLine& JsonLine::add(const std::string& k, int64_t value) {
  key(k);
  body_ += std::to_string(value);
  return *this;
}

JsonLine& JsonLine::add(const std::string& k, double value) {
  key(k);
  char text[40];
  if (value == static_cast<double>(static_cast<int64_t>(value)) && std::fabs(value) < 1e15) {
    body_ += std::to_string(static_cast<int64_t>(value));
    return *this;
  }
  for (int digits = 1; digits <= 17; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    if (std::strtod(text, nullptr) == value) break;
  }
  body_ += text;
  return *this;
}

JsonLine& JsonLine::add(const std::string& k, bool value) {
  key(k);
  body_ += value ? "true" : "false";
  return *this;
}

JsonLine& JsonLine::add(const std::string& k, const std::vector<std::string>& values) {
  key(k);
  body_ += "[";
  for (size_t i = 0; i < values.size(); ++i) body_ += (i ? "," : "") + json_quote(values[i]);
  body_ += "]";
  return *this;
}

JsonLine& JsonLine::add_raw(const std::string& k, const std::string& json) {
  key(k);
  body_ += json;
  return *this;
}

}  // namespace tf
