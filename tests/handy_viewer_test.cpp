// The McSeis-3 handy viewer: its selection step, reached from the main
// panel's button, and the sample interval at offset 40 of the first record.
#include <gtest/gtest.h>

#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace {
std::vector<uint8_t> record_with_interval(int16_t dt, size_t size = 128) {
  std::vector<uint8_t> bytes(size, 0x11);
  put_at<int16_t>(bytes, 40, dt);
  return bytes;
}
std::string selected(const std::string& chosen) {
  return "click Utility.Command14\ndialog \"" + chosen + "\"\nclick HandyViewer.Command5\ndump HandyViewer\n";
}
}  // namespace

TEST(HandyViewer, SeveralRecordsGiveCountNameAndIntervalOfTheFirst) {
  TempDir dir;
  write_bytes(dir.file("rec001.dat"), record_with_interval(125));
  write_bytes(dir.file("rec002.dat"), record_with_interval(250));
  auto r = run(selected(several(dir, 1, 2, "dat")));
  EXPECT_TRUE(r.has({"\"event\":\"show\",\"panel\":\"HandyViewer\""}));
  EXPECT_TRUE(r.has({"\"title\":\"McSeis3 file selection\"", "\"filter\":\"Record |*.dat|All files|*.*|\"", "\"file\":\"*.*\"",
                     "\"flags\":512"}));
  EXPECT_EQ(texts_in(r.dump("HandyViewer"), {"Text6", "Text5", "Text2"}),
            (std::vector<std::string>{"2", "125", dir.str() + "//rec001.SU"}));
}

// One record: listed and counted 1; a record of under 42 bytes leaves dt
// as it was.
TEST(HandyViewer, ShortRecordLeavesTheIntervalAsItWas) {
  TempDir dir;
  write_bytes(dir.file("good.dat"), record_with_interval(500));
  write_bytes(dir.file("short.dat"), record_with_interval(999, 42));
  write_bytes(dir.file("tiny.dat"), std::vector<uint8_t>(41, 0x22));
  auto one = run(selected(dir.file("good.dat")));
  EXPECT_EQ(texts_in(one.dump("HandyViewer"), {"Text6", "Text5", "Text2"}),
            (std::vector<std::string>{"1", "500", dir.file("good.SU")}));
  auto exact = run(selected(dir.file("short.dat")));
  EXPECT_EQ(texts_in(exact.dump("HandyViewer"), {"Text5"}), (std::vector<std::string>{"999"}));
  auto tiny = run(selected(dir.file("tiny.dat")));
  EXPECT_EQ(texts_in(tiny.dump("HandyViewer"), {"Text5"}), (std::vector<std::string>{"0"}));
  auto missing = run(selected(dir.file("none.dat")));
  EXPECT_EQ(texts_in(missing.dump("HandyViewer"), {"Text5"}), (std::vector<std::string>{"0"}));
}
