// The hot path of the importers: 99 ES-1225 records of 48 channels x 4000
// samples into one SU file, against a plain copy of as many bytes.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <sstream>

#include "tools/record_generators.h"
#include "ui/headless/script_runner.h"

namespace {

namespace fs = std::filesystem;

struct Line {
  fs::path folder;
  std::string script;
  Line() {
    folder = fs::temp_directory_path() / "tracefold-bench";
    fs::remove_all(folder);
    tf::gen::Es1225Layout layout;
    layout.channels = 48;
    layout.samples = 4000;
    std::string names;
    for (int r = 1; r <= 99; ++r) names += " " + fs::path(tf::gen::write_es1225(folder.string(), r, layout)).filename().string();
    script = "click Utility.Option4\n"
             "dialog \"" + folder.string() + "/" + names + "\"\n"
             "click es1225.Command3\n"
             "set es1225.Text5 \"48\"\n"
             "set es1225.Text4 \"4000\"\n"
             "set es1225.Text2 \"" + (folder / "line.su").string() + "\"\n"
             "click es1225.Command1\n";
  }
  ~Line() { fs::remove_all(folder); }
};

Line& line() {
  static Line l;
  return l;
}

void BM_Es1225Line(benchmark::State& state) {
  auto& l = line();
  for (auto _ : state) {
    fs::remove(l.folder / "line.su");
    std::ostringstream transcript;
    tf::run_script(l.script, {}, transcript);
    benchmark::DoNotOptimize(transcript);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(l.folder / "line.su")));
}
BENCHMARK(BM_Es1225Line)->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_CopySameBytes(benchmark::State& state) {
  auto& l = line();
  fs::path source = l.folder / "line.su";
  if (!fs::exists(source)) {
    std::ostringstream transcript;
    tf::run_script(l.script, {}, transcript);
  }
  for (auto _ : state) fs::copy_file(source, l.folder / "copy.su", fs::copy_options::overwrite_existing);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(source)));
}
BENCHMARK(BM_CopySameBytes)->Unit(benchmark::kMillisecond)->MinTime(2);

}  // namespace

BENCHMARK_MAIN();
