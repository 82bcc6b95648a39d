#include "frame/shell_start.h"

#include <filesystem>
#include <vector>

#include "frame/conventions.h"
#include "frame/paths.h"

#ifdef _WIN32
#include <windows.h>
#include <shellapi.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace tf {

namespace fs = std::filesystem;

std::string program_folder() {
#ifdef _WIN32
  char buf[MAX_PATH];
  GetModuleFileNameA(nullptr, buf, MAX_PATH);
  return fs::path(buf).parent_path().string();
#else
  std::error_code ec;
  auto exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? std::string(".") : exe.parent_path().string();
#endif
}

#ifdef _WIN32
int shell_start(const ShellRequest& r) {
  auto result = ShellExecuteA(nullptr, r.verb.c_str(), r.file.c_str(), r.params.empty() ? nullptr : r.params.c_str(),
                              r.dir.empty() ? nullptr : r.dir.c_str(), r.show);
  return static_cast<int>(reinterpret_cast<intptr_t>(result));
}

bool shell_start_would_find(const ShellRequest& r) {
  return GetFileAttributesA(r.file.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string find_executable(const std::string& document) {
  char buf[MAX_PATH] = {};
  auto result = FindExecutableA(document.c_str(), nullptr, buf);
  return reinterpret_cast<intptr_t>(result) > 32 ? std::string(buf) : std::string();
}
#else
namespace {
// Splits the parameters at blanks, as a command line would.
std::vector<std::string> words(const std::string& text) {
  std::vector<std::string> out;
  std::string current;
  bool quoted = false;
  for (char c : text) {
    if (c == '"') quoted = !quoted;
    else if (c == ' ' && !quoted) {
      if (!current.empty()) out.push_back(current), current.clear();
    } else current += c;
  }
  if (!current.empty()) out.push_back(current);
  return out;
}

std::string on_path(const std::string& program) {
  const char* path = std::getenv("PATH");
  if (!path) return "";
  std::string p = path;
  size_t start = 0;
  while (start <= p.size()) {
    size_t colon = p.find(':', start);
    std::string dir = p.substr(start, colon == std::string::npos ? std::string::npos : colon - start);
    std::string candidate = join_path(dir.empty() ? "." : dir, program);
    if (access(candidate.c_str(), X_OK) == 0) return candidate;
    if (colon == std::string::npos) break;
    start = colon + 1;
  }
  return "";
}

// Starts a program in its own session and does not wait for it: a child
// forks the grandchild and ends at once, so no zombie stays behind.
int spawn_detached(const std::vector<std::string>& argv, const std::string& dir) {
  pid_t child = fork();
  if (child < 0) return 0;
  if (child == 0) {
    setsid();
    if (fork() != 0) _exit(0);
    if (!dir.empty() && chdir(dir.c_str()) != 0) _exit(127);
    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    execvp(args[0], args.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return shell_started;
}

std::string batch_interpreter() {
  std::string beside = join_path(program_folder(), "tracefold-batch");
  if (access(beside.c_str(), X_OK) == 0) return beside;
  std::string found = on_path("tracefold-batch");
  return found.empty() ? "tracefold-batch" : found;
}
}  // namespace

bool shell_start_would_find(const ShellRequest& r) {
  std::string file = native_path(r.file);
  std::error_code ec;
  if (!file.empty() && fs::exists(file, ec)) return true;
  return file.find(sep_char) == std::string::npos && !file.empty() && !on_path(file).empty();
}

int shell_start(const ShellRequest& r) {
  std::string file = native_path(r.file);
  std::error_code ec;
  if (file.empty() || !fs::exists(file, ec)) {
    // A bare program name is looked up on PATH, as the platform does.
    if (file.find(sep_char) != std::string::npos || on_path(file).empty()) return shell_file_not_found;
    file = on_path(file);
  }
  std::vector<std::string> argv;
  if (lower(fs::path(file).extension().string()) == ".bat") {
    argv = {batch_interpreter(), file};
  } else if (access(file.c_str(), X_OK) == 0 && fs::is_regular_file(file, ec)) {
    argv = {file};
  } else {
    argv = {"xdg-open", file};
  }
  for (auto& w : words(r.params)) argv.push_back(w);
  return spawn_detached(argv, r.dir);
}

std::string find_executable(const std::string& document) {
  std::string ext = lower(fs::path(document).extension().string());
  if (ext == ".bat") return batch_interpreter();
  if (ext == ".zip") return on_path("zip");
  return "";
}
#endif

}  // namespace tf
