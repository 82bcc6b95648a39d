// Record resizing: the fields read from the input, the constancy walk with
// its boxes, the batch line of the front tab, and its run by stand-in tools.
#include <gtest/gtest.h>

#include "operations_desk.h"
#include "stand_in_tools.h"
#include "su_files.h"

using namespace tf;
using namespace tf::test;

namespace {
// The folders come first: the platform is made with the application's.
struct Folders {
  TempDir app_dir, dir;
};
struct Resizing : Folders, Desk<SyncBatchPlatform> {
  Panel* panel = nullptr;
  explicit Resizing(const std::vector<uint8_t>& input) : Desk(options(app_dir)) {
    write_bytes(dir.file("line.su"), input);
    app.state.current_file = dir.file("line.su");
    panel = &show("rezize");
  }
  static RunnerOptions options(const TempDir& app_dir) {
    RunnerOptions o;
    o.app_dir = app_dir.str();
    return o;
  }
  std::string go(int tab) {
    panel->select_tab("SSTab1", tab);
    panel->click("Command3");
    return text_of(app_dir.file("batch.bat"));
  }
};

std::vector<uint8_t> records(int count, int channels, int ns = 500, int dt = 250) {
  return su_file(count, channels, ns, dt, [](int r, int c, int i) { return static_cast<float>(r + c + i); });
}
}  // namespace

TEST(Rezize, FieldsFromTheInputAndNoBoxForConstantTraces) {
  Resizing r(records(5, 24));
  EXPECT_TRUE(r.messages().empty());
  Panel& p = *r.panel;
  const std::pair<const char*, const char*> fields[] = {
      {"Text1", nullptr}, {"Text3", "5"},    {"Text4", "24"},   {"Text8", "120"},  {"Text5", "500"},
      {"Text6", "250"},   {"Text7", "125"},  {"Text12", "125"}, {"Text13", "250"}, {"Text14", "250"},
      {"Text15", "500"},  {"Text16", "500"}, {"Text11", "125"}, {"Text17", "125"}, {"Text9", "1"},
      {"Text10", "24"},
  };
  for (const auto& [field, value] : fields)
    if (value) EXPECT_EQ(p.text(field), value) << field;
  EXPECT_EQ(p.text("Text1"), r.dir.file("line.su"));
  EXPECT_EQ(p.text("Text2"), r.dir.file("line_new.su"));
}

TEST(Rezize, EveryTraceOfAnotherLengthOrRateShowsItsBox) {
  auto file = records(1, 6);
  for (size_t t : {1, 3, 4}) put_at<int16_t>(file, t * (240 + 4 * 500) + 114, 499);
  put_at<int16_t>(file, 5 * (240 + 4 * 500) + 116, 500);
  Resizing r(file);
  const std::string ns_box = box_line("Number of Samples per trace must be constant !", "stop");
  EXPECT_EQ(r.messages(), (std::vector<std::string>{ns_box, ns_box, ns_box, box_line("Sample rate must be constant !", "stop")}));
}

TEST(Rezize, BatchLineOfTheFrontTab) {
  Resizing r(records(5, 24));
  const std::string in = r.dir.file("line.su"), out = r.dir.file("line_new.su"), app = r.app_dir.str();
  struct Case {
    int tab;
    std::string line;
    std::string prefix;
  };
  // Text12 "Time to set" is read by nothing: tmax is the trace count / 1000.
  r.panel->set_text("Text12", "300");
  r.panel->set_text("Text14", "1000");
  r.panel->set_text("Text16", " 250");
  r.panel->set_text("Text9", "3");
  r.panel->set_text("Text10", "12");
  const Case cases[] = {
      {1, app + "/SUWIND <" + in + " >" + out + " tmin=0 tmax=.12\r\n", "Time has been changed for file "},
      {2, app + "/SURESAMP <" + in + " >" + out + " nt= 250 dt=.001\r\n", "Trace length has been changed for file "},
      {3, app + "/SUWIND key=tracf <" + in + " >" + out + " min=3 max=12\r\n", "Channels have been changed for file "},
      {0, "\r\n", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tab);
    EXPECT_EQ(r.go(c.tab), c.line);
    EXPECT_EQ(r.messages().back(), box_line(c.prefix + out, "information"));
    expect_in(r.lines()[r.lines().size() - 2],
              {"\"event\":\"shell\",\"verb\":\"open\",\"file\":" + json(app + "/batch.bat"), "\"show\":1"});
  }
}

TEST(Rezize, NewRecordingTimeFollowsRateAndSamples) {
  Resizing r(records(1, 2));
  r.panel->set_text("Text14", "2000");
  EXPECT_EQ(r.panel->text("Text17"), "1000");
  r.panel->set_text("Text16", "100.6");
  EXPECT_EQ(r.panel->text("Text17"), "202");
}

TEST(Rezize, StandInToolsRunTheBatchOfEachTab) {
  Resizing r(records(2, 4, 10, 1000));
  write_stand_ins(r.app_dir.str());
  r.panel->set_text("Text9", "2");
  r.panel->set_text("Text10", "3");
  r.go(3);
  auto all = records(2, 4, 10, 1000), kept = std::vector<uint8_t>();
  const size_t rec = 240 + 40;
  for (size_t t : {1, 2, 5, 6}) kept.insert(kept.end(), all.begin() + static_cast<long>(t * rec), all.begin() + static_cast<long>((t + 1) * rec));
  EXPECT_EQ(read_bytes(r.dir.file("line_new.su")), kept);
  r.go(1);
  r.panel->set_text("Text14", "2000");
  r.go(2);
  EXPECT_EQ(text_of(r.app_dir.file("calls.log")),
            "suwind key=tracf min=2 max=3\nsuwind tmin=0 tmax=.008\nsuresamp nt=10 dt=.002\n");
  EXPECT_EQ(r.platform.batches_run, 3);
}

TEST(Rezize, InputDialogAndItsCancel) {
  Resizing r(records(1, 3));
  r.dialog("*.SU");
  r.panel->click("Command1");
  EXPECT_EQ(r.panel->text("Text1"), r.dir.file("line.su"));
  write_bytes(r.dir.file("other.su"), records(2, 3));
  r.dialog(r.dir.file("other.su"));
  r.panel->click("Command1");
  EXPECT_EQ(r.panel->text("Text8"), "6");
  EXPECT_EQ(r.panel->text("Text2"), r.dir.file("other_new.su"));
  bool seen = false;
  for (const auto& l : r.lines())
    seen = seen || l.find("{\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"SU File selection\",\"filter\":\"SU File |*.SU|All "
                          "files|*.*|\",\"file\":\"*.SU\"") != std::string::npos;
  EXPECT_TRUE(seen);
}

TEST(Rezize, ScriptOfGoOnTheTimeAndInformationTabs) {
  TempDir dir;
  write_bytes(dir.file("line.su"), records(5, 24));
  expect_script_in("rezize_go", dir);
  EXPECT_EQ(text_of(dir.file("batch.bat")), "\r\n");
}
