// KGS integer to SU and SU to KGS of 10,000 traces x 1000 samples, against
// a plain copy of the bytes each writes.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <sstream>

#include "tools/record_generators.h"
#include "ui/headless/script_runner.h"

namespace {

namespace fs = std::filesystem;

struct KgsLine {
  fs::path folder = fs::temp_directory_path() / "tracefold-kgs-bench";
  std::string to_su, to_kgs;
  KgsLine() {
    fs::remove_all(folder);
    tf::gen::KgsLayout layout;
    layout.traces = 10000;
    tf::gen::write_kgs((folder / "line.EVD").string(), layout);
    auto script = [&](const char* option, const char* in, const char* out) {
      return std::string("click Utility.") + option + "\nset Convert.Text1 \"" + (folder / in).string() +
             "\"\nset Convert.Text2 \"" + (folder / out).string() + "\"\nclick Convert.Command2\n";
    };
    to_su = script("Option3", "line.EVD", "line.SU");
    to_kgs = script("Option11", "line.SU", "line.DAT");
    convert(to_su, "line.SU");
  }
  ~KgsLine() { fs::remove_all(folder); }
  void convert(const std::string& script, const char* out) {
    fs::remove(folder / out);
    std::ostringstream transcript;
    tf::run_script(script, {}, transcript);
  }
};

KgsLine& kgs_line() {
  static KgsLine l;
  return l;
}

void BM_KgsIntegerToSu(benchmark::State& state) {
  auto& l = kgs_line();
  for (auto _ : state) l.convert(l.to_su, "line.SU");
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(l.folder / "line.SU")));
}
BENCHMARK(BM_KgsIntegerToSu)->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_SuToKgs(benchmark::State& state) {
  auto& l = kgs_line();
  for (auto _ : state) l.convert(l.to_kgs, "line.DAT");
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(l.folder / "line.DAT")));
}
BENCHMARK(BM_SuToKgs)->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_CopyKgsOutputBytes(benchmark::State& state) {
  auto& l = kgs_line();
  for (auto _ : state) fs::copy_file(l.folder / "line.SU", l.folder / "copy.SU", fs::copy_options::overwrite_existing);
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(l.folder / "line.SU")));
}
BENCHMARK(BM_CopyKgsOutputBytes)->Unit(benchmark::kMillisecond)->MinTime(2);

}  // namespace
