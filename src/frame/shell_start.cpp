#include "frame/shell_start.h"

#include <cstdio>
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

#include <cerrno>
#include <chrono>
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
  if (r.wait_for_end) {
    SHELLEXECUTEINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.lpVerb = r.verb.c_str();
    info.lpFile = r.file.c_str();
    info.lpParameters = r.params.empty() ? nullptr : r.params.c_str();
    info.lpDirectory = r.dir.empty() ? nullptr : r.dir.c_str();
    info.nShow = r.show;
    if (!ShellExecuteExA(&info)) return static_cast<int>(reinterpret_cast<intptr_t>(info.hInstApp));
    if (info.hProcess) {
      WaitForSingleObject(info.hProcess, INFINITE);
      CloseHandle(info.hProcess);
    }
    return static_cast<int>(reinterpret_cast<intptr_t>(info.hInstApp));
  }
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

std::string find_on_path(const std::string& program) {
  char buf[MAX_PATH] = {};
  return SearchPathA(nullptr, program.c_str(), nullptr, MAX_PATH, buf, nullptr) ? std::string(buf) : std::string();
}

std::string Platform::temp_folder() {
  char buf[260] = {};
  return GetTempPathA(260, buf) == 0 ? std::string() : std::string(buf);
}

std::string Platform::temp_file_name(const std::string& folder, const std::string& prefix) {
  char buf[MAX_PATH] = {};
  return GetTempFileNameA(folder.c_str(), prefix.c_str(), 0, buf) == 0 ? std::string() : std::string(buf);
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

// In the child: the program in its folder, with no console input, as a
// start from the desktop; a hidden start sees no display, so that a batch
// runs in the background rather than in a terminal window. Never comes back.
[[noreturn]] void exec_program(const std::vector<std::string>& argv, const std::string& dir, bool hidden) {
  if (hidden) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
  }
  if (!dir.empty() && chdir(dir.c_str()) != 0) _exit(127);
  int nothing = open("/dev/null", O_RDONLY);
  if (nothing >= 0) dup2(nothing, 0);
  std::vector<char*> args;
  for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  execvp(args[0], args.data());
  _exit(127);
}

// Starts a program and waits for the child: with `detached`, a child that
// starts the program in its own session and ends at once, so that the call
// comes back at once and no zombie stays behind; otherwise the program
// itself, so that the call comes back when it has ended (a pause in a batch
// passes, there being no console input).
int spawn(const std::vector<std::string>& argv, const std::string& dir, bool detached, bool hidden) {
  pid_t child = fork();
  if (child < 0) return 0;
  if (child == 0) {
    if (detached) {
      setsid();
      if (fork() != 0) _exit(0);
    }
    exec_program(argv, dir, hidden);
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return shell_started;
}

std::string batch_interpreter() {
  std::string beside = join_path(program_folder(), "tracefold-batch");
  if (access(beside.c_str(), X_OK) == 0) return beside;
  return find_on_path("tracefold-batch");
}
}  // namespace

std::string find_on_path(const std::string& program) {
  const char* path = std::getenv("PATH");
  if (!path || program.empty()) return "";
  std::string p = path;
  size_t start = 0;
  while (start <= p.size()) {
    size_t colon = p.find(':', start);
    std::string dir = p.substr(start, colon == std::string::npos ? std::string::npos : colon - start);
    std::string candidate = join_path(dir.empty() ? "." : dir, program);
    std::error_code ec;
    if (access(candidate.c_str(), X_OK) == 0 && fs::is_regular_file(candidate, ec)) return candidate;
    if (colon == std::string::npos) break;
    start = colon + 1;
  }
  return "";
}

bool shell_start_would_find(const ShellRequest& r) {
  std::string file = native_path(r.file);
  std::error_code ec;
  if (!file.empty() && fs::exists(file, ec)) return true;
  return file.find(sep_char) == std::string::npos && !file.empty() && !find_on_path(file).empty();
}

int shell_start(const ShellRequest& r) {
  std::string file = native_path(r.file);
  std::error_code ec;
  if (file.empty() || !fs::exists(file, ec)) {
    // A bare program name is looked up on PATH, as the platform does.
    if (file.find(sep_char) != std::string::npos || find_on_path(file).empty()) return shell_file_not_found;
    file = find_on_path(file);
  }
  std::vector<std::string> argv;
  if (lower(fs::path(file).extension().string()) == ".bat") {
    argv = {batch_interpreter(), file};
  } else if (access(file.c_str(), X_OK) == 0 && fs::is_regular_file(file, ec)) {
    argv = {file};
  } else {
    argv = {find_on_path("xdg-open"), file};
  }
  if (argv[0].empty()) return shell_no_association;
  for (auto& w : words(r.params)) argv.push_back(w);
  constexpr int hide = 0;  // the window style of a hidden start
  return spawn(argv, r.dir, !r.wait_for_end, r.show == hide);
}

std::string find_executable(const std::string& document) {
  std::error_code ec;
  if (!fs::is_regular_file(native_path(document), ec)) return "";
  std::string ext = lower(fs::path(document).extension().string());
  if (ext == ".bat") return batch_interpreter();
  if (ext == ".zip") return find_on_path("zip");
  return "";
}

std::string Platform::temp_folder() {
  std::error_code ec;
  auto folder = fs::temp_directory_path(ec);
  return ec ? std::string() : join_path(folder.string(), "");
}

std::string Platform::temp_file_name(const std::string& folder, const std::string& prefix) {
  // The number starts from the clock and goes up until a name is free; the
  // file is made at once so that the name stays ours.
  auto tick = std::chrono::steady_clock::now().time_since_epoch().count();
  for (unsigned attempt = 0; attempt < 0xFFFF; ++attempt) {
    unsigned unique = static_cast<unsigned>((tick + attempt) % 0xFFFF) + 1;
    char hex[8];
    std::snprintf(hex, sizeof hex, "%X", unique);
    std::string name = join_path(folder, prefix.substr(0, 3) + hex + ".tmp");
    int fd = open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
    if (fd >= 0) {
      close(fd);
      return name;
    }
    if (errno != EEXIST) return "";
  }
  return "";
}
#endif

}  // namespace tf
