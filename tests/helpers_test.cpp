#include <gtest/gtest.h>

#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "test_support.h"
#include "ui/headless/script_platform.h"

using namespace tf;
using namespace tf::test;

namespace {
struct Recorded {
  std::ostringstream out;
  ScriptPlatform platform{RunnerOptions{}, out};
  std::string transcript() const { return out.str(); }
};
}  // namespace

TEST(ReplaceAll, OnePassStepsByTheFoundLength) {
  std::string four = "a    b";
  Replace_All(four, "  ", " ");
  EXPECT_EQ(four, "a   b");  // four blanks leave three
  std::string two = "a  b";
  Replace_All(two, " ", "");
  EXPECT_EQ(two, "a b");  // removing blanks from a run of two leaves one
  std::string longer = "x= 1 y= 2";
  Replace_All(longer, "= ", " =");
  EXPECT_EQ(longer, "x =1 y =2");
  std::string path = "C:\\\\data\\\\x.su";
  Replace_All(path, "\\\\", "\\");
  EXPECT_EQ(path, "C:\\data\\x.su");
}

TEST(FilterKey, DigitsPassOthersBeep) {
  Recorded r;
  EXPECT_EQ(Filter_Key(r.platform, '7', "0123456789", true), '7');
  EXPECT_EQ(Filter_Key(r.platform, 8, "0123456789", true), 8);  // backspace allowed
  EXPECT_EQ(r.transcript(), "");
  EXPECT_EQ(Filter_Key(r.platform, 'a', "0123456789", true), 0);
  EXPECT_EQ(Filter_Key(r.platform, 8, "0123456789", false), 0);
  EXPECT_EQ(Filter_Key(r.platform, 'e', "E", true), 'e');  // case-insensitive
  EXPECT_EQ(r.transcript(), "{\"event\":\"beep\"}\n{\"event\":\"beep\"}\n");
}

TEST(FileExists, PlainFilesAndWildcards) {
  TempDir dir;
  write_bytes(dir.file("LINE1.su"), {1});
  EXPECT_EQ(File_Exists(dir.file("LINE1.su")), 1);
  EXPECT_EQ(File_Exists(dir.file("nothing.su")), 0);
  EXPECT_EQ(File_Exists(dir.str()), 0);  // a folder is no file
  EXPECT_EQ(File_Exists(dir.file("*.SU")), 1);
  EXPECT_EQ(File_Exists(dir.file("LINE?.su")), 1);
  EXPECT_EQ(File_Exists(dir.file("*.dat")), 0);
  EXPECT_EQ(File_Exists(""), 0);
}

TEST(FolderOf, KeepsTheSeparatorAndWarnsOfBlanks) {
  TempDir dir;
  Recorded r;
  std::string folder = "unchanged";
  Folder_Of(r.platform, dir.file("missing.lx5"), folder);
  EXPECT_EQ(folder, "unchanged");
  write_bytes(dir.file("demo.lx5"), {1});
  Folder_Of(r.platform, dir.file("demo.lx5"), folder);
  EXPECT_EQ(folder, dir.str() + sep);
  EXPECT_EQ(r.transcript(), "");

  std::filesystem::create_directories(dir.file("field data"));
  write_bytes(dir.file("field data/demo.lx5"), {1});
  Folder_Of(r.platform, dir.file("field data/demo.lx5"), folder);
  EXPECT_EQ(folder, dir.file("field data") + sep);
  EXPECT_NE(r.transcript().find(json(folder + " path name contain a space, VEDRA module cannot work properly, "
                                             "you must correct it using WINDOWS tools ")),
            std::string::npos);
  EXPECT_NE(r.transcript().find("\"icon\":\"stop\""), std::string::npos);
}

TEST(ReadNsDt, ZeroWordsAreReplaced) {
  TempDir dir;
  Recorded r;
  App app(r.platform);
  std::vector<uint8_t> header(240, 0);
  put_at<int16_t>(header, 114, 0);
  put_at<int16_t>(header, 116, 0);
  write_bytes(dir.file("zero.su"), header);
  Read_ns_dt(app, dir.file("zero.su"));
  EXPECT_EQ(app.state.ns, 1024);
  EXPECT_EQ(app.state.dt, 1);
  put_at<int16_t>(header, 114, -5);
  put_at<int16_t>(header, 116, 250);
  write_bytes(dir.file("neg.su"), header);
  Read_ns_dt(app, dir.file("neg.su"));
  EXPECT_EQ(app.state.ns, -5);  // a signed word, widened
  EXPECT_EQ(app.state.dt, 250);
}

TEST(Swap2, ExchangesBytesInSignedArithmetic) {
  int16_t out = 0;
  Swap2(0x0102, out);
  EXPECT_EQ(out, 0x0201);
  Swap2(static_cast<int16_t>(0x00FF), out);
  EXPECT_EQ(out, static_cast<int16_t>(0xFF00));
  Swap2(static_cast<int16_t>(0xFF00), out);
  EXPECT_EQ(out, 0x00FF);
  Swap2(-2, out);  // 0xFFFE
  EXPECT_EQ(out, static_cast<int16_t>(0xFEFF));
}

TEST(ValueAfterKey, DigitsAndPointsUpToTheLineEnd) {
  Recorded r;
  double result = -1;
  std::string text = "Number of Traces = 531\r\nTotal time window = 50.5\r\n";
  std::string key = "number of traces";
  Value_After_Key(r.platform, text, key, result);
  EXPECT_EQ(result, 531);
  EXPECT_EQ(key, "NUMBER OF TRACES");  // made upper case in place
  EXPECT_EQ(text.substr(0, 6), "NUMBER");
  std::string minus = "OFFSET = -1 2\r\n", k2 = "offset";
  Value_After_Key(r.platform, minus, k2, result);
  EXPECT_EQ(result, 12);  // the sign is lost, "1 2" reads 12
  std::string no_end = "SAMPLES 512", k3 = "samples";
  Value_After_Key(r.platform, no_end, k3, result);
  EXPECT_EQ(result, 12);  // no line end: untouched
  std::string absent = "X\r\n", k4 = "missing";
  Value_After_Key(r.platform, absent, k4, result);
  EXPECT_EQ(result, 12);
  EXPECT_EQ(r.transcript(), "{\"event\":\"beep\"}\n");
}

TEST(KeepDecimals, TruncatesDoesNotRound) {
  double out = 0;
  Keep_Decimals(12.3456, 2, out);
  EXPECT_DOUBLE_EQ(out, 12.34);
  Keep_Decimals(-3.999, 1, out);
  EXPECT_DOUBLE_EQ(out, -3.9);
  Keep_Decimals(5, 3, out);
  EXPECT_DOUBLE_EQ(out, 5);
}
