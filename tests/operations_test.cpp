// SU file operations: merge, record appending, grid extraction, channel
// reversal, trace replacement and first-break editing. Expected files are
// cut and joined from the input bytes by the record layout: 240 header
// bytes and ns float samples a trace.
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/su_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

using Bytes = std::vector<uint8_t>;
using Texts = std::vector<std::string>;

size_t trace_of(int ns) { return 240 + 4 * static_cast<size_t>(ns); }

Bytes make_su(const TempDir& dir, const std::string& name, gen::SuLayout layout) {
  return read_bytes(gen::write_su(dir.file(name), layout));
}

Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const auto& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}

// Traces first..last (from 1) of an SU file.
Bytes traces(const Bytes& file, int ns, std::initializer_list<int> numbers) {
  Bytes out;
  for (int k : numbers) {
    auto at = file.begin() + static_cast<std::ptrdiff_t>(trace_of(ns) * (k - 1));
    out.insert(out.end(), at, at + static_cast<std::ptrdiff_t>(trace_of(ns)));
  }
  return out;
}

std::string in_quotes(const std::string& text) { return "\"" + text + "\""; }

const std::string no_box = "\"event\":\"msgbox\"";

}  // namespace

// ---------------------------------------------------------------- merge

// Three files of one line: the list, the proposed name and the first file's
// shape; the output is the three files end to end and the inputs stay.
TEST(MergeSuFiles, ThreeFilesGiveTheirConcatenation) {
  TempDir dir;
  auto a = make_su(dir, "a.su", {.traces = 24, .samples = 50, .seed = 1});
  auto b = make_su(dir, "b.su", {.traces = 12, .samples = 50, .seed = 2});
  auto c = make_su(dir, "c.su", {.traces = 6, .samples = 50, .seed = 3});
  EXPECT_EQ(run_script_file("merge_three", dir.str()).lines, expected_transcript("merge_three"));
  EXPECT_EQ(read_bytes(dir.file("a_raw.su")), joined({a, b, c}));
  EXPECT_EQ(read_bytes(dir.file("a.su")), a);
  EXPECT_EQ(read_bytes(dir.file("c.su")), c);
}

// An existing output: No ends the run; Yes then No appends to what it holds;
// Yes then Yes starts it anew.
TEST(MergeSuFiles, ExistingOutputIsKeptAppendedOrErased) {
  TempDir dir;
  auto a = make_su(dir, "a.su", {.traces = 3, .samples = 10, .seed = 1});
  auto b = make_su(dir, "b.su", {.traces = 2, .samples = 10, .seed = 2});
  const Bytes old = {1, 2, 3, 4};
  const std::string select = "dialog " + in_quotes(dir.str() + "/ a.su b.su") + "\nclick Add_SU_files.Command1\n";
  struct Case {
    Texts replies;
    Bytes expected;
    bool size_box;
  };
  const Case cases[] = {{{"no"}, old, false}, {{"yes", "no"}, joined({old, a, b}), true}, {{"yes", "yes"}, joined({a, b}), true}};
  for (const auto& k : cases) {
    write_bytes(dir.file("a_raw.su"), old);
    std::string script = "show Add_SU_files\n" + select;
    for (const auto& reply : k.replies) script += "reply " + reply + "\n";
    auto r = run(script + "click Add_SU_files.Command2\n");
    EXPECT_EQ(read_bytes(dir.file("a_raw.su")), k.expected);
    ASSERT_TRUE(r.has({box_line(dir.file("a_raw.su") + " file already exists, append new files ?", "question", "yesno", k.replies[0])}));
    if (k.replies.size() > 1) EXPECT_TRUE(r.has({box_line("Erase " + dir.file("a_raw.su") + " ?", "question", "yesno", k.replies[1])}));
    EXPECT_EQ(r.has({"has been recorded OK size:"}), k.size_box);
  }
}

// Check1 deletes each source after its copy; a source that can't be opened
// adds nothing.
TEST(MergeSuFiles, SourcesDeletedOnRequestAndMissingOnesAddNothing) {
  TempDir dir;
  auto a = make_su(dir, "a.su", {.traces = 3, .samples = 10, .seed = 1});
  auto b = make_su(dir, "b.su", {.traces = 2, .samples = 10, .seed = 2});
  auto r = run("show Add_SU_files\ndialog " + in_quotes(dir.str() + "/ a.su gone.su b.su") +
               "\nclick Add_SU_files.Command1\ncheck Add_SU_files.Check1 on\nset Add_SU_files.Text2 " +
               in_quotes(dir.file("out.su")) + "\nclick Add_SU_files.Command2\n");
  EXPECT_EQ(read_bytes(dir.file("out.su")), joined({a, b}));
  EXPECT_FALSE(std::filesystem::exists(dir.file("a.su")));
  EXPECT_FALSE(std::filesystem::exists(dir.file("b.su")));
  EXPECT_FALSE(std::filesystem::exists(dir.file("gone.su")));
  EXPECT_TRUE(r.has({box_line(dir.file("out.su") + " has been recorded OK size: " + std::to_string(a.size() + b.size()), "information")}));
}

TEST(MergeSuFiles, HelpBox) {
  auto r = run("show Add_SU_files\nclick Add_SU_files.Command6\n");
  EXPECT_TRUE(r.has({box_line("How to append files\r\n1.- You select all SU files using Alt+Ctrl button when you click   \r\n"
                              "2.- You can add all files of a same seismic line together\r\n"
                              "3.- Files MUST HAVE THE SAME SIZE, same sample number and same channels    \r\n"
                              "4.- If necessary you can convert the file to SEG-Y using conversion module  \r\n    \r\n",
                              "information")}));
}

// ------------------------------------------------------- record appending

namespace {
std::string extraction(const std::string& in, const std::string& out, const std::string& first, const std::string& last) {
  return "click Utility.Command12\nclick Add_file.Option2\nset Add_file.Text1 " + in_quotes(in) + "\nset Add_file.Text2 " +
         in_quotes(out) + "\nset Add_file.Text3 " + in_quotes(first) + "\nset Add_file.Text4 " + in_quotes(last) +
         "\nclick Add_file.Command2\n";
}
std::string report(const std::string& head, const std::string& out, size_t size) {
  return box_line("\r\n" + head + "\r\n" + out + "  has been recorded. Size: " + std::to_string(size));
}
}  // namespace

// Traces 5 to 9 are copied unchanged; first above last writes nothing and
// still reports; a last trace past the end writes the last record again.
TEST(RecordAppending, ExtractionCopiesTheRangeRecordByRecord) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 12, .samples = 20});
  struct Case {
    const char* first;
    const char* last;
    Bytes expected;
  };
  const Case cases[] = {{"5", "9", traces(in, 20, {5, 6, 7, 8, 9})},
                        {"9", "5", {}},
                        {"11", "14", traces(in, 20, {11, 12, 12, 12})}};
  for (const auto& k : cases) {
    // Reading the file sets the session's ns that the run takes.
    auto r = run("session current_file " + in_quotes(dir.file("line.su")) + "\n" +
                 extraction(dir.file("line.su"), dir.file("part.su"), k.first, k.last));
    EXPECT_EQ(read_bytes(dir.file("part.su")), k.expected) << k.first << " " << k.last;
    EXPECT_TRUE(r.has({report(std::string("* FILE EXTRACTION MODULE*\r\nfrom  ") + k.first + " to " + k.last,
                              dir.file("part.su"), k.expected.size())}));
    EXPECT_EQ(read_bytes(dir.file("line.su")), in);
  }
}

TEST(RecordAppending, PanelLoadShowsTheCurrentFilesRange) {
  TempDir dir;
  make_su(dir, "line.su", {.traces = 12, .samples = 20});
  auto r = run("session current_file " + in_quotes(dir.file("line.su")) + "\nclick Utility.Command12\ndump Add_file\n");
  EXPECT_EQ(texts_in(r.dump("Add_file"), {"Text1", "Text2", "Text3", "Text4"}),
            (Texts{dir.file("line.su"), dir.file("linX.SU"), "1", "12"}));
}

// Addition: the first path copied, the others joined to it; the input dialog
// of the addition mode asks for several files and proposes Addition.su.
TEST(RecordAppending, AdditionJoinsTheSelectedFiles) {
  TempDir dir;
  auto a = make_su(dir, "a.su", {.traces = 3, .samples = 10, .seed = 1});
  auto b = make_su(dir, "b.su", {.traces = 2, .samples = 10, .seed = 2});
  auto c = make_su(dir, "c.su", {.traces = 1, .samples = 10, .seed = 3});
  auto r = run("session data_folder " + in_quotes(dir.str() + "/") + "\nclick Utility.Command12\nclick Add_file.Option1\n"
               "dialog " + in_quotes(dir.str() + "/ a.su b.su c.su") + "\ndblclick Add_file.Text1\nclick Add_file.Command2\n");
  EXPECT_TRUE(r.has({"\"title\":\"SU File selection\",\"filter\":\"SU file |*.SU|All files|*.*|\",\"file\":\"*.SU\"",
                     "\"flags\":512"}));
  EXPECT_EQ(read_bytes(dir.file("Addition.su")), joined({a, b, c}));
  EXPECT_TRUE(r.has({report("* FILE ADDITION MODULE*", dir.file("Addition.su"), a.size() + b.size() + c.size())}));
}

TEST(RecordAppending, NamesMissingOrEqualStopTheRun) {
  auto r = run("click Utility.Command12\nset Add_file.Text1 \"\"\nclick Add_file.Command2\n"
               "set Add_file.Text1 \"x.su\"\nset Add_file.Text2 \"x.su\"\nclick Add_file.Command2\n");
  EXPECT_EQ(r.with({no_box}), (Texts{box_line("No file selected"), box_line("Same Input / Output")}));
}

// ------------------------------------------------------- grid extraction

namespace {
std::string grid_panel(const TempDir& dir) {
  return "session current_file " + in_quotes(dir.file("line.su")) + "\nclick Utility.Command13\n";
}
}  // namespace

// The grid marks every step-th row from the first trace; a click toggles a
// row; Extract writes exactly the marked records, in their order.
TEST(GridExtraction, MarkedRowsAreExtracted) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 10, .samples = 8});
  auto r = run(grid_panel(dir) + "dump Extract\nset Extract.Text3 \"3\"\nset Extract.Text4 \"3\"\ndump Extract\n"
               "click-cell Extract.Grid 4 0\nclick-cell Extract.Grid 6 1\ndump Extract\nclick Extract.Command3\n");
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"Extract\""});
  ASSERT_EQ(dumps.size(), 3u);
  expect_in(dumps[0], {"\"cells\":[[\"trace\",\"Extract\"],[\"1\",\"no\"],[\"2\",\"no\"]", "[\"10\",\"no\"]]",
                       "\"colors\":[[\"\",\"\"],[\"\",\"#FFFFFF\"]"});
  EXPECT_EQ(texts_in(dumps[0], {"Text1", "Text2"}), (Texts{dir.file("line.su"), dir.file("line_ext.su")}));
  expect_in(dumps[1], {"[\"3\",\"yes\"]", "[\"6\",\"yes\"]", "[\"9\",\"yes\"]", "[\"4\",\"no\"]", "[\"10\",\"no\"]"});
  EXPECT_EQ(std::count(dumps[1].begin(), dumps[1].end(), '#') - std::count(dumps[0].begin(), dumps[0].end(), '#'), 0);
  expect_in(dumps[1], {"[\"\",\"#80FF80\"],[\"\",\"#FFFFFF\"],[\"\",\"#FFFFFF\"],[\"\",\"#80FF80\"]"});
  // Row 4 marked by its click, row 6 cleared; its back stays marked until the next regrid.
  expect_in(dumps[2], {"[\"4\",\"yes\"]", "[\"6\",\"no\"]", "\"row\":6,\"col\":1"});
  EXPECT_EQ(read_bytes(dir.file("line_ext.su")), traces(in, 8, {3, 4, 9}));
  EXPECT_TRUE(r.has({box_line(dir.file("line_ext.su") + "  " + std::to_string(3 * trace_of(8)) + " has been created ", "information")}));
  EXPECT_EQ(read_bytes(dir.file("line.su")), in);
}

// Step 1 marks all rows from the start; a start past the rows marks none,
// and Extract then writes an empty file with the same box.
TEST(GridExtraction, StepOneMarksAllAndAStartPastTheEndNone) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 5, .samples = 8});
  auto r = run(grid_panel(dir) + "set Extract.Text3 \"1\"\nset Extract.Text4 \"2\"\nclick Extract.Command3\n"
               "set Extract.Text4 \"9\"\ndump Extract\nclick Extract.Command3\n");
  EXPECT_TRUE(r.has({box_line(dir.file("line_ext.su") + "  " + std::to_string(4 * trace_of(8)) + " has been created ", "information")}));
  expect_in(r.dump("Extract"), {"[\"1\",\"no\"],[\"2\",\"no\"],[\"3\",\"no\"],[\"4\",\"no\"],[\"5\",\"no\"]]"});
  // The output is written over in place: the second run, with nothing marked,
  // leaves the first run's bytes.
  EXPECT_EQ(read_bytes(dir.file("line_ext.su")), traces(in, 8, {2, 3, 4, 5}));
}

// A step of 0 loops for ever; the runner's time limit ends the run.
TEST(GridExtraction, StepZeroIsEndedByTheTimeLimit) {
  TempDir dir;
  make_su(dir, "line.su", {.traces = 5, .samples = 8});
  RunnerOptions options;
  options.max_seconds = 0.5;
  auto r = run(grid_panel(dir) + "set Extract.Text3 \"0\"\nset Extract.Text3 \"00\"\n", options);
  EXPECT_EQ(r.exit_code, exit_run_aborted);
  EXPECT_TRUE(r.has({"\"event\":\"aborted\"", "\"line\":4"}));
}

TEST(GridExtraction, MissingInputGivesAnEmptyGridAndNoNewFile) {
  TempDir dir;
  auto r = run(grid_panel(dir) + "click Extract.Command3\ndump Extract\n");
  expect_in(r.dump("Extract"), {"\"cells\":[[\"trace\",\"Extract\"]]"});
  EXPECT_FALSE(std::filesystem::exists(dir.file("line.su")));
  EXPECT_TRUE(r.has({box_line(dir.file("line_ext.su") + "  0 has been created ", "information")}));
}

TEST(GridExtraction, DialogsKeepTheirTwoFilters) {
  TempDir dir;
  make_su(dir, "line.su", {.traces = 3, .samples = 8});
  auto r = run("click Utility.Command13\ndialog " + in_quotes(dir.file("line.su")) + "\nclick Extract.Command1\n"
               "dialog \"/data/out.su\"\nclick Extract.Command2\ndump Extract\n");
  EXPECT_TRUE(r.has({"\"title\":\"Eismic Unix File selection\",\"filter\":\"File SU |*.SU|All|*.*2|\""}));
  EXPECT_TRUE(r.has({"\"title\":\"Eismic Unix File selection\",\"filter\":\"File SU |*.SU|All|*.*|\""}));
  EXPECT_EQ(text_in(r.dump("Extract"), "Text2"), "/data/out_ext.su");
  expect_in(r.dump("Extract"), {"[\"3\",\"no\"]]"});
}

// ------------------------------------------------------- channel reversal

namespace {
// The file with the samples of traces first..last of each record in
// reverse order and every header where it was.
Bytes reversed(Bytes file, int ns, int channels, int first_record, int last_record, int first, int last) {
  const Bytes in = file;
  const size_t size = trace_of(ns);
  for (int n = first_record; n <= last_record; ++n)
    for (int t = first; t <= last; ++t) {
      const size_t to = size * static_cast<size_t>(channels * (n - 1) + t - 1) + 240;
      const size_t from = size * static_cast<size_t>(channels * (n - 1) + first + last - t - 1) + 240;
      std::copy_n(in.begin() + static_cast<std::ptrdiff_t>(from), 4 * ns, file.begin() + static_cast<std::ptrdiff_t>(to));
    }
  return file;
}
std::string reversal(const TempDir& dir) { return "session current_file " + in_quotes(dir.file("line.su")) + "\nclick Utility.Commandp12\n"; }
}  // namespace

// Three records of six channels: the lists, the default selections reverse
// all channels of all records; a second run restores the file.
TEST(ChannelReversal, DefaultsReverseAllAndTwiceRestores) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 18, .samples = 16, .channels = 6});
  auto r = run(reversal(dir) + "dump reversex\nclick reversex.Command3\n");
  const std::string dump = r.dump("reversex");
  expect_in(dump, {"\"items\":[\" 1\",\" 2\",\" 3\"],\"list_index\":0", "\"items\":[\" 1\",\" 2\",\" 3\"],\"list_index\":2",
                   "\"items\":[\" 1\",\" 2\",\" 3\",\" 4\",\" 5\",\" 6\"],\"list_index\":5"});
  EXPECT_EQ(texts_in(dump, {"Combo1", "Combo4", "Combo2", "Combo3", "Text2"}), (Texts{" 1", " 3", " 1", " 6", "6"}));
  EXPECT_EQ(read_bytes(dir.file("line.su")), reversed(in, 16, 6, 1, 3, 1, 6));
  EXPECT_TRUE(r.has({box_line(dir.file("line.su") + " has been updated", "none", "yesno", "yes")}));
  run(reversal(dir) + "reply no\nclick reversex.Command3\n");
  EXPECT_EQ(read_bytes(dir.file("line.su")), in);
}

// A range of channels in a range of records; a range reaching past the
// channels of a record takes the next record's traces.
TEST(ChannelReversal, ChosenRangesOnly) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 18, .samples = 4, .channels = 6});
  run(reversal(dir) + "select reversex.Combo1 1\nselect reversex.Combo2 1\nselect reversex.Combo3 3\nclick reversex.Command3\n");
  EXPECT_EQ(read_bytes(dir.file("line.su")), reversed(in, 4, 6, 2, 3, 2, 4));
  write_bytes(dir.file("line.su"), in);
  run(reversal(dir) + "select reversex.Combo4 0\nset reversex.Combo2 \"5\"\nset reversex.Combo3 \"8\"\nclick reversex.Command3\n");
  EXPECT_EQ(read_bytes(dir.file("line.su")), reversed(in, 4, 6, 1, 1, 5, 8));
  // First channel above last: nothing moves.
  write_bytes(dir.file("line.su"), in);
  run(reversal(dir) + "set reversex.Combo2 \"4\"\nset reversex.Combo3 \"2\"\nclick reversex.Command3\n");
  EXPECT_EQ(read_bytes(dir.file("line.su")), in);
}

// The five fields are checked in order, each 0 with its box; a file whose
// traces all share one tracf has no channel count and fills no list.
TEST(ChannelReversal, FiveMissingChecksInOrder) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 8, .samples = 4, .channels = 1});
  auto r = run(reversal(dir) + "dump reversex\nclick reversex.Command3\nset reversex.Text2 \"1\"\nclick reversex.Command3\n"
               "set reversex.Combo2 \"1\"\nclick reversex.Command3\nset reversex.Combo3 \"1\"\nclick reversex.Command3\n"
               "set reversex.Combo1 \"1\"\nclick reversex.Command3\n");
  expect_in(r.dump("reversex"), {"\"Combo1\":{\"kind\":\"combo\",\"caption\":\"From Shot number\",\"text\":\"0\"", "\"items\":[]"});
  EXPECT_EQ(r.with({no_box}), (Texts{box_line("Channel number missing"), box_line("First trace number missing"),
                                     box_line("Last trace number missing"), box_line("1st shot number missing"),
                                     box_line("Last shot number missing")}));
  EXPECT_EQ(read_bytes(dir.file("line.su")), in);
}

// A second reading adds its items behind the first's, and the selections go
// by index over the whole lists. Four channels repeat tracf 1 at trace 5:
// no channel count.
TEST(ChannelReversal, ListsGrowAcrossReadings) {
  TempDir dir;
  make_su(dir, "line.su", {.traces = 18, .samples = 4, .channels = 6});
  make_su(dir, "two.su", {.traces = 6, .samples = 4, .channels = 3});
  make_su(dir, "four.su", {.traces = 8, .samples = 4, .channels = 4});
  auto r = run(reversal(dir) + "dialog " + in_quotes(dir.file("two.su")) + "\nclick reversex.Command1\ndump reversex\n" +
               "dialog " + in_quotes(dir.file("four.su")) + "\nclick reversex.Command1\ndump reversex\n");
  auto dumps = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dumps.size(), 2u);
  expect_in(dumps[0], {"\"items\":[\" 1\",\" 2\",\" 3\",\" 1\",\" 2\"],\"list_index\":1",
                       "\"items\":[\" 1\",\" 2\",\" 3\",\" 4\",\" 5\",\" 6\",\" 1\",\" 2\",\" 3\"],\"list_index\":2"});
  EXPECT_EQ(texts_in(dumps[0], {"Combo4", "Combo3", "Text2"}), (Texts{" 2", " 3", "3"}));
  EXPECT_EQ(text_in(dumps[1], "Text2"), "0");
  EXPECT_TRUE(r.has({"\"title\":\"Load \",\"filter\":\"Seismic Unix (SU)|*.SU|All files|*.*|\",\"file\":\"*.SU\""}));
}

TEST(ChannelReversal, EmptyAndMissingFilesChangeNothing) {
  TempDir dir;
  write_bytes(dir.file("line.su"), {});
  auto r = run(reversal(dir) + "set reversex.Text2 \"2\"\nset reversex.Combo1 \"1\"\nset reversex.Combo4 \"1\"\n"
               "set reversex.Combo2 \"1\"\nset reversex.Combo3 \"2\"\nclick reversex.Command3\n"
               "set reversex.Text1 " + in_quotes(dir.file("gone.su")) + "\nclick reversex.Command3\n");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_FALSE(std::filesystem::exists(dir.file("gone.su")));
  EXPECT_TRUE(r.has({box_line(dir.file("gone.su") + " has been updated", "none", "yesno", "yes")}));
}

// ------------------------------------------------------ trace replacement

namespace {
std::string replacement(const std::string& target, const std::string& source, const std::string& a, const std::string& b) {
  return "dialog " + in_quotes(target) + "\ndialog " + in_quotes(source) + "\ninput " + in_quotes(a) + "\ninput " + in_quotes(b) +
         "\nclick Utility.Command6\n";
}
}  // namespace

// The samples of trace 3 of the source go over trace 2 of the target; its
// header keeps fldr, tracf and fbp.
TEST(TraceReplacement, SamplesOfOneTraceOverAnother) {
  TempDir dir;
  auto target = make_su(dir, "target.su", {.traces = 4, .samples = 6, .seed = 1});
  auto source = make_su(dir, "source.su", {.traces = 4, .samples = 6, .seed = 2});
  auto r = run(replacement(dir.file("target.su"), dir.file("source.su"), "2", "3"));
  Bytes expected = target;
  std::copy_n(source.begin() + static_cast<std::ptrdiff_t>(2 * trace_of(6) + 240), 24,
              expected.begin() + static_cast<std::ptrdiff_t>(trace_of(6) + 240));
  EXPECT_EQ(read_bytes(dir.file("target.su")), expected);
  EXPECT_EQ(read_bytes(dir.file("source.su")), source);
  EXPECT_EQ(r.with({no_box}),
            (Texts{box_line("This module allow you to import a trace from a SU file to replace an existing trace on another SU file",
                            "none", "okcancel"),
                   box_line("Trace  2 of file " + dir.file("target.su") + "has been replaced by trace n\xC2\xB0 3 of the file " +
                                dir.file("source.su"),
                            "information")}));
  EXPECT_TRUE(r.has({"\"title\":\"Qualtor File where to IMPORT a new trace\",\"filter\":\"Seismic Unix (SU)|*.SU|All files|*.*|\"",
                     "\"flags\":4096"}));
  EXPECT_TRUE(r.has({"\"title\":\"Qualtor File where to EXTRACT a  trace\""}));
  EXPECT_TRUE(r.has({"\"prompt\":\" Enter the trace number to be changed in " + json(dir.file("target.su")).substr(1)}));
}

// Inside one file; b past the end writes zeros; a of 0 writes nothing and
// still reports; differing ns stops with its box.
TEST(TraceReplacement, EdgeCases) {
  TempDir dir;
  auto line = make_su(dir, "line.su", {.traces = 4, .samples = 6});
  run(replacement(dir.file("line.su"), dir.file("line.su"), "1", "4"));
  Bytes expected = line;
  std::copy_n(line.begin() + static_cast<std::ptrdiff_t>(3 * trace_of(6) + 240), 24, expected.begin() + 240);
  EXPECT_EQ(read_bytes(dir.file("line.su")), expected);
  run(replacement(dir.file("line.su"), dir.file("line.su"), "2", "9"));
  std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(trace_of(6) + 240), 24, 0);
  EXPECT_EQ(read_bytes(dir.file("line.su")), expected);
  auto r = run(replacement(dir.file("line.su"), dir.file("line.su"), "0", "1"));
  EXPECT_EQ(read_bytes(dir.file("line.su")), expected);
  EXPECT_TRUE(r.has({"has been replaced by trace"}));
  make_su(dir, "long.su", {.traces = 4, .samples = 7});
  r = run(replacement(dir.file("line.su"), dir.file("long.su"), "1", "1"));
  EXPECT_TRUE(r.has({box_line("Samplerate or number of sample are not equals", "stop")}));
  EXPECT_EQ(read_bytes(dir.file("line.su")), expected);
  r = run("reply cancel\nclick Utility.Command6\n");
  EXPECT_FALSE(r.has({"\"event\":\"dialog\""}));
}

// ---------------------------------------------------- first-break editing

namespace {
// A file of traces with the given picks.
Bytes with_picks(const TempDir& dir, std::initializer_list<int16_t> picks) {
  auto file = gen::su_file({.traces = static_cast<int>(picks.size()), .samples = 4});
  size_t k = 0;
  for (int16_t p : picks) put_at<int16_t>(file, trace_of(4) * k++ + 222, p);
  write_bytes(dir.file("fb.su"), file);
  return file;
}
Bytes picks_set(Bytes file, std::initializer_list<std::pair<size_t, int16_t>> changes) {
  for (auto [k, p] : changes) put_at<int16_t>(file, trace_of(4) * k + 222, p);
  return file;
}
std::string editing(const TempDir& dir, const std::string& mode, const std::string& value) {
  return "dialog " + in_quotes(dir.file("fb.su")) + "\ninput " + in_quotes(mode) + "\ninput " + in_quotes(value) + "\nclick Utility.Command8\n";
}
}  // namespace

// Mode 1 removes picks below the limit; modes 3 (add) and 2 (scale) write
// only a result below 0, and as 0.
TEST(FirstBreakEditing, ModesAndTheirQuirks) {
  TempDir dir;
  struct Case {
    const char* mode;
    const char* value;
    std::initializer_list<int16_t> picks;
    std::initializer_list<std::pair<size_t, int16_t>> written;
  };
  const Case cases[] = {
      {"1", "10", {99, 100, 0, 250}, {{0, 0}}},
      {"3", "-5", {3, 10, 5, -2}, {{0, 0}, {3, 0}}},
      {"2", "2", {3, 10, 20000, 7}, {}},
      {"2", "-1", {3, 0, -4, 7}, {{0, 0}, {3, 0}}},
  };
  for (const auto& k : cases) {
    const Bytes before = with_picks(dir, k.picks);
    auto r = run(editing(dir, k.mode, k.value));
    EXPECT_EQ(read_bytes(dir.file("fb.su")), picks_set(before, k.written)) << k.mode << " " << k.value;
    EXPECT_TRUE(r.has({box_line("OK, done", "exclamation")}));
  }
}

TEST(FirstBreakEditing, PromptsAndEndings) {
  TempDir dir;
  const Bytes before = with_picks(dir, {5, 6});
  auto r = run(editing(dir, "1", "0") + "dialog \"x\"\ninput \"0\"\nclick Utility.Command8\n" + editing(dir, "2", "3") +
               editing(dir, "3", "1"));
  EXPECT_TRUE(r.has({"\"title\":\"SU file selection\",\"filter\":\"Record |*.SU|\",\"file\":\"*.SU*\""}));
  EXPECT_TRUE(r.has({"\"prompt\":\"To remove all FBP below XX ms Type 1\\r\\nadd/remove a time(ms) Type 2\\r\\n"
                     "To scale all FBP value Type 3\\r\\nTo Exit Type 0\",\"title\":\"Tracefold 1.0\",\"default\":\"0\""}));
  for (const char* prompt : {" Enter the limit (ms), all smaller FBP will be removed ",
                             " Enter the scale factor to apply to all FBP values ",
                             " Enter the value (ms) to add or remove (negative) to all FBP"})
    EXPECT_TRUE(r.has({"\"prompt\":\"" + std::string(prompt) + "\""})) << prompt;
  // A value of 0 and a mode of 0 end before the file is touched.
  EXPECT_EQ(r.with({"OK, done"}).size(), 2u);
  EXPECT_EQ(read_bytes(dir.file("fb.su")), before);
}

TEST(FirstBreakEditing, MissingOrTruncatedFiles) {
  TempDir dir;
  auto r = run(editing(dir, "1", "10"));
  EXPECT_FALSE(std::filesystem::exists(dir.file("fb.su")));
  EXPECT_TRUE(r.has({"OK, done"}));
  Bytes cut = with_picks(dir, {5, 6, 7});
  cut.resize(trace_of(4) + 100);
  write_bytes(dir.file("fb.su"), cut);
  r = run(editing(dir, "1", "10"));
  EXPECT_EQ(read_bytes(dir.file("fb.su")), picks_set(cut, {{0, 0}}));
}

// The output named like a source: the source is read into itself (doubled),
// then deleted when Check1 is ticked.
TEST(MergeSuFiles, OutputEqualToASource) {
  TempDir dir;
  auto a = make_su(dir, "a.su", {.traces = 3, .samples = 10, .seed = 1});
  auto b = make_su(dir, "b.su", {.traces = 2, .samples = 10, .seed = 2});
  const std::string select = "show Add_SU_files\ndialog " + in_quotes(dir.str() + "/ a.su b.su") +
                             "\nclick Add_SU_files.Command1\nset Add_SU_files.Text2 " + in_quotes(dir.file("b.su")) + "\n";
  run(select + "reply yes\nreply no\nclick Add_SU_files.Command2\n");
  EXPECT_EQ(read_bytes(dir.file("b.su")), joined({b, a, b, a}));
  write_bytes(dir.file("b.su"), b);
  run(select + "check Add_SU_files.Check1 on\nreply yes\nreply no\nclick Add_SU_files.Command2\n");
  EXPECT_FALSE(std::filesystem::exists(dir.file("a.su")));
  EXPECT_FALSE(std::filesystem::exists(dir.file("b.su")));
}

// A range that starts before the first trace of the file (a negative
// channel typed in): those traces read as zeros and take no write.
TEST(ChannelReversal, TracesBeforeTheFileReadZeros) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 12, .samples = 4, .channels = 6});
  run(reversal(dir) + "select reversex.Combo4 0\nset reversex.Combo2 \"-1\"\nset reversex.Combo3 \"2\"\nclick reversex.Command3\n");
  // Traces -1, 0, 1, 2: traces 1 and 2 get the columns of 0 and -1.
  Bytes expected = in;
  std::fill_n(expected.begin() + 240, 16, 0);
  std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(trace_of(4) + 240), 16, 0);
  EXPECT_EQ(read_bytes(dir.file("line.su")), expected);
}

// One file chosen: the list holds its path, the output is named beside it;
// a name with a blank is cut like a list, and a first name shorter than
// three characters leaves the output name as it was.
TEST(MergeSuFiles, SingleFileAndNamesWithBlanks) {
  TempDir dir;
  make_su(dir, "a.su", {.traces = 3, .samples = 10});
  auto r = run("show Add_SU_files\ndialog " + in_quotes(dir.file("a.su")) + "\nclick Add_SU_files.Command1\ndump Add_SU_files\n"
               "dialog " + in_quotes(dir.str() + "/ my line.su") + "\nclick Add_SU_files.Command1\ndump Add_SU_files\n");
  auto dumps = r.with({"\"event\":\"dump\""});
  ASSERT_EQ(dumps.size(), 2u);
  expect_in(dumps[0], {"\"items\":[" + json(dir.file("a.su")) + "]"});
  EXPECT_EQ(texts_in(dumps[0], {"Text2", "Text4", "Text5", "Text9"}), (Texts{dir.file("a_raw.su"), "10", "3", "1"}));
  expect_in(dumps[1], {"\"items\":[" + json(dir.file("my")) + "," + json(dir.file("line.su")) + "]"});
  EXPECT_EQ(texts_in(dumps[1], {"Text2", "Text9"}), (Texts{dir.file("a_raw.su"), "2"}));
}

// With neither option set the run adds. Past 20 parts the rest of the text
// is one part: files 19 to 22 make one name that opens nothing, and its join
// writes the output's own bytes after it again.
TEST(RecordAppending, AdditionTakesTwentyPartsAtMost) {
  TempDir dir;
  std::string selection = dir.str() + "/";
  Bytes first18;
  for (int i = 1; i <= 22; ++i) {
    const std::string name = "f" + std::to_string(i) + ".su";
    auto bytes = make_su(dir, name, {.traces = 1, .samples = 2, .seed = i});
    if (i <= 18) first18 = joined({first18, bytes});
    selection += " " + name;
  }
  run("click Utility.Command12\nset Add_file.Text1 " + in_quotes(selection) + "\nset Add_file.Text2 " + in_quotes(dir.file("all.su")) +
      "\nclick Add_file.Command2\n");
  EXPECT_EQ(read_bytes(dir.file("all.su")), joined({first18, first18}));
}

// Absurd ranges of 16-bit fields end quickly, in bounded memory, and leave
// the file as it was where nothing of it is in the range.
TEST(ChannelReversal, AbsurdRangesEnd) {
  TempDir dir;
  auto in = make_su(dir, "line.su", {.traces = 12, .samples = 4, .channels = 6});
  auto r = run(reversal(dir) + "set reversex.Combo2 \"-32768\"\nset reversex.Combo3 \"-32000\"\nclick reversex.Command3\n"
               "set reversex.Text2 \"32767\"\nset reversex.Combo3 \"32767\"\nset reversex.Combo4 \"32767\"\nclick reversex.Command3\n");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.with({"has been updated"}).size(), 2u);
}

// ------------------------------------------------------------ bad input

namespace {
// SU files gone wrong: empty, noise, cut inside a trace, and headers whose
// ns is 0, negative or at the 16-bit edge.
std::vector<std::pair<std::string, Bytes>> spoiled_files() {
  Bytes good = gen::su_file({.traces = 6, .samples = 8, .channels = 3});
  std::vector<std::pair<std::string, Bytes>> files{{"empty", {}}, {"cut", Bytes(good.begin(), good.begin() + 700)}};
  Bytes noise(1000);
  for (size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<uint8_t>((i * 7919u) >> 3);
  files.push_back({"noise", noise});
  for (int16_t ns : {int16_t{0}, int16_t{-1}, int16_t{-59}, int16_t{-60}, int16_t{32767}}) {
    Bytes b = good;
    put_at<int16_t>(b, 114, ns);
    files.push_back({"ns " + std::to_string(ns), b});
  }
  return files;
}
}  // namespace

// Every panel and routine ends on every spoiled file, and the files that
// they only read stay as they were.
TEST(BadInput, SpoiledFilesEndEveryOperation) {
  TempDir dir;
  RunnerOptions options;
  options.max_seconds = 20;
  const std::string in = dir.file("in.su"), out = dir.file("out.su");
  const std::string reading =
      "show Add_SU_files\ndialog " + in_quotes(dir.str() + "/ in.su in.su") + "\nclick Add_SU_files.Command1\nset Add_SU_files.Text2 " +
      in_quotes(out) + "\nclick Add_SU_files.Command2\nclose Add_SU_files\n" + "session current_file " + in_quotes(in) +
      "\nclick Utility.Command12\nclick Add_file.Option2\nset Add_file.Text2 " + in_quotes(out) +
      "\nset Add_file.Text3 \"2\"\nset Add_file.Text4 \"40\"\nclick Add_file.Command2\n" +
      "click Utility.Command13\nset Extract.Text3 \"1\"\nset Extract.Text2 " + in_quotes(out) + "\nclick Extract.Command3\n";
  const std::string editing_in_place = "click Utility.Commandp12\nclick reversex.Command3\n" + replacement(in, in, "2", "1") +
                                       "dialog " + in_quotes(in) + "\ninput \"1\"\ninput \"10\"\nclick Utility.Command8\n";
  for (const auto& [name, bytes] : spoiled_files()) {
    SCOPED_TRACE(name);
    write_bytes(in, bytes);
    std::filesystem::remove(out);
    auto r = run(reading, options);
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_EQ(read_bytes(in), bytes);
    r = run("session current_file " + in_quotes(in) + "\n" + editing_in_place, options);
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_TRUE(r.has({"OK, done"}));
  }
}
