// The ABEM Mark 3 panel: the selection, the header's geometry, and the SU
// traces it writes, checked byte for byte against records built here.
#include <gtest/gtest.h>

#include <filesystem>

#include "frame/panel.h"
#include "test_support.h"
#include "tools/record_generators.h"
#include "ui/headless/script_platform.h"

using namespace tf;
using namespace tf::test;

namespace {

// The SU file that the records must give: for file F and channel C a zero
// header but fldr F, tracf C, trid, nvs and nhs 1, ns and dt; then the
// channel's int16 samples, taken from the record at 2048 + 2 x ns x (C - 1),
// as floats. Every record is read with the same channels and ns.
std::vector<uint8_t> expected_su(const std::vector<std::vector<uint8_t>>& records, int channels, int ns, int dt) {
  std::vector<uint8_t> out;
  for (size_t f = 0; f < records.size(); ++f)
    for (int c = 1; c <= channels; ++c) {
      std::vector<uint8_t> trace(240 + 4 * static_cast<size_t>(ns), 0);
      put_at<int32_t>(trace, 8, static_cast<int32_t>(f + 1));
      put_at<int32_t>(trace, 12, c);
      put_at<int16_t>(trace, 28, 1);
      put_at<int16_t>(trace, 30, 1);
      put_at<int16_t>(trace, 32, 1);
      put_at<int16_t>(trace, 114, static_cast<int16_t>(ns));
      put_at<int16_t>(trace, 116, static_cast<int16_t>(dt));
      for (int s = 0; s < ns; ++s) {
        size_t at = 2048 + 2 * (static_cast<size_t>(c - 1) * ns + s);
        int16_t v = at + 2 <= records[f].size() ? value_at<int16_t>(records[f], at) : 0;
        put_at<float>(trace, 240 + 4 * static_cast<size_t>(s), static_cast<float>(v));
      }
      out.insert(out.end(), trace.begin(), trace.end());
    }
  return out;
}

std::vector<uint8_t> record_file(const std::string& folder, int record, const gen::AbemLayout& layout) {
  return read_bytes(gen::write_abem(folder, record, layout));
}

// The dialog text of a multiple selection: the folder with its separator,
// then the names.
std::string several(const TempDir& dir, int first, int last) {
  std::string text = dir.str() + "/";
  for (int i = first; i <= last; ++i) {
    char name[32];
    std::snprintf(name, sizeof name, " rec%03d.abm", i);
    text += name;
  }
  return text;
}

// The dump fragment of a text box: its label and its text.
std::string text_box(const std::string& control, const std::string& label, const std::string& text) {
  return json(control) + ":{\"kind\":\"text\",\"caption\":" + json(label) + ",\"text\":" + json(text) + ",";
}

const std::string done_box =
    "{\"event\":\"msgbox\",\"text\":\"OK, Conversion done\",\"title\":\"Tracefold 1.0\",\"icon\":\"none\"";

}  // namespace

TEST(Abem, PanelReadsLikeItsTable) {
  auto r = run("show abem\ndump abem\nclick abem.Command2\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dump = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dump.size(), 1u);
  const std::string& d = dump[0];
  EXPECT_NE(d.find("\"caption\":\"ABEM mark 3 to SU \""), std::string::npos);
  for (const std::string fragment : {
           "\"Command4\":{\"kind\":\"button\",\"caption\":\"Click here to select ABEM files\"",
           "\"List1\":{\"kind\":\"list\",\"caption\":\"\",\"text\":\"\"",
           "\"Text6\":{\"kind\":\"text\",\"caption\":\"Number of files\",\"text\":\"1\"",
           "\"tooltip\":\"Type here the number of file to convert\"",
           "\"Text5\":{\"kind\":\"text\",\"caption\":\"Sample rate\",\"text\":\"480\"",
           "\"tooltip\":\"Don't forget the sample rate !!!\"",
           "\"Text4\":{\"kind\":\"text\",\"caption\":\"Number of sample\",\"text\":\"1024\"",
           "\"Text3\":{\"kind\":\"text\",\"caption\":\"Trace number\",\"text\":\" \"",
           "\"tooltip\":\"Correct here the trace number if necesssary\"",
           "\"Text2\":{\"kind\":\"text\",\"caption\":\"\",\"text\":\" \"",
           "\"tooltip\":\"This will be the SU file\"",
           "\"Command3\":{\"kind\":\"button\",\"caption\":\"Out file\"",
           "\"Command1\":{\"kind\":\"button\",\"caption\":\"Convert\"",
           "\"Command2\":{\"kind\":\"button\",\"caption\":\"Info\"",
           "\"ProgressBar1\":{\"kind\":\"progress\""})
    EXPECT_NE(d.find(fragment), std::string::npos) << fragment;

  const std::string crlf = "\r\n";
  const std::string help = std::string("ABEM Terralock Mark 3 to SU format conversion") +
                           "This module will convert Terralock Mark 3 records to SU format. " + crlf +
                           " 1- Select the first file of your line" + crlf +
                           " 2- Enter the number of files (numbers must be increasing!) " + crlf +
                           "    without gap number" + crlf + " 3- IMPORTANT enter the sample rate " + crlf +
                           " 4- Click on CONVERT Button " + crlf +
                           "You MUST enter the sample rate, default is 480 ns  " + crlf +
                           "The result will be a single file with all the selected data " + crlf;
  EXPECT_TRUE(r.has({"\"event\":\"msgbox\",\"text\":" + json(help) + ",\"title\":\"Tracefold 1.0\",\"icon\":\"none\""}));
}

// Two records of 24 channels x 1024 samples, code 4: 48 traces, fldr the
// file's ordinal, tracf the channel, dt 500.
TEST(Abem, TwoRecordsGiveFortyEightTracesByteExact) {
  TempDir dir;
  gen::AbemLayout layout;  // 24 channels, 1024 samples, code 4
  std::vector<std::vector<uint8_t>> records{record_file(dir.str(), 1, layout), record_file(dir.str(), 2, layout)};
  const std::string out = dir.str() + "//rec001.SU";

  auto r = run("show abem\ndialog \"" + several(dir, 1, 2) + "\"\nclick abem.Command4\ndump abem\nclick abem.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"ABEM file selection\","
                     "\"filter\":\"Record |*.abm|All files|*.*|\",\"file\":\"*.abm\",\"dir\":\"\",\"flags\":512"}));
  auto dump = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dump.size(), 1u);
  EXPECT_NE(dump[0].find("\"items\":[" + json(dir.str() + "//rec001.abm") + "," + json(dir.str() + "//rec002.abm") + "]"),
            std::string::npos)
      << dump[0];
  for (const auto& fragment : {text_box("Text6", "Number of files", "2"), text_box("Text5", "Sample rate", "500"),
                               text_box("Text4", "Number of sample", "1024"), text_box("Text3", "Trace number", "24"),
                               text_box("Text2", "", out)})
    EXPECT_NE(dump[0].find(fragment), std::string::npos) << fragment;
  EXPECT_TRUE(r.has({done_box}));
  EXPECT_TRUE(r.has({"\"event\":\"unload\",\"panel\":\"abem\""}));

  auto written = read_bytes(out);
  EXPECT_EQ(written.size(), 48u * (240 + 4 * 1024));
  EXPECT_EQ(written, expected_su(records, 24, 1024, 500));
}

// With several files the header of the second list entry sets channels, ns
// and dt, and every file is then read with them. A second selection leaves
// the first one's entries ahead, so entry 1 may be an older file.
TEST(Abem, SecondListEntrySetsTheGeometry) {
  TempDir dir;
  gen::AbemLayout wide;  // 24 x 1024, code 4
  gen::AbemLayout narrow;
  narrow.channels = 12;
  narrow.samples = 512;
  narrow.rate_code = 5;  // 1000 microseconds
  std::vector<std::vector<uint8_t>> records{record_file(dir.str(), 1, wide), record_file(dir.str(), 2, narrow)};

  auto r = run("show abem\ndialog \"" + several(dir, 1, 2) + "\"\nclick abem.Command4\ndump abem\nclick abem.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dump = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dump.size(), 1u);
  for (const auto& fragment : {text_box("Text5", "Sample rate", "1000"), text_box("Text4", "Number of sample", "512"),
                               text_box("Text3", "Trace number", "12")})
    EXPECT_NE(dump[0].find(fragment), std::string::npos) << fragment;
  EXPECT_EQ(read_bytes(dir.str() + "/rec001.SU"), expected_su(records, 12, 512, 1000));

  // rec003 chosen alone first: entry 1 is then rec001, not the second of the new pair.
  gen::AbemLayout other;
  other.channels = 6;
  other.samples = 100;
  other.rate_code = 2;
  gen::write_abem(dir.str(), 3, other);
  auto again = run("show abem\ndialog \"" + dir.str() + "/rec003.abm\"\nclick abem.Command4\ndialog \"" +
                   several(dir, 1, 2) + "\"\nclick abem.Command4\ndump abem\n");
  auto d = again.with({"\"event\":\"dump\""});
  ASSERT_EQ(d.size(), 1u);
  EXPECT_NE(d[0].find("\"items\":[" + json(dir.str() + "/rec003.abm ") + "," + json(dir.str() + "//rec001.abm") + "," +
                      json(dir.str() + "//rec002.abm") + "]"),
            std::string::npos)
      << d[0];
  for (const auto& fragment : {text_box("Text6", "Number of files", "2"), text_box("Text3", "Trace number", "24"),
                               text_box("Text4", "Number of sample", "1024"), text_box("Text5", "Sample rate", "500")})
    EXPECT_NE(d[0].find(fragment), std::string::npos) << fragment;
}

// A single file keeps its trailing blank in the list and still converts;
// an unknown code leaves dt as it stood, and 0 becomes 100.
TEST(Abem, SingleFileAndUnknownRateCode) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 3;
  layout.samples = 64;
  layout.rate_code = 8;
  std::vector<std::vector<uint8_t>> records{record_file(dir.str(), 1, layout)};
  const std::string select = "show abem\ndialog \"" + dir.str() + "/rec001.abm\"\nclick abem.Command4\ndump abem\n";

  auto r = run(select + "click abem.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dump = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dump.size(), 1u);
  EXPECT_NE(dump[0].find("\"items\":[" + json(dir.str() + "/rec001.abm ") + "]"), std::string::npos) << dump[0];
  for (const auto& fragment : {text_box("Text6", "Number of files", "1"), text_box("Text5", "Sample rate", "100"),
                               text_box("Text4", "Number of sample", "64"), text_box("Text3", "Trace number", "3"),
                               text_box("Text2", "", dir.str() + "/rec001.SU")})
    EXPECT_NE(dump[0].find(fragment), std::string::npos) << fragment;
  EXPECT_EQ(read_bytes(dir.str() + "/rec001.SU"), expected_su(records, 3, 64, 100));

  auto kept = run("session dt 500\n" + select);
  auto d = kept.with({"\"event\":\"dump\""});
  ASSERT_EQ(d.size(), 1u);
  EXPECT_NE(d[0].find(text_box("Text5", "Sample rate", "500")), std::string::npos);
}

// A cancel gives back "*.abm", which goes through the single path; nothing
// is read and no file of that name is made.
TEST(Abem, CancelledDialogLeavesThePattern) {
  auto r = run("show abem\ndialog-cancel\nclick abem.Command4\ndump abem\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dump = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dump.size(), 1u);
  EXPECT_NE(dump[0].find("\"items\":[\"*.abm \"]"), std::string::npos) << dump[0];
  // dt 0 and no code read: code 0, 24 microseconds.
  for (const auto& fragment : {text_box("Text2", "", "*.SU"), text_box("Text6", "Number of files", "1"),
                               text_box("Text5", "Sample rate", "24"), text_box("Text3", "Trace number", "0"),
                               text_box("Text4", "Number of sample", "0")})
    EXPECT_NE(dump[0].find(fragment), std::string::npos) << fragment;
  EXPECT_FALSE(std::filesystem::exists("*.abm"));
  EXPECT_FALSE(std::filesystem::exists("*.abm "));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}).size(), 0u);
}

// dt 0 cannot pass: the input box comes back until a number other than 0.
TEST(Abem, ZeroSampleRateAsksAgain) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 2;
  layout.samples = 16;
  std::vector<std::vector<uint8_t>> records{record_file(dir.str(), 1, layout)};
  auto r = run("show abem\ndialog \"" + dir.str() + "/rec001.abm\"\nclick abem.Command4\nset abem.Text5 \"0\"\n"
               "input \"0\"\ninput \"none\"\ninput \"250\"\nclick abem.Command1\ndump session\n");
  ASSERT_EQ(r.exit_code, 0);
  auto asked = r.with({"\"event\":\"inputbox\""});
  ASSERT_EQ(asked.size(), 3u);
  for (const auto& line : asked)
    EXPECT_EQ(line.rfind("{\"event\":\"inputbox\",\"prompt\":\"Enter the samplerate in microS\",\"title\":\"Tracefold "
                         "1.0\",\"default\":\"\"",
                         0),
              0u)
        << line;
  EXPECT_TRUE(r.has({"\"dt\":250"}));
  EXPECT_EQ(read_bytes(dir.str() + "/rec001.SU"), expected_su(records, 2, 16, 250));
}

// A hundred files selected: 99 reach the list, the count of 100 is cut to
// 99 with a message, and 99 records are converted.
TEST(Abem, HundredFilesConvertNinetyNine) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 2;
  layout.samples = 8;
  std::vector<std::vector<uint8_t>> records;
  for (int i = 1; i <= 100; ++i) {
    auto bytes = record_file(dir.str(), i, layout);
    if (i <= 99) records.push_back(bytes);
  }
  auto r = run("show abem\ndialog \"" + several(dir, 1, 100) + "\"\nclick abem.Command4\ndump abem\nclick abem.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dump = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dump.size(), 1u);
  EXPECT_NE(dump[0].find(text_box("Text6", "Number of files", "100")), std::string::npos);
  EXPECT_NE(dump[0].find(json(dir.str() + "//rec099.abm") + "]"), std::string::npos);
  auto boxes = r.with({"\"event\":\"msgbox\""});
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0].rfind("{\"event\":\"msgbox\",\"text\":\"Maximum 99 records\",\"title\":\"Tracefold 1.0\",\"icon\":\"none\"", 0), 0u);
  EXPECT_EQ(boxes[1].rfind(done_box, 0), 0u);
  EXPECT_EQ(read_bytes(dir.str() + "/rec001.SU"), expected_su(records, 2, 8, 500));
}

// The output is written over in place: an older, longer file keeps its
// tail, and ep and duse, never written, keep the old bytes in every trace.
TEST(Abem, LongerOutputKeepsItsTail) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 4;
  layout.samples = 32;
  std::vector<std::vector<uint8_t>> records{record_file(dir.str(), 1, layout), record_file(dir.str(), 2, layout)};
  auto expected = expected_su(records, 4, 32, 500);
  std::vector<uint8_t> old(expected.size() + 1000, 0x5A);
  write_bytes(dir.file("rec001.SU"), old);
  auto r = run("show abem\ndialog \"" + several(dir, 1, 2) + "\"\nclick abem.Command4\nclick abem.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  const size_t record = 240 + 4 * 32;
  for (size_t at = 0; at < expected.size(); at += record) {
    for (size_t b = 16; b < 20; ++b) expected[at + b] = 0x5A;  // ep
    for (size_t b = 34; b < 36; ++b) expected[at + b] = 0x5A;  // duse
  }
  expected.insert(expected.end(), 1000, 0x5A);
  EXPECT_EQ(read_bytes(dir.file("rec001.SU")), expected);
}

// A record that is gone shows the retrying error box again and again.
TEST(Abem, MissingRecordRetriesTheErrorBox) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 2;
  layout.samples = 8;
  gen::write_abem(dir.str(), 1, layout);
  gen::write_abem(dir.str(), 2, layout);
  RunnerOptions options;
  options.max_boxes = 6;
  auto r = run("show abem\ndialog \"" + several(dir, 1, 2) + "\"\nclick abem.Command4\nset abem.Text6 \"3\"\nclick abem.Command1\n",
               options);
  EXPECT_EQ(r.exit_code, exit_run_aborted);
  auto boxes = r.with({"\"event\":\"msgbox\""});
  ASSERT_EQ(boxes.size(), 5u);  // the dialog was the first of the six boxes
  for (const auto& box : boxes)
    EXPECT_EQ(box.rfind("{\"event\":\"msgbox\",\"text\":\"File conversion error N°  53 Check if all files are in the "
                        "folder !\",\"title\":\"Tracefold 1.0\"",
                        0),
              0u)
        << box;
}

// The progress bar runs from 1 to channels x files and shows F x C, the
// product, not a running count.
TEST(Abem, ProgressShowsFileTimesChannel) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 3;
  layout.samples = 8;
  gen::write_abem(dir.str(), 1, layout);
  gen::write_abem(dir.str(), 2, layout);
  std::ostringstream out;
  ScriptPlatform platform(RunnerOptions{}, out);
  App app(platform);
  Panel* panel = app.panels.show("abem");
  ASSERT_NE(panel, nullptr);
  platform.dialog_answers.push_back(several(dir, 1, 2));
  panel->click("Command4");
  std::vector<int> values;
  std::pair<int, int> range;
  panel->observer = [&](Control& c) {
    if (c.name != "ProgressBar1") return;
    if (values.empty() && range == std::pair<int, int>{}) range = {c.min, c.max};
    else values.push_back(c.value);
  };
  panel->click("Command1");
  EXPECT_EQ(range, (std::pair<int, int>{1, 6}));
  EXPECT_EQ(values, (std::vector<int>{1, 2, 3, 2, 4, 6}));
}

// A single path that holds a blank is cut like a multiple selection: the
// pieces are joined again by the separator, one file is counted, and with
// no second list entry no header is read.
TEST(Abem, PathWithABlankIsTakenForSeveral) {
  auto r = run("show abem\ndialog \"/data/line 1/rec001.abm\"\nclick abem.Command4\ndump abem\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dump = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dump.size(), 1u);
  EXPECT_NE(dump[0].find("\"items\":[\"/data/line/1/rec001.abm\"]"), std::string::npos) << dump[0];
  for (const auto& fragment : {text_box("Text6", "Number of files", "1"), text_box("Text2", "", "/data/line/1/rec001.SU"),
                               text_box("Text3", "Trace number", "0")})
    EXPECT_NE(dump[0].find(fragment), std::string::npos) << fragment;
}
