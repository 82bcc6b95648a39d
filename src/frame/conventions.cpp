#include "frame/conventions.h"

#include <cctype>
#include <cmath>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>

namespace tf {

RunTimeError::RunTimeError(int n) : std::runtime_error("run-time error " + std::to_string(n)), number(n) {}

double leading_number(std::string_view text) {
  std::string s;
  for (char c : text)
    if (c != ' ' && c != '\t' && c != '\n' && c != '\r') s += c;
  size_t i = 0;
  std::string num;
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) num += s[i++];
  bool digits = false;
  while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) num += s[i++], digits = true;
  if (i < s.size() && s[i] == '.') {
    num += s[i++];
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) num += s[i++], digits = true;
  }
  if (!digits) return 0.0;
  if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
    std::string exp = "e";
    size_t j = i + 1;
    if (j < s.size() && (s[j] == '+' || s[j] == '-')) exp += s[j++];
    size_t first_digit = j;
    while (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j]))) exp += s[j++];
    if (j > first_digit) num += exp;
  }
  double v = std::strtod(num.c_str(), nullptr);
  if (std::isinf(v)) throw RunTimeError(err::overflow);
  return v;
}

double round_half_even(double value) { return std::nearbyint(value); }

namespace {
template <typename T>
T narrow(double value) {
  double r = round_half_even(value);
  if (std::isnan(r) || r < std::numeric_limits<T>::min() || r > std::numeric_limits<T>::max())
    throw RunTimeError(err::overflow);
  return static_cast<T>(r);
}
}  // namespace

int16_t to_i16(double value) { return narrow<int16_t>(value); }
int32_t to_i32(double value) { return narrow<int32_t>(value); }
int16_t field_i16(std::string_view text) { return to_i16(leading_number(text)); }
int32_t field_i32(std::string_view text) { return to_i32(leading_number(text)); }

int16_t i16_mul(int32_t a, int32_t b) { return to_i16(static_cast<double>(int64_t{a} * b)); }
int16_t i16_add(int32_t a, int32_t b) { return to_i16(static_cast<double>(int64_t{a} + b)); }
int32_t i32_mul(int64_t a, int64_t b) { return to_i32(static_cast<double>(a * b)); }
int32_t i32_add(int64_t a, int64_t b) { return to_i32(static_cast<double>(a + b)); }

namespace {
// Digits of |value| with the given significant digits, fixed or with an
// exponent as the platform prints them, leading "0." shortened to ".".
std::string unsigned_text(double value, int significant, int fixed_limit) {
  if (value == 0) return "0";
  // What the platform prints for values that are no numbers.
  if (std::isinf(value)) return "1.#INF";
  if (std::isnan(value)) return "1.#QNAN";
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*e", significant - 1, value);
  std::string s(buf);
  size_t e = s.find('e');
  int exponent = std::stoi(s.substr(e + 1));
  std::string mantissa = s.substr(0, e);
  mantissa.erase(std::remove(mantissa.begin(), mantissa.end(), '.'), mantissa.end());
  while (mantissa.size() > 1 && mantissa.back() == '0') mantissa.pop_back();
  std::string out;
  if (exponent >= -4 && exponent < fixed_limit) {
    if (exponent >= 0) {
      if (static_cast<int>(mantissa.size()) <= exponent + 1) {
        out = mantissa + std::string(exponent + 1 - mantissa.size(), '0');
      } else {
        out = mantissa.substr(0, exponent + 1) + "." + mantissa.substr(exponent + 1);
      }
    } else {
      out = "." + std::string(-exponent - 1, '0') + mantissa;
    }
  }
  if (out.empty()) {
    out = mantissa.substr(0, 1);
    if (mantissa.size() > 1) out += "." + mantissa.substr(1);
    char ex[16];
    std::snprintf(ex, sizeof ex, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    out += ex;
  }
  return out;
}
std::string signed_text(double value, int significant, int fixed_limit, bool sign_blank) {
  std::string digits = unsigned_text(std::fabs(value), significant, fixed_limit);
  if (std::signbit(value) && value != 0) return "-" + digits;
  return sign_blank ? " " + digits : digits;
}
}  // namespace

std::string number_text(int64_t value) { return value < 0 ? std::to_string(value) : " " + std::to_string(value); }
std::string number_text(double value) { return signed_text(value, 15, 15, true); }
std::string number_text(float value) { return signed_text(value, 7, 7, true); }
std::string field_text(int64_t value) { return std::to_string(value); }
std::string field_text(double value) { return signed_text(value, 15, 15, false); }
std::string field_text(float value) { return signed_text(value, 7, 7, false); }

void PrintedLine::next_column() {
  if (first_) {
    first_ = false;
    return;
  }
  size_t column = (line_.size() + 13) / 14 * 14;
  line_.resize(column, ' ');
}

PrintedLine& PrintedLine::item(std::string_view text) {
  next_column();
  line_ += text;
  return *this;
}

PrintedLine& PrintedLine::item(double number) {
  next_column();
  line_ += number_text(number) + " ";
  return *this;
}

PrintedLine& PrintedLine::item(int64_t number) {
  next_column();
  line_ += number_text(number) + " ";
  return *this;
}

std::string PrintedLine::str() const { return line_ + "\r\n"; }

TokenReader::TokenReader(std::string text) : text_(std::move(text)) {}

bool TokenReader::at_end() const { return pos_ >= text_.size(); }

void TokenReader::skip_blanks() {
  while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t')) ++pos_;
}

void TokenReader::skip_separator() {
  skip_blanks();
  if (pos_ >= text_.size()) return;
  if (text_[pos_] == ',') {
    ++pos_;
  } else if (text_[pos_] == '\r') {
    ++pos_;
    if (pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
  } else if (text_[pos_] == '\n') {
    ++pos_;
  }
}

std::string TokenReader::next_field() { return std::string(next_field_view()); }

std::string_view TokenReader::next_field_view() {
  const char* const text = text_.data();
  const size_t size = text_.size();
  size_t pos = pos_;
  // Blanks, and blank lines between fields, are passed over.
  while (pos < size && (text[pos] == ' ' || text[pos] == '\t' || text[pos] == '\r' || text[pos] == '\n')) ++pos;
  if (pos >= size) {
    pos_ = pos;
    throw RunTimeError(err::input_past_end);
  }
  std::string_view field;
  if (text[pos] == '"') {
    const char* close = static_cast<const char*>(std::memchr(text + pos + 1, '"', size - pos - 1));
    const size_t end = close ? static_cast<size_t>(close - text) : size;
    field = std::string_view(text + pos + 1, end - pos - 1);
    pos = std::min(end + 1, size);
  } else {
    size_t end = pos;
    while (end < size && text[end] != ',' && text[end] != '\r' && text[end] != '\n') ++end;
    field = std::string_view(text + pos, end - pos);
    pos = end;
    while (!field.empty() && (field.back() == ' ' || field.back() == '\t')) field.remove_suffix(1);
  }
  // The separator: blanks, then one comma or one line end.
  while (pos < size && (text[pos] == ' ' || text[pos] == '\t')) ++pos;
  if (pos < size) {
    if (text[pos] == ',' || text[pos] == '\n') {
      ++pos;
    } else if (text[pos] == '\r') {
      ++pos;
      if (pos < size && text[pos] == '\n') ++pos;
    }
  }
  pos_ = pos;
  return field;
}

double TokenReader::next_number() {
  skip_blanks();
  while (pos_ < text_.size() && (text_[pos_] == '\r' || text_[pos_] == '\n')) {
    ++pos_;
    skip_blanks();
  }
  if (at_end()) throw RunTimeError(err::input_past_end);
  size_t end = text_.find_first_of(", \t\r\n", pos_);
  if (end == std::string::npos) end = text_.size();
  double v = leading_number(std::string_view(text_).substr(pos_, end - pos_));
  pos_ = end;
  skip_separator();
  return v;
}

std::string TokenReader::next_line() {
  if (at_end()) throw RunTimeError(err::input_past_end);
  size_t end = text_.find_first_of("\r\n", pos_);
  if (end == std::string::npos) end = text_.size();
  std::string line = text_.substr(pos_, end - pos_);
  pos_ = end;
  if (pos_ < text_.size() && text_[pos_] == '\r') ++pos_;
  if (pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
  return line;
}

std::string upper(std::string_view text) {
  std::string s(text);
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

std::string lower(std::string_view text) {
  std::string s(text);
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

}  // namespace tf
