// The viewers: the seismic file explorer reading header words by the list
// and bytes by position, the batch and history editor, and the bitmap
// digitiser writing clicked points. Input files are built here from the
// 240-byte header layout; expected values come from those bytes.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"
#include "viewers/picture_file.h"
#include "viewers/pick.h"

using namespace tf;
using namespace tf::test;

namespace {

constexpr int su_ns = 10;
constexpr size_t su_record = 240 + 4 * su_ns;

// Two traces; the first header carries the words the cases read.
std::vector<uint8_t> su_line() {
  std::vector<uint8_t> file(2 * su_record, 0);
  put_at<int32_t>(file, 0, 1);          // tracl
  put_at<int32_t>(file, 8, 1201);       // fldr
  put_at<int16_t>(file, 108, 25);       // delrt
  put_at<int16_t>(file, 110, 3);        // muts
  put_at<int16_t>(file, 114, su_ns);    // ns
  put_at<int16_t>(file, 116, 250);      // dt
  put_at<uint16_t>(file, 156, 40000);   // year: above 32767
  put_at<int32_t>(file, su_record + 8, 1202);
  return file;
}

// The first SEG-Y trace header of a file that begins with 3600 bytes of
// file headers.
std::vector<uint8_t> segy_of(const std::vector<uint8_t>& su) {
  std::vector<uint8_t> file(3600, 0x20);
  file.insert(file.end(), su.begin(), su.end());
  return file;
}

std::string text_after(const RunResult& r, const std::string& panel, const std::string& control) {
  return text_in(r.dump(panel), control);
}

std::string explorer_run(const std::string& file, const std::string& steps) {
  return "session current_file \"" + file + "\"\nshow pick\n" + steps + "\ndump pick\n";
}

}  // namespace

TEST(ExplorerWords, ListHas79RowsAndRow76BeginsWith75) {
  ASSERT_EQ(explorer_word_texts.size(), 79u);
  EXPECT_EQ(explorer_word_texts[75].substr(0, 4), "75  ");
  EXPECT_EQ(explorer_word_texts[38], "39  Number of samples in this trace.");
}

TEST(ExplorerWords, StaticsToMuteStartAreReadFourBytesWideAndTheTailNotAtAll) {
  struct Case {
    int row, offset, width;
  } cases[] = {{1, 0, 4}, {8, 28, 2}, {30, 96, 2}, {31, 98, 4}, {36, 108, 4}, {37, 110, 4},
               {38, 112, 2}, {39, 114, 2}, {71, 178, 2}, {72, 0, 0}, {79, 0, 0}, {0, 0, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.row);
    EXPECT_EQ(explorer_word(c.row).offset, c.offset);
    EXPECT_EQ(explorer_word(c.row).width, c.width);
  }
}

TEST(Explorer, TranscriptOfTheWordsOfAnSuFile) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_line());
  auto r = run_script_file("pick_words", dir.str());
  auto expected = expected_transcript("pick_words");
  EXPECT_EQ(r.lines, expected);
}

TEST(Explorer, ReadsEachModeAndTypeAsTheBytesHoldIt) {
  TempDir dir;
  const auto su = su_line();
  write_bytes(dir.file("line.su"), su);
  write_bytes(dir.file("line.sgy"), segy_of(su));
  const std::string file = dir.file("line.su");
  struct Case {
    const char* what;
    std::string file, steps, text2, text3;
  } cases[] = {
      {"defaults: ns at 115", file, "click pick.Command2", "115", "10"},
      {"SEG-Y adds 3600", dir.file("line.sgy"), "click pick.Option2\nclick pick.Command2", "3715", "10"},
      {"delrt read with muts", file, "select pick.Combo1 35\nclick pick.Command2", "109",
       std::to_string(25 + 3 * 65536)},
      {"a 2-byte word above 32767 is negative", file, "select pick.Combo1 59\nclick pick.Command2", "157",
       std::to_string(40000 - 65536)},
      {"and stays negative swapped", file, "check pick.Check1 on\nselect pick.Combo1 59\nclick pick.Command2", "157",
       std::to_string(static_cast<int16_t>(((40000 & 0xFF) << 8) | (40000 >> 8)))},
      {"swapped ns", file, "check pick.Check1 on\nclick pick.Command2", "115", std::to_string(10 * 256)},
      {"Other: int16 at a position", file, "click pick.Option3\nset pick.Text2 117\nclick pick.Command2", "117", "250"},
      {"Other: int32", file, "click pick.Option3\nset pick.Text2 9\nclick pick.Option5\nclick pick.Command2", "9", "1201"},
      {"Other: float", file, "click pick.Option3\nset pick.Text2 9\nclick pick.Option7\nclick pick.Command2", "9",
       field_text(value_at<float>(su, 8))},
      {"Other: word is always empty", file, "click pick.Option3\nset pick.Text2 9\nclick pick.Option6\nclick pick.Command2",
       "9", ""},
      {"Other: position 0 reads nothing", file, "click pick.Option3\nclick pick.Command2", "0", "0"},
      {"Other: past the end reads nothing", file, "click pick.Option3\nset pick.Text2 99999\nclick pick.Command2", "99999", "0"},
      {"Other: a name of 3 characters does nothing", "a.b",
       "click pick.Option3\nset pick.Text2 9\nclick pick.Command2", "9", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    auto r = run(explorer_run(c.file, c.steps));
    EXPECT_EQ(text_after(r, "pick", "Text2"), c.text2);
    EXPECT_EQ(text_after(r, "pick", "Text3"), c.text3);
  }
  EXPECT_FALSE(std::filesystem::exists("a.b"));
}

TEST(Explorer, ModesLockThePositionOrTheList) {
  auto r = run("show pick\nclick pick.Option3\ndump pick\n");
  expect_in(control_in_dump(r.dump("pick"), "Text2"), {"\"locked\":false"});
  expect_in(control_in_dump(r.dump("pick"), "Combo1"), {"\"enabled\":false"});
  r = run("show pick\nclick pick.Option3\nclick pick.Option2\ndump pick\n");
  expect_in(control_in_dump(r.dump("pick"), "Text2"), {"\"locked\":true"});
  expect_in(control_in_dump(r.dump("pick"), "Combo1"), {"\"enabled\":true"});
}

TEST(Explorer, NotPossibleLeavesTheFileOpenForTheNextGo) {
  TempDir dir;
  auto first = su_line(), second = su_line();
  put_at<int16_t>(second, 114, 77);
  write_bytes(dir.file("a.su"), first);
  write_bytes(dir.file("b.su"), second);
  auto r = run(explorer_run(dir.file("a.su"), "select pick.Combo1 71\nclick pick.Command2\nset pick.Text1 \"" +
                                                  dir.file("b.su") + "\"\nselect pick.Combo1 38\nclick pick.Command2"));
  EXPECT_TRUE(r.has({box_line("Not possible")}));
  EXPECT_EQ(text_after(r, "pick", "Text3"), "10");  // a.su's ns, not b.su's 77
  r = run(explorer_run(dir.file("a.su"), "set pick.Text1 \"" + dir.file("b.su") + "\"\nclick pick.Command2"));
  EXPECT_EQ(text_after(r, "pick", "Text3"), "77");
}

TEST(Explorer, BadFilesGiveZeroOrNothingAndAreNotChanged) {
  TempDir dir;
  write_bytes(dir.file("three.su"), {1, 2, 3});
  auto r = run(explorer_run(dir.file("three.su"), "click pick.Command2"));
  EXPECT_EQ(text_after(r, "pick", "Text4"), "3");
  EXPECT_EQ(text_after(r, "pick", "Text3"), "0");  // ns lies past the end
  // tracl: the three bytes there, the missing one 0.
  r = run(explorer_run(dir.file("three.su"), "select pick.Combo1 0\nclick pick.Command2"));
  EXPECT_EQ(text_after(r, "pick", "Text3"), std::to_string(0x030201));
  EXPECT_EQ(read_bytes(dir.file("three.su")), (std::vector<uint8_t>{1, 2, 3}));
  // A cancelled dialog shows the start name and no size; GO on a missing
  // name creates it empty and shows 0.
  r = run("show pick\nclick pick.Command1\nset pick.Text1 \"" + dir.file("new.su") + "\"\nclick pick.Command2\ndump pick\n");
  EXPECT_TRUE(r.has({"\"event\":\"dialog\"", "\"title\":\"Qualtor File selection\"",
                     "\"filter\":\"Seismic Unix (SU)|*.SU|SEG-Y files|*.SGY|All files|*.*|\"", "\"file\":\"*.SU\"",
                     "\"flags\":4096", "\"filter_index\":1"}));
  EXPECT_EQ(text_after(r, "pick", "Text4"), "");
  EXPECT_EQ(text_after(r, "pick", "Text3"), "0");
  EXPECT_EQ(std::filesystem::file_size(dir.file("new.su")), 0u);
}

TEST(Explorer, SelectingAFileShowsItsSizeAndMakesItCurrent) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_line());
  auto r = run("show pick\ndialog \"" + dir.file("line.su") + "\"\nclick pick.Command1\ndump pick\ndump session\n");
  EXPECT_EQ(text_after(r, "pick", "Text4"), std::to_string(2 * su_record));
  EXPECT_TRUE(r.has({"\"current_file\":" + json(dir.file("line.su"))}));
}

TEST(Explorer, EditFileOpensTheEditorOnTheChosenFile) {
  TempDir dir;
  write_text(dir.file("run.bat"), "suwind < a.su > b.su\r\n");
  auto r = run(explorer_run(dir.file("run.bat"), "click pick.Command4\ndump editor"));
  EXPECT_TRUE(r.has({"\"event\":\"show\",\"panel\":\"editor\""}));
  EXPECT_EQ(text_after(r, "editor", "RichTextBox1"), "suwind < a.su > b.su\\r\\n");
  expect_in(r.dump("editor"), {"\"caption\":" + json("Brenholt text editor: " + dir.file("run.bat"))});
}

// The explorer's "Other" mode reads one word at the place of any trace:
// the time does not grow with the trace number.
TEST(Explorer, ReadsAWordOfTraceOneMillionWithoutReadingTheTracesBefore) {
  TempDir dir;
  const std::string big = dir.file("big.su");
  constexpr int64_t traces = 1'000'000, record = 240 + 4 * 250;
  {
    std::ofstream out(big, std::ios::binary);
    out.seekp(traces * record - 1);
    out.put('\0');  // a sparse file of a million traces
  }
  auto put_ns = [&](int64_t trace, int16_t ns) {
    std::fstream f(big, std::ios::binary | std::ios::in | std::ios::out);
    f.seekp((trace - 1) * record + 114);
    f.write(reinterpret_cast<const char*>(&ns), 2);
  };
  put_ns(1, 250);
  put_ns(traces, 251);
  auto timed = [&](int64_t trace, std::string& value) {
    const auto start = std::chrono::steady_clock::now();
    auto r = run(explorer_run(big, "click pick.Option3\nset pick.Text2 " + std::to_string((trace - 1) * record + 115) +
                                       "\nclick pick.Command2"));
    value = text_after(r, "pick", "Text3");
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  std::string first, last;
  const double t1 = timed(1, first), tn = timed(traces, last);
  EXPECT_EQ(first, "250");
  EXPECT_EQ(last, "251");
  EXPECT_LT(tn, 0.5);
  EXPECT_LT(tn, 10 * t1 + 0.05);
}

// ---------------------------------------------------------------- editor

TEST(Editor, TranscriptOfFindReplaceSaveAndPrint) {
  TempDir dir;
  write_text(dir.file("run.bat"), "suwind key=tracf    min=1 < a.su > b.su\r\nsuwind key=tracf min=2\r\n");
  auto r = run_script_file("editor_find", dir.str());
  EXPECT_EQ(r.lines, expected_transcript("editor_find"));
  // Four blanks less one pass of two by one leave three.
  EXPECT_EQ(text_of(dir.file("saved.txt")), "suwind key=tracf   min=1 < a.su > b.su\r\nsuwind key=tracf min=2\r\n");
}

TEST(Editor, LinesCountTheLastLineEvenWhenEmpty) {
  struct Case {
    std::string text, shown;
  } cases[] = {{"", "Lines: 1"}, {"a", "Lines: 1"}, {"a\r\nb", "Lines: 2"}, {"a\r\nb\r\n", "Lines: 3"}, {"a\nb\n", "Lines: 3"}};
  for (const auto& c : cases) {
    TempDir dir;
    write_text(dir.file("h.txt"), c.text);
    auto r = run("session editor_file \"" + dir.file("h.txt") + "\"\nshow editor\ndump editor\n");
    expect_in(control_in_dump(r.dump("editor"), "Label3"), {"\"caption\":\"" + c.shown + "\""});
  }
}

TEST(Editor, AMissingFileGivesTheMessageAndAnEmptyWindow) {
  for (const std::string name : {std::string(), std::string("/no/such/history.txt")}) {
    auto r = run("session editor_file \"" + name + "\"\nshow editor\ndump editor\n");
    EXPECT_TRUE(r.has({box_line(name + " file does not exists ")}));
    EXPECT_EQ(text_after(r, "editor", "RichTextBox1"), "");
    EXPECT_TRUE(r.has({"\"event\":\"show\",\"panel\":\"editor\""}));
  }
}

TEST(Editor, ASearchThatFindsNothingBeepsAndKeepsTheSelection) {
  TempDir dir;
  write_text(dir.file("h.txt"), "one two three");
  auto r = run("session editor_file \"" + dir.file("h.txt") +
               "\"\nshow editor\nselect-text editor.RichTextBox1 4 3\ninput \"four\"\nclick editor.Find\n"
               "input \"\"\nclick editor.Find\ndump editor\n");
  EXPECT_EQ(r.with({"\"event\":\"beep\""}).size(), 1u);
  expect_in(control_in_dump(r.dump("editor"), "RichTextBox1"), {"\"sel_start\":4,\"sel_length\":3"});
}

TEST(Editor, OpenLoadsTheChosenFileAndTheToolbarStopCloses) {
  TempDir dir;
  write_text(dir.file("h.txt"), "history");
  auto r = run("session editor_file \"" + dir.file("h.txt") + "\"\nshow editor\ndialog \"" + dir.file("h.txt") +
               "\"\nclick editor.open\ndump editor\ndump session\npress editor.Toolbar1 stop\n");
  EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"Text selection\"",
                     "\"filter\":\"SU history File |*.TXT|ll files|*.*|\",\"file\":\"*.TXT\""}));
  EXPECT_EQ(text_after(r, "editor", "RichTextBox1"), "history");
  EXPECT_TRUE(r.has({"\"event\":\"unload\",\"panel\":\"editor\""}));
}

TEST(Editor, TheFontDialogDressesTheText) {
  auto r = run("session editor_file \"\"\nshow editor\nfont \"Courier New\" 12 bold\nclick editor.Font\ndump editor\n");
  EXPECT_TRUE(r.has({"\"event\":\"font-dialog\"", "\"answer_name\":\"Courier New\""}));
  expect_in(control_in_dump(r.dump("editor"), "RichTextBox1"),
            {"\"font_name\":\"Courier New\",\"font_size\":12,\"font_bold\":true"});
  r = run("session editor_file \"\"\nshow editor\nfont-cancel\nclick editor.Font\ndump editor\n");
  expect_in(control_in_dump(r.dump("editor"), "RichTextBox1"), {"\"font_name\":\"MS Sans Serif\""});
}

// ---------------------------------------------------------------- pictures

namespace {
// A 24-bit BMP of the given size, all one colour.
std::vector<uint8_t> bmp(int width, int height) {
  const int row = (3 * width + 3) / 4 * 4;
  std::vector<uint8_t> b(54 + static_cast<size_t>(row * height), 0x80);
  b[0] = 'B', b[1] = 'M';
  put_at<uint32_t>(b, 2, static_cast<uint32_t>(b.size()));
  put_at<uint32_t>(b, 6, 0);
  put_at<uint32_t>(b, 10, 54);
  put_at<uint32_t>(b, 14, 40);
  put_at<int32_t>(b, 18, width);
  put_at<int32_t>(b, 22, height);
  put_at<uint16_t>(b, 26, 1);
  put_at<uint16_t>(b, 28, 24);
  put_at<uint32_t>(b, 30, 0);
  put_at<uint32_t>(b, 34, static_cast<uint32_t>(row * height));
  for (size_t at : {38, 42, 46, 50}) put_at<uint32_t>(b, at, 0);
  return b;
}

// The markers of a baseline JPEG up to its frame header.
std::vector<uint8_t> jpeg_head(int width, int height) {
  std::vector<uint8_t> b{0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0};
  const uint8_t frame[] = {0xFF, 0xC0, 0x00, 0x11, 8,
                           static_cast<uint8_t>(height >> 8), static_cast<uint8_t>(height),
                           static_cast<uint8_t>(width >> 8), static_cast<uint8_t>(width), 3};
  b.insert(b.end(), std::begin(frame), std::end(frame));
  b.resize(b.size() + 9, 0);
  return b;
}
}  // namespace

TEST(PictureSize, ReadsBmpJpegAndPlaceableMetafilesAndRefusesTheRest) {
  TempDir dir;
  write_bytes(dir.file("a.bmp"), bmp(200, 100));
  write_bytes(dir.file("a.jpg"), jpeg_head(640, 480));
  std::vector<uint8_t> wmf(22, 0);
  put_at<uint32_t>(wmf, 0, 0x9AC6CDD7u);
  put_at<int16_t>(wmf, 10, 1440);  // right: one inch at 1440 units an inch
  put_at<int16_t>(wmf, 12, 720);
  put_at<uint16_t>(wmf, 14, 1440);
  write_bytes(dir.file("a.wmf"), wmf);
  write_bytes(dir.file("garbled.bmp"), {'B', 'M', 1, 2, 3});
  write_text(dir.file("text.jpg"), "not a picture");
  struct Case {
    std::string file;
    bool read;
    int width, height;
  } cases[] = {{"a.bmp", true, 200, 100}, {"a.jpg", true, 640, 480}, {"a.wmf", true, 96, 48},
               {"garbled.bmp", false, 0, 0}, {"text.jpg", false, 0, 0}, {"missing.bmp", false, 0, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    int w = 0, h = 0;
    EXPECT_EQ(picture_size(dir.file(c.file), w, h), c.read);
    EXPECT_EQ(w, c.width);
    EXPECT_EQ(h, c.height);
  }
}

// ---------------------------------------------------------------- digitiser

namespace {
RunnerOptions in_folder(const TempDir& dir) {
  RunnerOptions o;
  o.system_dir = dir.str();
  o.app_dir = dir.str();
  return o;
}

std::string points_line(const std::vector<std::string>& items) {
  // Columns of 14: each item after the first from the next multiple of 14.
  std::string line;
  for (size_t i = 0; i < items.size(); ++i) {
    if (i) line.append((line.size() / 14 + 1) * 14 - line.size(), ' ');
    line += items[i];
  }
  return line + "\r\n";
}
}  // namespace

TEST(Digitiser, TranscriptOfASessionOnABitmap) {
  TempDir dir;
  write_bytes(dir.file("map.bmp"), bmp(200, 100));
  auto r = run_script_file("digit_session", dir.str(), in_folder(dir));
  EXPECT_EQ(r.lines, expected_transcript("digit_session"));
  // Digits cut to 2 places; Z 100, then the datum 500 less the answer 20.
  EXPECT_EQ(text_of(dir.file("100.dat")), points_line({" 12.34 ", " 20.5 ", " 100 "}) +
                                              points_line({" 300 ", " 400 ", " 480 "}) +
                                              points_line({" 450.25 ", " 100 ", " 480 "}));
}

TEST(Digitiser, TheFileIsNamedByZInThePicturesFolder) {
  struct Case {
    std::string answer, name;
  } cases[] = {{"100", "100.dat"}, {"-5", "-5.dat"}, {"12.5", "12.5.dat"}, {"abc", "0.dat"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    TempDir dir;
    write_bytes(dir.file("map.bmp"), bmp(20, 10));
    run("show digit\ndialog \"" + dir.file("map.bmp") + "\"\nclick digit.Commandx1\ninput \"" + c.answer +
            "\"\nclick-picture digit.Image2 5 5\nclick-picture digit.Image2 50 50\n",
        in_folder(dir));
    EXPECT_TRUE(std::filesystem::exists(dir.file(c.name)));
  }
}

TEST(Digitiser, APointAtXOrYZeroDrawsNoLineToTheNext) {
  TempDir dir;
  write_bytes(dir.file("map.bmp"), bmp(20, 10));
  auto r = run("show digit\ndialog \"" + dir.file("map.bmp") +
                   "\"\nclick digit.Commandx1\nclick-picture digit.Image2 5 5\n"
                   "click-picture digit.Image2 0 50\nclick-picture digit.Image2 10 10\nclick-picture digit.Image2 20 20\n"
                   "dump digit\n",
               in_folder(dir));
  expect_in(control_in_dump(r.dump("digit"), "Image2"), {"\"lines\":[{\"x1\":10,\"y1\":10,\"x2\":20,\"y2\":20"});
  EXPECT_EQ(split_lines(text_of(dir.file("100.dat"))).size(), 3u);
}

TEST(Digitiser, SettingsRoundTripThroughPlotdigIni) {
  TempDir dir;
  write_bytes(dir.file("map.bmp"), bmp(20, 10));
  // No INI: the defaults.
  auto r = run("show digit\ndump digit\n", in_folder(dir));
  EXPECT_EQ(texts_in(r.dump("digit"), {"TextX2", "TextX3", "TextX4", "TextX5"}),
            (std::vector<std::string>{"0 ", "0 ", "100 ", "100"}));
  expect_in(control_in_dump(r.dump("digit"), "f1"), {"\"caption\":" + json("c:\\vedra\\data\\aire.bmp")});
  EXPECT_FALSE(std::filesystem::exists(dir.file("plotdig.ini")));
  // Set, close: written; open again: read back.
  run("show digit\ndialog \"" + dir.file("map.bmp") +
          "\"\nclick digit.Commandx1\nset digit.TextX2 \"-50\"\nset digit.TextX4 \"750\"\nset digit.TextX3 \"10\"\n"
          "set digit.TextX5 \"90\"\ninput 4\nclick digit.dec\ninput 7\nclick digit.lw\ncolor 255\nclick digit.L_color\n"
          "close digit\n",
      in_folder(dir));
  const std::string ini = text_of(dir.file("plotdig.ini"));
  expect_in(ini, {"[Digitizalisation]", "F1=" + dir.file("map.bmp"), "F2=c:\\vedra\\data\\aire.bmp", "P2=-50",
                  "P3=10", "P4=750", "P5=90", "P6=4", "P7=7", "P8=255"});
  r = run("show digit\ndump digit\nclose digit\n", in_folder(dir));
  EXPECT_EQ(texts_in(r.dump("digit"), {"TextX2", "TextX3", "TextX4", "TextX5"}),
            (std::vector<std::string>{"-50", "10", "750", "90"}));
  expect_in(control_in_dump(r.dump("digit"), "f1"), {"\"caption\":" + json(dir.file("map.bmp"))});
  EXPECT_EQ(text_of(dir.file("plotdig.ini")), ini);
}

TEST(Digitiser, EndWritesTheSettingsAndEndsTheProgram) {
  TempDir dir;
  auto r = run("show digit\nclick digit.fin\nshow pick\n", in_folder(dir));
  EXPECT_TRUE(r.has({"\"event\":\"quit\""}));
  EXPECT_FALSE(r.has({"\"panel\":\"pick\""}));
  EXPECT_TRUE(std::filesystem::exists(dir.file("plotdig.ini")));
}

TEST(Digitiser, BmpAndJpgLoadAGarbledPictureLeavesTheFormerOne) {
  TempDir dir;
  write_bytes(dir.file("map.bmp"), bmp(200, 100));
  write_bytes(dir.file("photo.jpg"), jpeg_head(64, 48));
  write_bytes(dir.file("bad.bmp"), {'B', 'M', 0});
  auto load = [&](const std::string& name) {
    return "dialog \"" + dir.file(name) + "\"\nclick digit.Commandx1\ndump digit\n";
  };
  auto r = run("show digit\n" + load("photo.jpg"), in_folder(dir));
  expect_in(control_in_dump(r.dump("digit"), "Image2"), {"\"width\":64,\"height\":48"});
  r = run("show digit\n" + load("map.bmp") + load("bad.bmp"), in_folder(dir));
  EXPECT_TRUE(r.has({"\"event\":\"picture\"", "bad.bmp", "\"loaded\":false"}));
  const std::string image = control_in_dump(r.dump("digit"), "Image2");
  expect_in(image, {"\"text\":" + json(dir.file("map.bmp")), "\"width\":200,\"height\":100", "\"scale_left\":0",
                    "\"scale_top\":100", "\"scale_width\":100", "\"scale_height\":-100"});
  // The recent files took both names all the same.
  expect_in(control_in_dump(r.dump("digit"), "f1"), {json(dir.file("bad.bmp"))});
  expect_in(control_in_dump(r.dump("digit"), "f2"), {json(dir.file("map.bmp"))});
}

TEST(Digitiser, MenuAndInfoTexts) {
  auto r = run("show digit\nclick digit.h\nclick digit.CommandX2\ninput-cancel\nclick digit.lw\nclick digit.L_color\n");
  const std::string help =
      " How to use PLOTDIG Module\r\nLoad any BMP or JPG file  \r\nEnter X min and max, Y min and max  \r\n"
      "Then double click to start digitalization  \r\nThen click on the point you need X,Y coordinates  \r\n"
      "Press right mouse button to end\r\n  \r\n";
  EXPECT_EQ(r.with({box_line(help)}).size(), 2u);
  EXPECT_TRUE(r.has({"\"prompt\":\"Enter the line width (1-10)\"", "\"default\":\"2\""}));
  EXPECT_TRUE(r.has({"\"event\":\"color-dialog\",\"title\":\"Qualtor Dead trace Color selection\""}));
}

TEST(Digitiser, NoToSaveKeepsTheSessionAndItsFileOpen) {
  TempDir dir;
  write_bytes(dir.file("map.bmp"), bmp(20, 10));
  run("show digit\ndialog \"" + dir.file("map.bmp") +
          "\"\nclick digit.Commandx1\nclick-picture digit.Image2 5 5\nclick-picture digit.Image2 10 10\n"
          "reply no\nclick-picture digit.Image2 1 1 right\nclick-picture digit.Image2 20 20\n",
      in_folder(dir));
  EXPECT_EQ(text_of(dir.file("100.dat")),
            points_line({" 10 ", " 10 ", " 100 "}) + points_line({" 20 ", " 20 ", " 100 "}));
}

TEST(Digitiser, PastAThousandPointsClicksWriteNothingAndStillDraw) {
  TempDir dir;
  write_bytes(dir.file("map.bmp"), bmp(20, 10));
  std::string script = "show digit\ndialog \"" + dir.file("map.bmp") + "\"\nclick digit.Commandx1\nclick-picture digit.Image2 5 5\n";
  for (int i = 1; i <= 1003; ++i) script += "click-picture digit.Image2 " + std::to_string(1 + i % 50) + " 7\n";
  script += "dump digit\n";
  auto r = run(script, in_folder(dir));
  EXPECT_EQ(split_lines(text_of(dir.file("100.dat"))).size(), 1000u);
  const std::string dump = r.dump("digit");
  size_t lines = 0;
  for (size_t at = dump.find("\"x1\":"); at != std::string::npos; at = dump.find("\"x1\":", at + 1)) ++lines;
  EXPECT_EQ(lines, 1002u);  // every click after the first drew
  EXPECT_NE(dump.find("\"x2\":4,\"y2\":7,\"width\":2,\"color\":0}]"), std::string::npos);
}

TEST(Explorer, HelpBoxLines) {
  auto r = run("show pick\nclick pick.Command3\n");
  EXPECT_TRUE(r.has({box_line("How to use this module ? \r\nYou can read any value of a SU or SEG-Y seismic file \r\n"
                              " 1.- Select the word to display \r\n 2.- Select the file type SU or SEG-Y\r\n"
                              " 3.- click on GO\r\nThe first bit of this word and the value are displayed \r\n",
                              "information")}));
}

TEST(Explorer, SwapBytesHasNoEffectInTheOtherMode) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_line());
  auto r = run(explorer_run(dir.file("line.su"), "check pick.Check1 on\nclick pick.Option3\nset pick.Text2 115\nclick pick.Command2"));
  EXPECT_EQ(text_after(r, "pick", "Text3"), "10");
  EXPECT_FALSE(r.has({"Not available"}));
}

TEST(Editor, TheToolbarAndTheMenuSaveAndPrintAlike) {
  TempDir dir;
  write_text(dir.file("h.txt"), "line one\r\nline two\r\n");
  const std::string start = "session editor_file \"" + dir.file("h.txt") + "\"\nshow editor\n";
  auto menu = run(start + "dialog \"" + dir.file("a.txt") + "\"\nclick editor.save\nclick editor.Print\n");
  auto bar = run(start + "dialog \"" + dir.file("b.txt") + "\"\npress editor.Toolbar1 save\npress editor.Toolbar1 print\n");
  auto events = [](const RunResult& r) {
    std::vector<std::string> kept;
    for (const auto& line : r.lines)
      if (line.find("\"event\":\"dialog\"") != std::string::npos || line.find("print") != std::string::npos)
        kept.push_back(line.substr(0, line.find("\"answer\"")));
    return kept;
  };
  EXPECT_EQ(events(menu), events(bar));
  EXPECT_TRUE(bar.has({"{\"event\":\"print-dialog\",\"flags\":264,\"selection\":false}"}));
  EXPECT_TRUE(bar.has({"{\"event\":\"print\",\"text\":\"line one\\r\\nline two\\r\\n\"}"}));
  EXPECT_EQ(text_of(dir.file("a.txt")), "line one\r\nline two\r\n");
  EXPECT_EQ(text_of(dir.file("b.txt")), "line one\r\nline two\r\n");
}
