#include <gtest/gtest.h>

#include "frame/conventions.h"
#include "test_support.h"

using namespace tf;
using tf::test::error_number;

TEST(FieldNumbers, LeadingNumericPartCountsEmptyOrTextIsZero) {
  EXPECT_EQ(leading_number("1024"), 1024);
  EXPECT_EQ(leading_number("  250 ms"), 250);
  EXPECT_EQ(leading_number("-3.5abc"), -3.5);
  EXPECT_EQ(leading_number(".12"), 0.12);
  EXPECT_EQ(leading_number("1 2"), 12);  // blanks inside the digits are passed over
  EXPECT_EQ(leading_number("2E3"), 2000);
  EXPECT_EQ(leading_number("1e"), 1);
  for (const char* nothing : {"", " ", "abc", "*.dat"}) EXPECT_EQ(leading_number(nothing), 0) << nothing;
}

TEST(Narrowing, RoundsHalfToEvenAndOverflowIsError6) {
  EXPECT_EQ(to_i16(2.5), 2);
  EXPECT_EQ(to_i16(3.5), 4);
  EXPECT_EQ(to_i16(-2.5), -2);
  EXPECT_EQ(to_i32(0.5), 0);
  EXPECT_EQ(field_i16("12.5"), 12);
  EXPECT_EQ(to_i16(32767), 32767);
  EXPECT_EQ(to_i16(-32768), -32768);
  for (double v : {32768.0, -32769.0, 1e10}) EXPECT_EQ(error_number([&] { to_i16(v); }), 6) << v;
  EXPECT_EQ(error_number([] { to_i32(2147483648.0); }), 6);
  EXPECT_EQ(error_number([] { i16_mul(200, 200); }), 6);
  EXPECT_EQ(i16_mul(181, 181), 32761);
  EXPECT_EQ(error_number([] { i32_mul(70000, 70000); }), 6);
}

TEST(NumberText, SignBlankAndNoLeadingZero) {
  EXPECT_EQ(number_text(int64_t{1024}), " 1024");
  EXPECT_EQ(number_text(int64_t{-3}), "-3");
  EXPECT_EQ(number_text(0.12), " .12");
  EXPECT_EQ(number_text(-0.5), "-.5");
  EXPECT_EQ(number_text(0.0), " 0");
  EXPECT_EQ(number_text(100000.0), " 100000");
  EXPECT_EQ(number_text(0.1 + 0.2), " .3");  // 15 significant digits
  EXPECT_EQ(number_text(1e15), " 1E+15");
  EXPECT_EQ(number_text(0.0001), " .0001");
  EXPECT_EQ(number_text(0.00001), " 1E-05");
  EXPECT_EQ(number_text(0.1f), " .1");  // singles print with 7 digits
  EXPECT_EQ(field_text(int64_t{12}), "12");
  EXPECT_EQ(field_text(0.25), ".25");
}

TEST(PrintedLines, ItemsInColumnsOf14) {
  std::string line = PrintedLine().item("Trace").item(int64_t{12}).item(-1.5).item("end").str();
  //                    0             14            28            42
  EXPECT_EQ(line, std::string("Trace         ") + " 12          " + " " + "-1.5          " + "end\r\n");
  EXPECT_EQ(PrintedLine().item(int64_t{5}).str(), " 5 \r\n");
  // An item that reaches past a column boundary pushes the next one on.
  EXPECT_EQ(PrintedLine().item("0123456789ABCDEF").item("x").str(), "0123456789ABCDEF            x\r\n");
}

TEST(TokenReading, CommasAndLineEndsSeparateFields) {
  TokenReader r("12, 3.5,\"a, b\"\r\n  -4 7\r\nlast line\r\n");
  EXPECT_EQ(r.next_number(), 12);
  EXPECT_EQ(r.next_number(), 3.5);
  EXPECT_EQ(r.next_field(), "a, b");
  EXPECT_EQ(r.next_number(), -4);
  EXPECT_EQ(r.next_number(), 7);
  EXPECT_EQ(r.next_line(), "last line");
  EXPECT_TRUE(r.at_end());
  EXPECT_EQ(error_number([&] { r.next_number(); }), 62);  // input past end of file
}
