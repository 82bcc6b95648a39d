#include <gtest/gtest.h>

#include "frame/helpers.h"
#include "frame/paths.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

// One pass: the search goes on behind what it replaced, by the length of
// what it found, so runs are halved, not emptied.
TEST(ReplaceAll, OnePassStepsByTheFoundLength) {
  const struct {
    std::string text, find, replacement, result;
  } cases[] = {
      {"a    b", "  ", " ", "a   b"},  // four blanks leave three
      {"a  b", " ", "", "a b"},        // removing blanks from a run of two leaves one
      {"x= 1 y= 2", "= ", " =", "x =1 y =2"},
      {"C:\\\\data\\\\x.su", "\\\\", "\\", "C:\\data\\x.su"},
  };
  for (auto c : cases) {
    Replace_All(c.text, c.find, c.replacement);
    EXPECT_EQ(c.text, c.result);
  }
}

TEST(FilterKey, DigitsPassOthersBeep) {
  Recording<> r;
  EXPECT_EQ(Filter_Key(r.platform, '7', "0123456789", true), '7');
  EXPECT_EQ(Filter_Key(r.platform, 8, "0123456789", true), 8);  // backspace allowed
  EXPECT_EQ(Filter_Key(r.platform, 'e', "E", true), 'e');       // case-insensitive
  EXPECT_TRUE(r.lines().empty());
  EXPECT_EQ(Filter_Key(r.platform, 'a', "0123456789", true), 0);
  EXPECT_EQ(Filter_Key(r.platform, 8, "0123456789", false), 0);
  EXPECT_EQ(r.lines(), std::vector<std::string>(2, "{\"event\":\"beep\"}"));
}

TEST(FileExists, PlainFilesAndWildcards) {
  TempDir dir;
  write_text(dir.file("LINE1.su"), "x");
  for (const char* there : {"LINE1.su", "*.SU", "LINE?.su"}) EXPECT_EQ(File_Exists(dir.file(there)), 1) << there;
  for (const char* not_there : {"nothing.su", "*.dat"}) EXPECT_EQ(File_Exists(dir.file(not_there)), 0) << not_there;
  EXPECT_EQ(File_Exists(dir.str()), 0);  // a folder is no file
  EXPECT_EQ(File_Exists(""), 0);
}

TEST(FolderOf, KeepsTheSeparatorAndWarnsOfBlanks) {
  TempDir dir;
  Recording<> r;
  std::string folder = "unchanged";
  Folder_Of(r.platform, dir.file("missing.lx5"), folder);
  EXPECT_EQ(folder, "unchanged");
  write_text(dir.file("demo.lx5"), "x");
  Folder_Of(r.platform, dir.file("demo.lx5"), folder);
  EXPECT_EQ(folder, dir.str() + sep);
  EXPECT_TRUE(r.lines().empty());

  write_text(dir.file("field data/demo.lx5"), "x");
  Folder_Of(r.platform, dir.file("field data/demo.lx5"), folder);
  EXPECT_EQ(folder, dir.file("field data") + sep);
  EXPECT_EQ(r.lines(), std::vector<std::string>{box_line(folder + " path name contain a space, VEDRA module cannot work "
                                                                   "properly, you must correct it using WINDOWS tools ",
                                                          "stop")});
}

TEST(ReadNsDt, ZeroWordsAreReplaced) {
  TempDir dir;
  Recording<> r;
  std::vector<uint8_t> header(240, 0);
  write_bytes(dir.file("zero.su"), header);
  Read_ns_dt(r.app, dir.file("zero.su"));
  EXPECT_EQ(std::pair(r.app.state.ns, int(r.app.state.dt)), std::pair(1024, 1));
  put_trace_words(header, 0, 0, 0, -5, 250);
  write_bytes(dir.file("neg.su"), header);
  Read_ns_dt(r.app, dir.file("neg.su"));
  EXPECT_EQ(std::pair(r.app.state.ns, int(r.app.state.dt)), std::pair(-5, 250));  // ns: a signed word, widened
}

TEST(Swap2, ExchangesBytesInSignedArithmetic) {
  const std::pair<int, int> cases[] = {{0x0102, 0x0201}, {0x00FF, 0xFF00}, {0xFF00, 0x00FF}, {0xFFFE, 0xFEFF}};
  for (auto [in, swapped] : cases) {
    int16_t out = 0;
    Swap2(static_cast<int16_t>(in), out);
    EXPECT_EQ(out, static_cast<int16_t>(swapped)) << in;
  }
}

TEST(ValueAfterKey, DigitsAndPointsUpToTheLineEnd) {
  Recording<> r;
  double result = -1;
  std::string text = "Number of Traces = 531\r\nTotal time window = 50.5\r\n", key = "number of traces";
  Value_After_Key(r.platform, text, key, result);
  EXPECT_EQ(result, 531);
  EXPECT_EQ(key, "NUMBER OF TRACES");  // made upper case in place
  EXPECT_EQ(text.substr(0, 6), "NUMBER");
  std::string minus = "OFFSET = -1 2\r\n", k2 = "offset";
  Value_After_Key(r.platform, minus, k2, result);
  EXPECT_EQ(result, 12);  // the sign is lost, "1 2" reads 12
  std::string no_end = "SAMPLES 512", k3 = "samples", absent = "X\r\n", k4 = "missing";
  Value_After_Key(r.platform, no_end, k3, result);  // no line end: untouched
  Value_After_Key(r.platform, absent, k4, result);  // no key: untouched, a beep
  EXPECT_EQ(result, 12);
  EXPECT_EQ(r.lines(), std::vector<std::string>{"{\"event\":\"beep\"}"});
}

TEST(KeepDecimals, TruncatesDoesNotRound) {
  double out = 0;
  Keep_Decimals(12.3456, 2, out);
  EXPECT_DOUBLE_EQ(out, 12.34);
  Keep_Decimals(-3.999, 1, out);
  EXPECT_DOUBLE_EQ(out, -3.9);
}
