#include "exports/text_formats.h"

#include <charconv>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tf {

void append_exponent_form(std::string& out, float value) {
  char text[32];
  auto end = std::to_chars(text, text + sizeof text, static_cast<double>(value), std::chars_format::scientific, 8).ptr;
  for (char* c = text; c != end; ++c)
    if (*c == 'e') *c = 'E';
  out.append(text, end);
}

std::string exponent_form(float value) {
  std::string out;
  append_exponent_form(out, value);
  return out;
}

std::string fixed_form(double value, int decimals) {
  if (!std::isfinite(value)) return std::to_string(value);
  // The value as 15 significant digits, then rounded in decimal.
  char text[40];
  std::snprintf(text, sizeof text, "%.14e", std::fabs(value));
  std::string digits;
  for (const char* c = text; *c && *c != 'e'; ++c)
    if (*c != '.') digits += *c;
  const int exponent = std::atoi(std::strchr(text, 'e') + 1);
  // digits[0] stands for 10^exponent: keep the integer places and `decimals`.
  const int keep = exponent + 1 + decimals;
  std::string kept;  // the number times 10^decimals, as digits
  if (keep > 0) {
    kept = digits.substr(0, static_cast<size_t>(std::min<int>(keep, static_cast<int>(digits.size()))));
    kept.resize(static_cast<size_t>(keep), '0');
    if (keep < static_cast<int>(digits.size()) && digits[static_cast<size_t>(keep)] >= '5') {
      int i = keep - 1;
      while (i >= 0 && kept[static_cast<size_t>(i)] == '9') kept[static_cast<size_t>(i--)] = '0';
      if (i >= 0) ++kept[static_cast<size_t>(i)];
      else kept.insert(kept.begin(), '1');
    }
  } else if (keep == 0 && digits[0] >= '5') {
    kept = "1";
  }
  if (static_cast<int>(kept.size()) < decimals + 1) kept.insert(0, static_cast<size_t>(decimals + 1) - kept.size(), '0');
  std::string out = kept.substr(0, kept.size() - static_cast<size_t>(decimals));
  if (decimals > 0) out += "." + kept.substr(kept.size() - static_cast<size_t>(decimals));
  const bool zero = kept.find_first_not_of('0') == std::string::npos;
  if (value < 0 && !zero) out.insert(out.begin(), '-');
  return out;
}

TextOutput::TextOutput(const std::string& path) {
  // A wildcard (a name formed from a cancelled dialog) is a bad file name.
  if (path.find_first_of("*?") == std::string::npos) out_.open(path, std::ios::binary | std::ios::trunc);
}

void TextOutput::write_if_large() {
  if (buffer_.size() >= (8u << 20)) {
    out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
  }
}

void TextOutput::close() {
  if (!out_.is_open()) return;
  out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
  out_.close();
}

}  // namespace tf
