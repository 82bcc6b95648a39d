// tracefold-batch FILE.bat: runs a batch file of Seismic Unix command lines,
// what the platform's open verb does with a ".bat" elsewhere.
//
// Where it runs: started from a terminal, in that terminal (pause waits for
// a key). Started from the desktop with a display and a terminal emulator at
// hand, in a new terminal window. Otherwise in the background, with what the
// commands print kept in FILE.log beside the batch file (pause passes).
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "frame/batch_interpreter.h"
#include "frame/shell_start.h"
#include "su/binary_file.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* terminal_emulators[] = {"x-terminal-emulator", "xterm"};

bool has_display() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
    const char* value = std::getenv(name);
    if (value && *value) return true;
  }
  return false;
}

// Starts this program again inside a terminal window, told to run there.
// Comes back only when no terminal could be started.
void run_in_terminal_window(const std::string& batch) {
  std::error_code ec;
  std::string self = fs::read_symlink("/proc/self/exe", ec).string();
  if (ec) return;
  for (const char* emulator : terminal_emulators) {
    std::string terminal = tf::find_on_path(emulator);
    if (terminal.empty()) continue;
    std::string folder = fs::current_path(ec).string();
    std::vector<std::string> args{terminal, "-e", self, "--in-window", folder, batch};
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::string batch, window_folder;
  bool in_window = false;
  for (int i = 1; i < argc; ++i) {
    std::string a = argv[i];
    if (a == "--in-window" && i + 1 < argc) in_window = true, window_folder = argv[++i];
    else if (batch.empty()) batch = a;  // later words are the batch's arguments, which no line uses
  }
  if (batch.empty()) {
    std::cerr << "usage: tracefold-batch FILE.bat\n";
    return 2;
  }
  if (in_window && chdir(window_folder.c_str()) != 0) return 1;
  std::error_code ec;
  batch = fs::absolute(batch, ec).string();

  std::string text;
  try {
    text = tf::read_whole_file(batch);
  } catch (const std::exception&) {
    std::cerr << "tracefold-batch: cannot read " << batch << "\n";
    return 1;
  }

  bool terminal = isatty(0) != 0;
  if (!terminal && !in_window && has_display()) run_in_terminal_window(batch);

  tf::BatchSession session;
  if (terminal) {
    session.pause_waits = true;
  } else {
    std::string log = fs::path(batch).replace_extension(".log").string();
    int log_fd = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (log_fd >= 0) session.out_fd = session.err_fd = log_fd;
    if (nothing >= 0) session.in_fd = nothing;
  }
  return tf::run_batch_text(text, session);
}
