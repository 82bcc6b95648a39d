// Missing, empty, short and garbled inputs through every SU operation of
// this group: each run ends in the panel's own behaviour, without a crash
// or a hang, and leaves the input as it was.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <random>

#include "operations_desk.h"

using namespace tf;
using namespace tf::test;

namespace {
std::vector<uint8_t> garbled(size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<uint8_t> bytes(size);
  for (auto& b : bytes) b = static_cast<uint8_t>(random());
  return bytes;
}

// The main road of each panel on the file ${F}.
const std::pair<const char*, const char*> roads[] = {
    {"rezize", "session current_file \"${F}\"\nclick Utility.Command9\ntab rezize.SSTab1 1\nclick rezize.Command3\n"
               "tab rezize.SSTab1 2\nclick rezize.Command3\n"},
    {"substract", "click Utility.Commandp8\nset substract.Text1 \"${F}\"\nset substract.Text2 \"${F}\"\n"
                  "set substract.Text3 \"${F}.out\"\nclick substract.Command5\nclick substract.Command7\n"},
    {"Stack_Time", "click Utility.Command10\ndialog \"${F}\"\nclick Stack_Time.Command3\nclick Stack_Time.Command1\n"},
    {"FileSize", "session current_file \"${F}\"\nclick Utility.Commandp7\n"},
    {"spliter", "click Utility.Commandp5\ndialog \"${F}\"\nclick spliter.Command1\nset spliter.Combo1 \"1000\"\n"
                "reply yes\nclick spliter.Command5\n"},
    {"compression", "dialog \"${F}\"\nclick Utility.Command19\ndialog \"${F}\"\nclick Utility.Command21\n"},
};
}  // namespace

TEST(OperationsBadInput, EveryPanelEndsOnMissingEmptyShortAndGarbledFiles) {
  struct Input {
    const char* what;
    std::optional<std::vector<uint8_t>> bytes;  // nullopt: no file
  };
  std::vector<uint8_t> negative_ns(240 * 3, 0);
  put_at<int16_t>(negative_ns, 114, -10);
  const Input inputs[] = {
      {"missing", std::nullopt},
      {"empty", std::vector<uint8_t>{}},
      {"short", garbled(100, 1)},
      {"garbled", garbled(50000, 2)},
      {"negative ns", negative_ns},
  };
  for (const auto& [panel, road] : roads)
    for (const auto& input : inputs) {
      SCOPED_TRACE(std::string(panel) + ", " + input.what);
      TempDir dir;
      const std::string file = dir.file("bad.su");
      if (input.bytes) write_bytes(file, *input.bytes);
      ::setenv("F", file.c_str(), 1);
      RunnerOptions options;
      options.app_dir = dir.str();
      options.max_seconds = 20;
      auto r = run(road, options);
      EXPECT_EQ(r.exit_code, 0);
      EXPECT_FALSE(r.has({"\"event\":\"aborted\""}));
      if (input.bytes) EXPECT_EQ(read_bytes(file), *input.bytes);
    }
}
