// What the text exports share: the number formats ("0.00000000E+00" for
// samples, "###0.0000" and its kin for picks, stations and elevations), the
// input box, and a text file written in large pieces.
#pragma once

#include <fstream>
#include <string>

#include "frame/platform.h"

namespace tf {

// "0.00000000E+00": nine significant digits, a signed exponent of at least
// two digits.
void append_exponent_form(std::string& out, float value);
// The same written at `at`, which has room for exponent_form_size
// characters; gives the end.
inline constexpr size_t exponent_form_size = 16;
char* put_exponent_form(char* at, float value);
std::string exponent_form(float value);

// The number-to-text form of a single (" 1.25", "-.5", " 1E-09"), added to
// `out`: the same text as number_text, made without its allocations for
// exports of millions of samples.
void append_number_text(std::string& out, float value);
// The same written at `at`, with room for number_text_size characters.
inline constexpr size_t number_text_size = 24;
char* put_number_text(char* at, float value);

// "###0.0", "###0.0000", "####0": at least one integer digit and `decimals`
// places, rounded half away from zero on the value's 15-digit decimal form.
std::string fixed_form(double value, int decimals);

// The answer of an input box with the default title.
std::string ask(Platform& platform, const std::string& prompt, const std::string& default_text);

// A text file opened for output (emptied), gathered and written in large
// pieces. A file that cannot be made (no folder, a wildcard in the name)
// takes nothing, as writes to it fail.
class TextOutput {
 public:
  explicit TextOutput(const std::string& path);
  ~TextOutput() { close(); }
  std::string& buffer() { return buffer_; }
  void write_if_large();
  void close();

 private:
  std::ofstream out_;
  std::string buffer_;
};

}  // namespace tf
