// Number and text rules shared by every panel: how a field's text becomes a
// number, how numbers narrow to 16 and 32 bits, how they print, and how a run
// of statements goes on past a failing one.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tf {

// Run-time error numbers of the platform's language, as shown to the user.
namespace err {
inline constexpr int invalid_call = 5;
inline constexpr int overflow = 6;
inline constexpr int out_of_memory = 7;
inline constexpr int subscript = 9;
inline constexpr int division_by_zero = 11;
inline constexpr int type_mismatch = 13;
inline constexpr int bad_file_number = 52;
inline constexpr int file_not_found = 53;
inline constexpr int bad_file_mode = 54;
inline constexpr int file_already_open = 55;
inline constexpr int device_io = 57;
inline constexpr int disk_full = 61;
inline constexpr int input_past_end = 62;
inline constexpr int bad_file_name = 64;
inline constexpr int permission_denied = 70;
inline constexpr int path_file_access = 75;
inline constexpr int path_not_found = 76;
}  // namespace err

// A failing statement: file faults, arithmetic overflow, bad subscripts.
class RunTimeError : public std::runtime_error {
 public:
  explicit RunTimeError(int number);
  int number;
};

// A run that would loop forever (a retry box answered for ever by a script)
// is cut by the host; this is what it throws.
class RunAborted : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The leading numeric part of a text: blanks are passed over (also inside
// the digits, so "1 2" reads 12), then a sign, digits, a point, digits and an
// exponent. Empty or non-numeric text is 0.
double leading_number(std::string_view text);

// Nearest whole number, a tie going to the even one.
double round_half_even(double value);

// Narrowing of a float to an integer variable: rounds half to even and raises
// the overflow error outside the range.
int16_t to_i16(double value);
int32_t to_i32(double value);
// The field text read as a number and narrowed (the usual "Text4 into ns").
int16_t field_i16(std::string_view text);
int32_t field_i32(std::string_view text);

// 16- and 32-bit integer arithmetic with the overflow error.
int16_t i16_mul(int32_t a, int32_t b);
int16_t i16_add(int32_t a, int32_t b);
// The step of a 16-bit loop counter: past 32767 it is the overflow error,
// raised where the loop's own failure handling takes it.
inline int16_t i16_next(int16_t counter) { return i16_add(counter, 1); }
int32_t i32_mul(int64_t a, int64_t b);
int32_t i32_add(int64_t a, int64_t b);

// Number-to-text form: a blank stands where a minus sign would be, and a
// fraction has no leading zero (" 1024", "-3", " .12"). Doubles keep 15
// significant digits, singles 7.
std::string number_text(int64_t value);
std::string number_text(double value);
std::string number_text(float value);
inline std::string number_text(int value) { return number_text(static_cast<int64_t>(value)); }
inline std::string number_text(int16_t value) { return number_text(static_cast<int64_t>(value)); }

// The same without the sign blank: what a text box shows after "Text = n".
std::string field_text(int64_t value);
std::string field_text(double value);
std::string field_text(float value);
inline std::string field_text(int value) { return field_text(static_cast<int64_t>(value)); }
inline std::string field_text(int16_t value) { return field_text(static_cast<int64_t>(value)); }

// One printed line: items in columns of 14, numbers with a blank on each
// side (before only when not negative), ended by CR LF.
class PrintedLine {
 public:
  PrintedLine& item(std::string_view text);
  PrintedLine& item(double number);
  PrintedLine& item(int64_t number);
  PrintedLine& item(int number) { return item(static_cast<int64_t>(number)); }
  std::string str() const;  // with the CR LF

 private:
  void next_column();
  std::string line_;
  bool first_ = true;
};

// Sequential reading of a text file by fields, as an "Input #" does: fields
// end at a comma or a line end, quoted fields keep their commas, numbers also
// end at a blank. Reading past the end raises error 62.
class TokenReader {
 public:
  explicit TokenReader(std::string text);
  std::string next_field();
  double next_number();
  std::string next_line();  // a whole line, as "Line Input #"
  bool at_end() const;

 private:
  void skip_blanks();
  void skip_separator();
  std::string text_;
  size_t pos_ = 0;
};

// A work array of zeroed elements 0 to `upper`; a negative bound is error 9.
// A desktop process of the platform has no room for one past 1 GiB: error 7,
// the array as it was.
inline constexpr int64_t largest_array_bytes = int64_t{1} << 30;
template <typename T>
void dim_array(std::vector<T>& array, int64_t upper) {
  if (upper < 0) throw RunTimeError(err::subscript);
  if (upper >= largest_array_bytes / static_cast<int64_t>(sizeof(T))) throw RunTimeError(err::out_of_memory);
  array.assign(static_cast<size_t>(upper) + 1, T{});
}

// "Run with run-time errors ignored": each statement is run through this, and
// a failing one is passed over.
inline void resume_next(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const RunTimeError&) {
  }
}

// Upper and lower case of single-byte text.
std::string upper(std::string_view text);
std::string lower(std::string_view text);

}  // namespace tf
