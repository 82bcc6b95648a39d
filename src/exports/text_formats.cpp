#include "exports/text_formats.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/conventions.h"

namespace tf {

namespace {

// 10^n as a double: exact up to 10^22, within an ulp beyond.
double power_of_ten(int n) {
  static const auto table = [] {
    std::array<double, 128> t{};
    for (int i = -64; i < 64; ++i) t[static_cast<size_t>(64 + i)] = std::pow(10.0, i);
    return t;
  }();
  return table[static_cast<size_t>(64 + n)];
}

// The first `count` (at most 9) significant digits of a positive single,
// rounded, and the power of ten of the first: in double arithmetic, whose
// error lies far below what a single can tell apart. A value too near the
// middle of two roundings gives false, for the exact conversion to decide.
bool significant_digits(float value, int count, uint64_t& digits, int& exponent) {
  const double v = value;
  // The power of two from the single's own exponent field (a denormal's
  // through frexp), then of ten by 78913 / 2^18, just below log10(2): the
  // power of ten of the first digit, or one less.
  const int biased = static_cast<int>((std::bit_cast<uint32_t>(value) >> 23) & 0xFF);
  int binary = biased - 127;
  if (biased == 0) {
    std::frexp(v, &binary);
    --binary;
  }
  exponent = (binary * 78913) >> 18;
  const double low = power_of_ten(count - 1), high = power_of_ten(count);
  double scaled = v * power_of_ten(count - 1 - exponent);
  if (scaled >= high) scaled = v * power_of_ten(count - 1 - ++exponent);
  if (scaled < low) scaled = v * power_of_ten(count - 1 - --exponent);
  const auto whole = static_cast<uint64_t>(scaled);
  const double fraction = scaled - static_cast<double>(whole);
  if (std::fabs(fraction - 0.5) < 1e-6) return false;
  digits = whole + (fraction > 0.5 ? 1 : 0);
  if (digits >= static_cast<uint64_t>(high)) {
    digits /= 10;
    ++exponent;
  }
  return true;
}

// Digits and power of ten of a positive finite single, by the fast way or,
// near a tie, by the exact conversion.
void decimal_form(float value, int count, uint64_t& digits, int& exponent) {
  if (significant_digits(value, count, digits, exponent)) return;
  char text[40];
  const char* end =
      std::to_chars(text, text + sizeof text, static_cast<double>(value), std::chars_format::scientific, count - 1).ptr;
  digits = 0;
  const char* c = text;
  for (; c != end && *c != 'e'; ++c)
    if (*c != '.') digits = digits * 10 + static_cast<uint64_t>(*c - '0');
  std::from_chars(c + 1 + (c[1] == '+'), end, exponent);
}

constexpr char two_digits[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

// "+05", "-12": the exponent's sign and at least two digits, at `text`;
// gives the end.
char* put_exponent(char* text, int exponent) {
  *text++ = exponent < 0 ? '-' : '+';
  const int e = std::abs(exponent);
  if (e >= 100) *text++ = static_cast<char>('0' + e / 100);
  *text++ = static_cast<char>('0' + e / 10 % 10);
  *text++ = static_cast<char>('0' + e % 10);
  return text;
}

}  // namespace

char* put_exponent_form(char* at, float value) {
  constexpr int count = 9;
  if (!std::isfinite(value))
    return std::to_chars(at, at + exponent_form_size, static_cast<double>(value), std::chars_format::scientific, 8).ptr;
  if (std::signbit(value)) *at++ = '-';
  uint64_t digits = 0;
  int exponent = 0;
  if (value != 0) decimal_form(std::fabs(value), count, digits, exponent);
  // Eight digits behind the point, two at a time, then the first.
  for (int i = count - 1; i >= 2; i -= 2, digits /= 100) std::memcpy(at + i, two_digits + 2 * (digits % 100), 2);
  at[0] = static_cast<char>('0' + digits);
  at[1] = '.';
  at += count + 1;
  *at++ = 'E';
  return put_exponent(at, exponent);
}

void append_exponent_form(std::string& out, float value) {
  char text[exponent_form_size];
  out.append(text, put_exponent_form(text, value));
}

std::string exponent_form(float value) {
  std::string out;
  append_exponent_form(out, value);
  return out;
}

char* put_number_text(char* at, float value) {
  constexpr int significant = 7;  // a single's digits, and its limit of the fixed form
  if (value == 0) {
    *at++ = ' ';
    *at++ = '0';
    return at;
  }
  if (!std::isfinite(value)) {
    const std::string text = number_text(value);
    return std::copy(text.begin(), text.end(), at);
  }
  *at++ = value < 0 ? '-' : ' ';
  uint64_t number = 0;
  int exponent = 0;
  decimal_form(std::fabs(value), significant, number, exponent);
  char digits[significant];
  for (int i = significant - 1; i >= 0; --i, number /= 10) digits[i] = static_cast<char>('0' + number % 10);
  int count = significant;
  while (count > 1 && digits[count - 1] == '0') --count;
  if (exponent >= -4 && exponent < significant) {
    if (exponent >= 0) {
      const int whole = exponent + 1;
      for (int i = 0; i < whole; ++i) *at++ = i < count ? digits[i] : '0';
      if (count > whole) {
        *at++ = '.';
        at = std::copy(digits + whole, digits + count, at);
      }
    } else {
      *at++ = '.';
      at = std::fill_n(at, -exponent - 1, '0');
      at = std::copy(digits, digits + count, at);
    }
    return at;
  }
  *at++ = digits[0];
  if (count > 1) {
    *at++ = '.';
    at = std::copy(digits + 1, digits + count, at);
  }
  *at++ = 'E';
  return put_exponent(at, exponent);
}

void append_number_text(std::string& out, float value) {
  char text[number_text_size];
  out.append(text, put_number_text(text, value));
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

std::string ask(Platform& platform, const std::string& prompt, const std::string& default_text) {
  InputBoxRequest request;
  request.prompt = prompt;
  request.default_text = default_text;
  return platform.input_box(request);
}

TextOutput::TextOutput(const std::string& path) {
  // A wildcard (a name formed from a cancelled dialog) is a bad file name.
  if (path.find_first_of("*?") == std::string::npos) out_.open(path, std::ios::binary | std::ios::trunc);
}

void TextOutput::write_if_large() {
  if (buffer_.size() >= (256u << 10)) {
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
