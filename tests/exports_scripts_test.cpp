// The runner scripts of the vibroseis and export panels: each runs in a
// folder of its own holding the SU file it needs, and its whole transcript
// is the check (the folder written ${TF_DIR}).
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "su_builder.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace {

std::vector<SuTrace> three_shots_of_24() {
  auto traces = line_of(3, 24, 2);
  for (auto& t : traces) {
    t.shot_station = 2 * t.fldr;
    t.receiver_station = t.tracf - 1;
    t.fbp = static_cast<int16_t>(150 + t.tracf);
    t.scalel = -1;
  }
  return traces;
}

}  // namespace

TEST(Scripts, VibroseisAndExportsGiveTheirExpectedTranscripts) {
  const struct {
    const char* script;
    const char* file;
    std::vector<SuTrace> traces;
    int16_t ns;
  } cases[] = {
      {"vibro_write", "vib.su", line_of(1, 2, 2), 2},
      {"vibroseis_one_record", "vib.su", line_of(3, 5, 8), 8},
      {"rayfract_three_shots", "line.su", three_shots_of_24(), 2},
      {"exports_crossed_entries", "line.su", line_of(1, 3, 2), 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    TempDir dir;
    RunnerOptions options;
    options.app_dir = dir.file("app");
    options.system_dir = dir.file("system");
    std::filesystem::create_directories(options.app_dir);
    std::filesystem::create_directories(options.system_dir);
    auto traces = c.traces;
    if (std::string(c.script) == "vibroseis_one_record")
      for (auto& t : traces) t.fldr += 10;
    write_bytes(dir.file(c.file), su_bytes(traces, c.ns, 500));
    EXPECT_EQ(run_script_file(c.script, dir.str(), options).lines, expected_transcript(c.script));
  }
}
