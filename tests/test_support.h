// What the tests share: temporary folders, little-endian record bytes, text
// files, and runs of the panels on the recording platform.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "frame/conventions.h"
#include "frame/panel.h"
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

inline std::string text_of(const std::string& path) {
  auto bytes = read_bytes(path);
  return std::string(bytes.begin(), bytes.end());
}

inline void write_bytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// Writes a text file, making its folder first.
inline void write_text(const std::string& path, const std::string& text = "") {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  write_bytes(path, std::vector<uint8_t>(text.begin(), text.end()));
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

// The header words every importer writes for the trace at `pos`: fldr,
// tracf, trid, nvs and nhs 1, ns and dt.
inline void put_trace_words(std::vector<uint8_t>& file, size_t pos, int32_t fldr, int32_t tracf, int ns, int dt) {
  put_at<int32_t>(file, pos + 8, fldr);
  put_at<int32_t>(file, pos + 12, tracf);
  for (size_t at : {28, 30, 32}) put_at<int16_t>(file, pos + at, 1);
  put_at<int16_t>(file, pos + 114, static_cast<int16_t>(ns));
  put_at<int16_t>(file, pos + 116, static_cast<int16_t>(dt));
}

inline std::string record_name(int n, const std::string& extension) {
  char name[16];
  std::snprintf(name, sizeof name, "rec%03d.", n);
  return name + extension;
}

// The dialog text of a multiple selection of records first..last in `dir`:
// the folder with its separator, then the names.
inline std::string several(const TempDir& dir, int first, int last, const std::string& extension) {
  std::string text = dir.str() + "/";
  for (int i = first; i <= last; ++i) text += " " + record_name(i, extension);
  return text;
}

// The run-time error number that a call raises, 0 for none.
template <typename F>
int error_number(F&& call) {
  try {
    call();
  } catch (const RunTimeError& e) {
    return e.number;
  }
  return 0;
}

inline std::vector<std::string> split_lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Every fragment stands in `text`.
inline void expect_in(const std::string& text, std::initializer_list<std::string> fragments) {
  for (const auto& f : fragments) EXPECT_NE(text.find(f), std::string::npos) << f << "\n  not in " << text;
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
  // The last dump of a panel, "" when there is none.
  std::string dump(const std::string& panel) const {
    auto dumps = with({"\"event\":\"dump\",\"panel\":\"" + panel + "\""});
    return dumps.empty() ? "" : dumps.back();
  }
};

// The runner's options with a low box limit unless one is set, so that a
// retry loop ends the run rather than the test.
inline RunnerOptions limited(RunnerOptions options) {
  if (options.max_boxes == RunnerOptions{}.max_boxes) options.max_boxes = 200;
  return options;
}

// Runs a script in-process, on a virtual clock.
inline RunResult run(const std::string& script, RunnerOptions options = {}) {
  options = limited(options);
  std::ostringstream out;
  RunResult result;
  result.exit_code = run_script(script, options, out);
  result.lines = split_lines(out.str());
  return result;
}

// An application on the recording platform (or one derived from it) for
// tests that call routines directly.
template <typename P = ScriptPlatform>
struct Recording {
  std::ostringstream out;
  P platform;
  App app{platform};
  explicit Recording(RunnerOptions options = {}) : platform(limited(std::move(options)), out) {}
  std::vector<std::string> lines() const { return split_lines(out.str()); }
  // The message and input boxes shown.
  std::vector<std::string> boxes() const {
    std::vector<std::string> v;
    for (const auto& l : lines())
      if (l.find("\"event\":\"msgbox\"") != std::string::npos || l.find("\"event\":\"inputbox\"") != std::string::npos)
        v.push_back(l);
    return v;
  }
};

// A JSON text as it stands in the transcript (quotes and backslashes escaped).
inline std::string json(const std::string& text) { return json_quote(text); }

// A whole message box line of the transcript.
inline std::string box_line(const std::string& text, const std::string& icon = "none", const std::string& buttons = "ok",
                            const std::string& answer = "ok") {
  return "{\"event\":\"msgbox\",\"text\":" + json(text) + ",\"title\":\"Tracefold 1.0\",\"icon\":\"" + icon +
         "\",\"buttons\":\"" + buttons + "\",\"answer\":\"" + answer + "\"}";
}

}  // namespace tf::test
