// The explorer reads one word at the place of any trace: the time to read
// a word of trace 1, 1000 or 1,000,000 of a large SU file is the same, as
// no trace before it is read.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "ui/headless/script_runner.h"

namespace {

namespace fs = std::filesystem;

constexpr int64_t traces = 1'000'000, record = 240 + 4 * 250;

// A sparse SU file of a million traces of 250 samples.
struct LargeFile {
  fs::path path = fs::temp_directory_path() / "tracefold-bench-explorer.su";
  LargeFile() {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.seekp(traces * record - 1);
    out.put('\0');
  }
  ~LargeFile() { fs::remove(path); }
};

LargeFile& large_file() {
  static LargeFile f;
  return f;
}

void BM_ExplorerWordOfTrace(benchmark::State& state) {
  const int64_t trace = state.range(0);
  const std::string script = "session current_file \"" + large_file().path.string() +
                             "\"\nshow pick\nclick pick.Option3\nset pick.Text2 " +
                             std::to_string((trace - 1) * record + 115) + "\nclick pick.Command2\n";
  for (auto _ : state) {
    std::ostringstream transcript;
    tf::run_script(script, {}, transcript);
    benchmark::DoNotOptimize(transcript);
  }
}
BENCHMARK(BM_ExplorerWordOfTrace)->Arg(1)->Arg(1000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

}  // namespace
