// The size calculator: SU and SEG-Y sizes, recording time and Nyquist
// frequency worked out at every change, and the key filters.
#include <gtest/gtest.h>

#include "operations_desk.h"
#include "su_files.h"

using namespace tf;
using namespace tf::test;

namespace {
// The calculator opened on a current file of 1024 samples at 1 ms, with 24
// channels found by an earlier panel.
struct Calculator : Desk<> {
  TempDir dir;
  Panel* panel = nullptr;
  Calculator() {
    write_bytes(dir.file("line.su"), su_file(1, 2, 1024, 1000, [](int, int, int) { return 0.0f; }));
    app.state.current_file = dir.file("line.su");
    app.state.nb_channels = 24;
    panel = &show("FileSize");
  }
};
}  // namespace

TEST(FileSize, DefaultsGiveSuAndSegySizesTimeAndNyquist) {
  Calculator c;
  Panel& p = *c.panel;
  EXPECT_EQ(p.text("Text4"), "1024");
  EXPECT_EQ(p.text("Text6"), "1");
  EXPECT_EQ(p.text("Text5"), "1248768");
  EXPECT_EQ(p["Label7"].caption, "Recording time=  1.024 s");
  EXPECT_EQ(p["Label8"].caption, "Nyquist frequency= 500");
  p.click("Option2");
  EXPECT_EQ(p.text("Text5"), "1252368");
  p.click("Option1");
  EXPECT_EQ(p.text("Text5"), "1248768");
}

TEST(FileSize, EveryFieldChangeRecomputes) {
  Calculator c;
  Panel& p = *c.panel;
  const std::pair<const char*, const char*> cases[] = {
      {"Text1", "48"}, {"Text2", "1"}, {"Text3", "2"}, {"Text4", "2048"}, {"Text6", ".5"}};
  for (const auto& [field, value] : cases) p.set_text(field, value);
  EXPECT_EQ(p.text("Text5"), field_text(48.0 * 1 * (2048 * 2 + 240)));
  EXPECT_EQ(p["Label7"].caption, "Recording time=  1.024 s");
  EXPECT_EQ(p["Label8"].caption, "Nyquist frequency= 1000");
}

TEST(FileSize, KeysOutsideTheFieldsSetBeep) {
  Calculator c;
  Panel& p = *c.panel;
  p.set_text("Text3", "");
  for (char k : std::string("1x2")) p.press_key("Text3", k);
  p.press_key("Text3", '3');
  EXPECT_EQ(p.text("Text3"), "12");
  p.press_key("Text6", '.');
  p.press_key("Text1", '.');
  EXPECT_EQ(c.beeps(), 3);
}

// No current file: 0 samples at 0 ms. The rate is set after the samples, so
// the Nyquist label keeps what the default rate gave.
TEST(FileSize, MissingCurrentFileGivesZerosAndKeepsNyquistCaption) {
  Desk<> d;
  Panel& p = d.show("FileSize");
  EXPECT_EQ(p.text("Text4"), "0");
  EXPECT_EQ(p.text("Text6"), "0");
  EXPECT_EQ(p.text("Text1"), "1");
  EXPECT_EQ(d.app.state.nb_channels, 1);
  EXPECT_EQ(p.text("Text5"), "2880");
  EXPECT_EQ(p["Label7"].caption, "Recording time=  0 s");
  EXPECT_EQ(p["Label8"].caption, "Nyquist frequency= 500");
}

TEST(FileSize, ScriptOfDroppedKeys) {
  TempDir dir;
  expect_script_in("file_size_keys", dir);
}
