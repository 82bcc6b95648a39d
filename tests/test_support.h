// What the tests share: temporary folders, little-endian record reading,
// and in-process runs of the headless runner.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "ui/headless/json_line.h"
#include "ui/headless/script_runner.h"

namespace tf::test {

// A fresh folder below the system's temporary folder, removed at the end.
class TempDir {
 public:
  TempDir() {
    static int counter = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("tracefold-test-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TempDir() { std::filesystem::remove_all(path_); }
  std::string str() const { return path_.string(); }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::vector<uint8_t> read_bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

inline void write_bytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

template <typename T>
T value_at(const std::vector<uint8_t>& bytes, size_t offset) {
  T v{};
  std::memcpy(&v, bytes.data() + offset, sizeof(T));
  return v;
}

template <typename T>
void put_at(std::vector<uint8_t>& bytes, size_t offset, T value) {
  if (bytes.size() < offset + sizeof(T)) bytes.resize(offset + sizeof(T), 0);
  std::memcpy(bytes.data() + offset, &value, sizeof(T));
}

struct RunResult {
  int exit_code = 0;
  std::vector<std::string> lines;  // the transcript, one JSON object a line
  // Lines holding every one of the given fragments.
  std::vector<std::string> with(std::initializer_list<std::string> fragments) const {
    std::vector<std::string> out;
    for (const auto& line : lines) {
      bool all = true;
      for (const auto& f : fragments) all = all && line.find(f) != std::string::npos;
      if (all) out.push_back(line);
    }
    return out;
  }
  bool has(std::initializer_list<std::string> fragments) const { return !with(fragments).empty(); }
};

// Runs a script in-process; the options default to a virtual clock and a
// low box limit so that a retry loop ends the run rather than the test.
inline RunResult run(const std::string& script, RunnerOptions options = {}) {
  if (options.max_boxes == RunnerOptions{}.max_boxes) options.max_boxes = 200;
  std::ostringstream out;
  RunResult result;
  result.exit_code = run_script(script, options, out);
  std::istringstream lines(out.str());
  std::string line;
  while (std::getline(lines, line)) result.lines.push_back(line);
  return result;
}

// A JSON text as it stands in the transcript (quotes and backslashes escaped).
inline std::string json(const std::string& text) { return json_quote(text); }

}  // namespace tf::test
