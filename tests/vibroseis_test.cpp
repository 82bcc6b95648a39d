// Vibrator words into the headers, and the correlation of field records
// through the Seismic Unix batch (stand-in tools in a temporary folder).
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "frame/shell_start.h"
#include "su_builder.h"
#include "test_support.h"
#include "vibroseis/vibroseis.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {

// The folders come first: the recording platform is made with them.
struct DeskFolders {
  TempDir app_dir, data;
};

struct Desk : DeskFolders, Recording<> {
  std::string su;
  explicit Desk(bool run_tools = false) : Recording(options(run_tools)) {
    app.panels.show("Utility");
    out.str("");
    su = data.file("vib.su");
  }
  RunnerOptions options(bool run_tools) {
    RunnerOptions o;
    o.app_dir = app_dir.str();
    o.shell_run = run_tools;
    return o;
  }
  Panel& panel(const std::string& name) { return *app.panels.loaded(name); }
  Panel& show(const std::string& name) {
    app.panels.show(name);
    return panel(name);
  }
};

const char* const vibrator_keys[] = {"Text2", "Text3", "Text4", "Text5", "Text6", "Text7", "Text8"};

}  // namespace

TEST(Vibro, FirstTraceWordsShowAndZeroKeepsTheDefault) {
  Desk d;
  auto bytes = su_bytes(line_of(1, 2, 4), 4, 500);
  const int16_t words[] = {2, 0, 80, 8000, 0, 0, 250};
  for (int w = 0; w < 7; ++w) put_at<int16_t>(bytes, at::corr + 2 * w, words[w]);
  write_bytes(d.su, bytes);
  d.app.state.current_file = d.su;
  Panel& p = d.show("vibro");
  std::vector<std::string> shown;
  for (const char* key : vibrator_keys) shown.push_back(p.text(key));
  EXPECT_EQ(shown, (std::vector<std::string>{"2", "10", "80", "8000", "1", "10", "250"}));
  EXPECT_EQ(p.text("Text1"), d.su);
  EXPECT_FALSE(p["ProgressBar1"].visible);
}

TEST(Vibro, MissingFileIsReportedAndTheDefaultsStay) {
  Desk d;
  d.app.state.current_file = d.data.file("none.su");
  Panel& p = d.show("vibro");
  EXPECT_EQ(d.boxes(), std::vector<std::string>{box_line(d.data.file("none.su") + " does not exists!", "exclamation")});
  EXPECT_EQ(p.text("Text5"), "6000");
  EXPECT_FALSE(fs::exists(d.data.file("none.su")));
  p.click("Command1");
  EXPECT_EQ(d.boxes().size(), 2u);
}

// Every trace gets the seven words and nothing else changes; a field above
// 32767 repeats the word before it; an empty field writes 0.
TEST(Vibro, WordsGoToEveryTraceThenSoundUnloadAndBox) {
  Desk d;
  auto traces = line_of(2, 3, 5);
  auto before = su_bytes(traces, 5, 500);
  write_bytes(d.su, before);
  d.app.state.current_file = d.su;
  Panel& p = d.show("vibro");
  p.set_text("Text4", "40000");
  p.set_text("Text7", "");
  d.out.str("");
  p.click("Command1");

  auto expected = before;
  const int16_t words[] = {1, 10, 10, 6000, 1, 0, 100};
  for (size_t t = 0; t < traces.size(); ++t)
    for (int w = 0; w < 7; ++w) put_at<int16_t>(expected, t * (240 + 20) + at::corr + 2 * w, words[w]);
  EXPECT_EQ(read_bytes(d.su), expected);
  auto lines = d.lines();
  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ(lines[lines.size() - 3], "{\"event\":\"sound\",\"file\":" + json(d.app_dir.file("notify.wav")) + "}");
  EXPECT_EQ(lines[lines.size() - 2], "{\"event\":\"unload\",\"panel\":\"vibro\"}");
  EXPECT_EQ(lines.back(), box_line("Header update done done !", "information"));
}

TEST(Vibro, KeysInfoAndFileDialog) {
  Desk d;
  Panel& p = d.show("vibro");
  p.set_text("Text6", "");
  for (char key : std::string("1a42")) p.press_key("Text6", key);
  EXPECT_EQ(p.text("Text6"), "12");
  p.set_text("Text3", "");
  for (char key : std::string("0123456789")) p.press_key("Text3", key);
  EXPECT_EQ(p.text("Text3"), "0123456789");
  d.out.str("");
  p.click("Command2");
  EXPECT_EQ(d.boxes(), std::vector<std::string>{box_line(
                           " Vibrator data input \r\n\r\nThis module will write all vibrator parameters into the trace "
                           "header\r\nJust enter the correct values and press on WRITE DATA button\r\n",
                           "information")});
  // a cancel leaves Text1; another file leaves the fields as they are
  p.set_text("Text1", "kept.su");
  p.click("Command3");
  EXPECT_EQ(p.text("Text1"), "kept.su");
  expect_in(d.out.str(), {"\"title\":\"SU raw data file \",\"filter\":\"SU files|*.SU|\",\"file\":\"*.SU\"",
                          "{\"event\":\"pointer\",\"panel\":\"Utility\",\"pointer\":\"arrow\"}"});
  auto bytes = su_bytes(line_of(1, 1, 1), 1, 500);
  put_at<int16_t>(bytes, at::corr, 2);
  write_bytes(d.su, bytes);
  d.platform.dialog_answers.push_back(d.su);
  p.click("Command3");
  EXPECT_EQ(p.text("Text1"), d.su);
  EXPECT_EQ(p.text("Text2"), "1");
}

namespace {

// An uncorrelated line: three records of a pilot and four channels.
void write_uncorrelated(const std::string& path, int16_t ns, int16_t dt) {
  auto traces = line_of(3, 5, ns);
  for (auto& t : traces) t.fldr += 10;
  write_bytes(path, su_bytes(traces, ns, dt));
}

std::vector<std::string> batch_lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2)
    lines.push_back(text.substr(start, end - start));
  lines.push_back(text.substr(start));
  return lines;
}

}  // namespace

TEST(Vibroseis, FieldsFromTheHeaders) {
  Desk d;
  write_uncorrelated(d.su, 1024, 500);
  d.app.state.current_file = d.su;
  Panel& p = d.show("vibroseis");
  std::vector<std::string> fields;
  for (const char* f : {"Text2", "Text4", "Text5", "Text6", "Text7", "Text8", "Text9", "Text10"}) fields.push_back(p.text(f));
  EXPECT_EQ(fields, (std::vector<std::string>{d.data.file("vib_corr.su  "), "5", "512", "51.2", "500", "11", "13",
                                              "1024"}));
  // dt 0: the interval of d1; a negative d1 is multiplied by 100 and then
  // falls below 1
  for (float d1 : {250.0f, -2.5f}) {
    auto bytes = read_bytes(d.su);
    for (size_t pos = 0; pos < bytes.size(); pos += 240 + 4096) {
      put_at<int16_t>(bytes, pos + at::dt, 0);
      put_at<float>(bytes, pos + 180, d1);
    }
    write_bytes(d.su, bytes);
    static_cast<vibroseis&>(p).lecture_non_correle();
    EXPECT_EQ(p.text("Text7"), d1 > 0 ? "250" : "1");
  }
}

// The composed lines of one record, as the batch file keeps them.
TEST(Vibroseis, FiveBatchLinesARecordAndTheSampleLimit) {
  Desk d;
  write_uncorrelated(d.su, 8, 500);
  d.app.state.current_file = d.su;
  Panel& p = d.show("vibroseis");
  p.set_text("Text5", "8001");
  d.out.str("");
  p.click("Command3");
  EXPECT_EQ(d.lines(), std::vector<std::string>{box_line(" SUXCOR does not accept more than 16'000 samples/trace", "stop")});
  EXPECT_TRUE(p["Command3"].enabled);

  p.set_text("Text5", "8000");  // 16000 samples pass
  p.set_text("Text6", "100");
  p.set_text("Text4", "60");
  p.set_text("Text8", "12");
  p.set_text("Text9", "12");
  d.out.str("");
  p.click("Command3");
  const std::string app = d.app_dir.str(), data = d.data.str();
  EXPECT_EQ(batch_lines(text_of(app + "/correlation.bat")),
            (std::vector<std::string>{
                app + "/bin/suwind <" + d.su + ">" + data + "/tempo.su key=fldr min=12 max=12",
                app + "/bin/suwind <" + data + "/tempo.su >" + data + "/sweep.su key=tracf min=1 max=1",
                app + "/bin/suwind <" + data + "/tempo.su >" + data + "/uncorrel.su key=tracf min=2 max=60",
                app + "/bin/suxcor <" + data + "/uncorrel.su sufile=" + data + "/sweep.su |" + app +
                    "/bin/suwind itmin=16000 itmax=16200 | " + app + "/bin/sushw key=delrt a=0 | " + app +
                    "/bin/sushw >" + data + "/korrelated.su key=tracf a=1 b=1",
                "pause"}));
  expect_in(d.out.str(), {"\"event\":\"shell\",\"verb\":\"open\",\"file\":" + json(app + "/batch.bat") +
                              ",\"params\":\"\",\"dir\":" + json(app) + ",\"show\":0,\"wait\":true",
                          box_line("Correlation done, " + d.data.file("vib_corr.su  ") + " has been recorded ",
                                   "information"),
                          "{\"event\":\"unload\",\"panel\":\"vibroseis\"}"});
  EXPECT_EQ(d.app.state.batch_file, app + "/correlation.bat");
}

TEST(Vibroseis, FirstAboveLastRunsNoRecordAndStillReports) {
  Desk d;
  write_uncorrelated(d.su, 8, 500);
  d.app.state.current_file = d.su;
  Panel& p = d.show("vibroseis");
  p.set_text("Text8", "13");
  p.set_text("Text9", "12");
  d.out.str("");
  p.click("Command3");
  EXPECT_EQ(d.out.str().find("\"shell\""), std::string::npos);
  EXPECT_EQ(d.lines().back(), "{\"event\":\"unload\",\"panel\":\"vibroseis\"}");
  EXPECT_FALSE(fs::exists(d.data.file("vib_corr.su")));
}

namespace {

// Stand-ins for suwind, suxcor and sushw: enough of each for the lines of
// the correlation, on little-endian SU records.
const char* const stand_in_tools = R"(#!/usr/bin/env python3
import os, struct, sys
tool = os.path.basename(sys.argv[0])
args = dict(a.split('=', 1) for a in sys.argv[1:] if '=' in a)
def traces(data):
    out, pos = [], 0
    while pos + 240 <= len(data):
        ns = struct.unpack_from('<h', data, pos + 114)[0]
        out.append((bytearray(data[pos:pos + 240]), list(struct.unpack_from('<%df' % ns, data, pos + 240))))
        pos += 240 + 4 * ns
    return out
def word(h, key):
    return struct.unpack_from('<i', h, {'fldr': 8, 'tracf': 12}[key])[0]
def put(h, key, v):
    if key == 'delrt': struct.pack_into('<h', h, 108, v)
    else: struct.pack_into('<i', h, {'fldr': 8, 'tracf': 12}[key], v)
def write(ts):
    for h, s in ts:
        struct.pack_into('<h', h, 114, len(s))
        sys.stdout.buffer.write(bytes(h) + struct.pack('<%df' % len(s), *s))
ts = traces(sys.stdin.buffer.read())
if tool == 'suwind':
    if 'key' in args:
        ts = [t for t in ts if int(args['min']) <= word(t[0], args['key']) <= int(args['max'])]
    if 'itmin' in args:
        ts = [(h, s[int(args['itmin']):int(args['itmax']) + 1]) for h, s in ts]
elif tool == 'suxcor':
    pilot = traces(open(args['sufile'], 'rb').read())[0][1]
    n = len(pilot)
    ts = [(h, [sum(s[t] * pilot[t - lag] for t in range(n) if 0 <= t - lag < n) for lag in range(-(n - 1), n)]) for h, s in ts]
elif tool == 'sushw':
    a, b = int(args.get('a', 0)), int(args.get('b', 0))
    ts = [(h, s) for h, s in ts]
    for i, (h, s) in enumerate(ts): put(h, args['key'], a + i * b)
write(ts)
)";

void install_stand_ins(const std::string& app_dir) {
  for (const char* name : {"suwind", "suxcor", "sushw"}) {
    const std::string path = app_dir + "/bin/" + name;
    write_text(path, stand_in_tools);
    fs::permissions(path, fs::perms::owner_all);
  }
}

}  // namespace

// Three records correlate through the composed lines; the output holds the
// second and the third, their channels numbered from 1, delrt 0.
TEST(Vibroseis, ThreeRecordsThroughTheStandInToolsKeepTheSecondAndThird) {
  if (fs::exists("/usr/bin/python3") == false) GTEST_SKIP() << "no python3 for the stand-in tools";
  const std::string path = std::string(TRACEFOLD_BIN) + ":" + std::getenv("PATH");
  ::setenv("PATH", path.c_str(), 1);  // tracefold-batch runs the batch file
  Desk d(true);
  install_stand_ins(d.app_dir.str());
  const int16_t ns = 4;
  write_uncorrelated(d.su, ns, 1000);
  d.app.state.current_file = d.su;
  Panel& p = d.show("vibroseis");
  p.set_text("Text6", "3");  // a window of 3 samples behind the sweep
  p.click("Command3");

  auto out = read_bytes(d.data.file("vib_corr.su"));
  const size_t record = 240 + 4 * 3;
  ASSERT_EQ(out.size(), 8 * record) << text_of(d.app_dir.file("batch.log"));
  auto input = line_of(3, 5, ns);
  for (size_t t = 0; t < 8; ++t) {
    SCOPED_TRACE(t);
    const size_t pos = t * record;
    EXPECT_EQ(value_at<int32_t>(out, pos + at::fldr), 12 + static_cast<int32_t>(t / 4));
    EXPECT_EQ(value_at<int32_t>(out, pos + at::tracf), 1 + static_cast<int32_t>(t % 4));
    EXPECT_EQ(value_at<int16_t>(out, pos + at::ns), 3);
    // the full correlation runs over lags -(ns - 1) to ns - 1: the window
    // from sample ns keeps lags 1, 2 and 3 of the channel against its pilot
    const auto& pilot = input[5 + t / 4 * 5].samples;
    const auto& channel = input[5 + t / 4 * 5 + 1 + t % 4].samples;
    for (int j = 0; j < 3; ++j) {
      const int lag = j + 1;
      double sum = 0;
      for (int k = lag; k < ns; ++k) sum += channel[static_cast<size_t>(k)] * pilot[static_cast<size_t>(k - lag)];
      EXPECT_FLOAT_EQ(value_at<float>(out, pos + 240 + 4 * static_cast<size_t>(j)), static_cast<float>(sum));
    }
  }
  for (const char* work : {"tempo.su", "sweep.su", "uncorrel.su", "korrelated.su"})
    EXPECT_FALSE(fs::exists(d.data.file(work))) << work;
  EXPECT_TRUE(fs::exists(d.app_dir.file("correlation.bat")));
  EXPECT_EQ(d.boxes().back(),
            box_line("Correlation done, " + d.data.file("vib_corr.su  ") + " has been recorded ", "information"));
}

TEST(Vibroseis, InfoBoxAndTheTraceWiseRun) {
  Desk d;
  write_uncorrelated(d.su, 8, 500);
  d.app.state.current_file = d.su;
  auto& p = static_cast<vibroseis&>(d.show("vibroseis"));
  d.out.str("");
  p.click("Command4");
  EXPECT_EQ(d.boxes(), std::vector<std::string>{box_line(
                           "SEISMIC RECORD CORRELAION\r\n\r\nThis module will correlate VibroSeis data  \r\nFisrt enter "
                           "all requested parameters in the module\r\n 1.- All field record are extracted from the SU "
                           "file  \r\n2.- The pilot trace is recorded in a separate file\r\n3.- Correlation use "
                           "SUXCOR.EXE \r\n4.- Correlared records are grouped in a new SU file\r\n")});
  p.set_text("Text10", "16001");
  d.out.str("");
  p.correlate_trace_wise();
  EXPECT_EQ(d.boxes(), std::vector<std::string>{box_line(" SUXCOR does not accept more than 16'000 samples / trace", "stop")});

  p.set_text("Text10", "8");
  p.set_text("Text8", "12");
  p.set_text("Text9", "12");
  p.set_text("Text6", "1");  // 2 samples at 500 microseconds
  d.out.str("");
  p.correlate_trace_wise();
  const std::string app = d.app_dir.str(), data = d.data.str();
  EXPECT_EQ(text_of(app + "/correlation.bat"),
            app + "/bin/suxcor <" + data + "/tmp1.su >" + data + "/tmp4.su sufile=" + data +
                "/tmp1.su panel=0 first=1\r\n" + app + "/bin/suwind <" + data + "/tmp4.su itmin=8 itmax=10 | " + app +
                "/bin/sushw key=delrt a=0 >" + data + "/tmp3.su");
  expect_in(d.out.str(), {box_line("Record n\xC2\xB0 12 has been correlated", "exclamation")});
  for (const char* work : {"tmp1.su", "tmp2.su", "tmp3.su", "tmp4.su"}) EXPECT_FALSE(fs::exists(d.data.file(work)));
}

// An empty or garbled file: the vibrator panel writes what the geometry
// allows (nothing for a file shorter than a trace) and still reports; the
// correlation panel fills its fields and runs without a crash.
TEST(Vibroseis, BadInputEndsInTheBoxes) {
  const std::vector<uint8_t> inputs[] = {{}, {9, 9, 9}, [] {
                                           auto b = su_bytes(line_of(1, 2, 4), 4, 500);
                                           put_at<int16_t>(b, at::ns, -60);
                                           return b;
                                         }()};
  for (const auto& input : inputs) {
    SCOPED_TRACE(input.size());
    Desk d;
    write_bytes(d.su, input);
    d.app.state.current_file = d.su;
    d.show("vibro").click("Command1");
    EXPECT_EQ(d.boxes().back(), box_line("Header update done done !", "information"));
    if (input.size() < 240) EXPECT_EQ(read_bytes(d.su), input);

    write_bytes(d.su, input);
    Panel& p = d.show("vibroseis");
    p.set_text("Text9", p.text("Text8"));
    p.click("Command3");
    EXPECT_EQ(d.lines().back(), "{\"event\":\"unload\",\"panel\":\"vibroseis\"}");
    EXPECT_EQ(read_bytes(d.su), input);
  }
}
