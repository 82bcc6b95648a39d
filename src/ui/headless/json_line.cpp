#include "ui/headless/json_line.h"

#include <cmath>
#include <cstdio>

namespace tf {

std::string json_quote(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
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
