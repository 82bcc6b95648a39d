#include "frame/batch_interpreter.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <filesystem>
#include <vector>

#include "frame/conventions.h"
#include "frame/paths.h"
#include "frame/shell_start.h"

namespace tf {

namespace fs = std::filesystem;

namespace {

// What the interpreter says, on the batch's error stream.
constexpr const char* unknown_program = "' is not a known command, program or batch file.";
constexpr const char* file_missing = "The system cannot find the file ";
constexpr const char* cannot_write = "Cannot write the file ";
constexpr const char* nothing_deleted = "Could not find ";
constexpr const char* bad_syntax = "The syntax of the command is incorrect.";
constexpr const char* pause_prompt = "Press any key to continue . . . ";

// The shells that a line may name before its command ("command.com /c ").
constexpr const char* shell_prefixes[] = {"command.com", "command", "cmd.exe", "cmd"};

void say(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return;
    done += static_cast<size_t>(n);
  }
}

std::string trim(const std::string& s) {
  size_t a = s.find_first_not_of(" \t");
  if (a == std::string::npos) return "";
  return s.substr(a, s.find_last_not_of(" \t") - a + 1);
}

// A name of a line taken from the batch's working folder.
std::string in_folder(const std::string& path, const std::string& working_dir) {
  if (path.empty() || path[0] == '/' || working_dir.empty()) return path;
  return join_path(working_dir, path);
}

bool is_program(const fs::path& p) {
  std::error_code ec;
  return fs::is_regular_file(p, ec) && access(p.c_str(), X_OK) == 0;
}

// An executable in `folder` called `stem` or `stem`.exe, in any case.
std::string program_in(const fs::path& folder, const std::string& stem) {
  std::error_code ec;
  for (fs::directory_iterator d(folder, ec), end; !ec && d != end; d.increment(ec)) {
    std::string name = lower(d->path().filename().string());
    if ((name == stem || name == stem + ".exe") && is_program(d->path())) return d->path().string();
  }
  return "";
}

// Words and the signs | < > >> of a line; double quotes group blanks.
struct Token {
  std::string text;
  bool sign = false;
};

std::vector<Token> tokens(const std::string& line) {
  std::vector<Token> out;
  std::string word;
  bool quoted = false, has_word = false;
  auto flush = [&] {
    if (has_word) out.push_back({word, false});
    word.clear();
    has_word = false;
  };
  for (size_t i = 0; i < line.size(); ++i) {
    char c = line[i];
    if (c == '"') {
      quoted = !quoted;
      has_word = true;
    } else if (quoted) {
      word += c;
    } else if (c == ' ' || c == '\t') {
      flush();
    } else if (c == '|' || c == '<' || c == '>') {
      flush();
      std::string sign(1, c);
      if (c == '>' && i + 1 < line.size() && line[i + 1] == '>') sign = ">>", ++i;
      out.push_back({sign, true});
    } else {
      word += c;
      has_word = true;
    }
  }
  flush();
  return out;
}

// One program of a pipeline with its redirections.
struct Stage {
  std::vector<std::string> words;
  std::string in_file;
  std::string out_file;
  bool append = false;
};

bool parse(const std::vector<Token>& toks, std::vector<Stage>& stages) {
  stages.emplace_back();
  for (size_t i = 0; i < toks.size(); ++i) {
    const Token& t = toks[i];
    if (!t.sign) {
      stages.back().words.push_back(t.text);
    } else if (t.text == "|") {
      stages.emplace_back();
    } else {
      if (i + 1 >= toks.size() || toks[i + 1].sign) return false;
      Stage& s = stages.back();
      (t.text == "<" ? s.in_file : s.out_file) = toks[++i].text;
      if (t.text != "<") s.append = t.text == ">>";
    }
  }
  for (const auto& s : stages)
    if (s.words.empty()) return false;
  return true;
}

bool is_switch(const std::string& w) {
  return w.size() >= 2 && w.size() <= 3 && w[0] == '/' && std::isalpha(static_cast<unsigned char>(w.back()));
}

// An argument that names a file ("tape=/data/x.sgy", "/data/x.su") found
// regardless of case, as the batch's names were lower-cased when written.
std::string resolve_argument(const std::string& arg, const std::string& working_dir) {
  size_t slash = arg.find('/');
  if (slash == std::string::npos) return arg;
  size_t equals = arg.find('=');
  if (equals != std::string::npos && equals < slash)
    return arg.substr(0, equals + 1) + resolve_path(arg.substr(equals + 1), working_dir);
  return resolve_path(arg, working_dir);
}

std::string full_name(const std::string& name, const BatchSession& s) {
  return in_folder(resolve_path(name, s.working_dir), s.working_dir);
}

// Appends the first `length` bytes of `source`: what it held when the line
// started, even when it is the file being written.
bool append_file(int out, const std::string& source, uintmax_t length) {
  int in = open(source.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) return false;
  char buffer[65536];
  ssize_t n = 0;
  bool ok = true;
  while (length > 0 && (n = read(in, buffer, static_cast<size_t>(std::min<uintmax_t>(sizeof buffer, length)))) > 0) {
    length -= static_cast<uintmax_t>(n);
    for (ssize_t done = 0; done < n;) {
      ssize_t w = write(out, buffer + done, static_cast<size_t>(n - done));
      if (w <= 0) {
        ok = false;
        break;
      }
      done += w;
    }
    if (!ok) break;
  }
  close(in);
  return ok && length == 0;
}

// copy [/b] a[+b...] [destination]: the sources one after the other into
// the destination. A join whose destination is its first source appends to
// it, as "copy/b out+piece out" does.
int copy_command(const std::vector<std::string>& words, BatchSession& s) {
  std::vector<std::string> operands;
  bool glue = false;
  for (const auto& w : words) {
    if (w.empty() || is_switch(w)) continue;
    if (!operands.empty() && (glue || w.front() == '+')) operands.back() += w;
    else operands.push_back(w);
    glue = w.back() == '+';
  }
  std::vector<std::string> sources;
  if (!operands.empty()) {
    std::string list = operands[0] + "+";
    for (size_t start = 0, plus; (plus = list.find('+', start)) != std::string::npos; start = plus + 1)
      if (plus > start) sources.push_back(list.substr(start, plus - start));
  }
  if (sources.empty() || (operands.size() < 2 && sources.size() < 2)) {
    say(s.err_fd, std::string(bad_syntax) + "\n");
    return 1;
  }
  std::string destination = full_name(operands.size() > 1 ? operands[1] : sources[0], s);
  std::error_code ec;
  std::vector<std::string> present;
  std::vector<uintmax_t> lengths;  // as the line found them
  for (const auto& source : sources) {
    std::string name = full_name(source, s);
    if (fs::is_regular_file(name, ec)) present.push_back(name), lengths.push_back(fs::file_size(name, ec));
    else say(s.err_fd, file_missing + source + "\n");
  }
  if (present.empty()) return 1;
  if (fs::is_directory(destination, ec)) destination = join_path(destination, fs::path(present[0]).filename().string());
  bool onto_first = fs::equivalent(present[0], destination, ec);
  // A later source that is the destination itself is read from a copy
  // written beside it, which then takes the destination's place.
  bool read_back = false;
  for (size_t i = 1; i < present.size() && !onto_first; ++i) read_back = read_back || fs::equivalent(present[i], destination, ec);
  const std::string written = read_back ? destination + ".copy~" : destination;
  int out = open(written.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | (onto_first ? O_APPEND : O_TRUNC), 0666);
  if (out < 0) {
    say(s.err_fd, cannot_write + destination + "\n");
    return 1;
  }
  bool ok = present.size() == sources.size();
  for (size_t i = onto_first ? 1 : 0; i < present.size(); ++i) ok = append_file(out, present[i], lengths[i]) && ok;
  close(out);
  if (read_back) fs::rename(written, destination, ec);
  return ok && !ec ? 0 : 1;
}

// del name...: wildcards in the last part of a name are allowed.
int delete_command(const std::vector<std::string>& words, BatchSession& s) {
  int result = words.empty() ? 1 : 0;
  for (const auto& w : words) {
    if (is_switch(w)) continue;
    fs::path name = full_name(w, s);
    std::string pattern = name.filename().string();
    fs::path folder = name.has_parent_path() ? name.parent_path() : fs::path(".");
    std::error_code ec;
    int removed = 0;
    for (fs::directory_iterator d(folder, ec), end; !ec && d != end; d.increment(ec)) {
      std::string entry = d->path().filename().string();
      std::error_code file_ec;
      if (d->is_regular_file(file_ec) && fnmatch(pattern.c_str(), entry.c_str(), FNM_CASEFOLD) == 0)
        removed += fs::remove(d->path(), file_ec) ? 1 : 0;
    }
    if (removed == 0) {
      say(s.err_fd, nothing_deleted + w + "\n");
      result = 1;
    }
  }
  return result;
}

// pause: waits for one key in a terminal, passes at once elsewhere.
int pause_command(BatchSession& s) {
  say(s.out_fd, pause_prompt);
  if (s.pause_waits) {
    termios saved{};
    bool raw = tcgetattr(s.in_fd, &saved) == 0;
    if (raw) {
      termios one_key = saved;
      one_key.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
      one_key.c_cc[VMIN] = 1;
      one_key.c_cc[VTIME] = 0;
      tcsetattr(s.in_fd, TCSANOW, &one_key);
    }
    char key;
    while (read(s.in_fd, &key, 1) < 0 && errno == EINTR) {
    }
    if (raw) tcsetattr(s.in_fd, TCSANOW, &saved);
  }
  say(s.out_fd, "\n");
  return 0;
}

int wait_for(pid_t pid) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0)
    if (errno != EINTR) return 1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// The programs of a line joined by pipes. Every program and input is found
// before anything starts, so a line naming an unknown program does nothing
// but report it.
int run_pipeline(const std::vector<Stage>& stages, BatchSession& s) {
  std::vector<std::string> programs;
  for (const auto& stage : stages) {
    programs.push_back(find_batch_program(stage.words[0], s.working_dir));
    if (programs.back().empty()) {
      say(s.err_fd, "'" + stage.words[0] + unknown_program + "\n");
      return 9009;
    }
  }
  std::vector<int> opened;
  auto close_opened = [&] {
    for (int fd : opened) close(fd);
  };
  size_t n = stages.size();
  std::vector<int> in(n, -1), out(n, -1);
  for (size_t i = 0; i < n; ++i) {
    if (stages[i].in_file.empty()) continue;
    in[i] = open(full_name(stages[i].in_file, s).c_str(), O_RDONLY | O_CLOEXEC);
    if (in[i] < 0) {
      say(s.err_fd, file_missing + stages[i].in_file + "\n");
      close_opened();
      return 1;
    }
    opened.push_back(in[i]);
  }
  for (size_t i = 0; i < n; ++i) {
    if (stages[i].out_file.empty()) continue;
    int mode = O_WRONLY | O_CREAT | O_CLOEXEC | (stages[i].append ? O_APPEND : O_TRUNC);
    out[i] = open(full_name(stages[i].out_file, s).c_str(), mode, 0666);
    if (out[i] < 0) {
      say(s.err_fd, cannot_write + stages[i].out_file + "\n");
      close_opened();
      return 1;
    }
    opened.push_back(out[i]);
  }
  for (size_t i = 0; i + 1 < n; ++i) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
      close_opened();
      return 1;
    }
    opened.push_back(ends[0]);
    opened.push_back(ends[1]);
    if (out[i] < 0) out[i] = ends[1];
    if (in[i + 1] < 0) in[i + 1] = ends[0];
  }
  if (in[0] < 0) in[0] = s.in_fd;
  if (out[n - 1] < 0) out[n - 1] = s.out_fd;

  std::vector<pid_t> started;
  for (size_t i = 0; i < n; ++i) {
    std::vector<std::string> args{programs[i]};
    for (size_t w = 1; w < stages[i].words.size(); ++w)
      args.push_back(resolve_argument(stages[i].words[w], s.working_dir));
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = fork();
    if (pid == 0) {
      if (!s.working_dir.empty() && chdir(s.working_dir.c_str()) != 0) _exit(127);
      dup2(in[i], 0);
      dup2(out[i], 1);
      dup2(s.err_fd, 2);
      execv(argv[0], argv.data());
      _exit(127);
    }
    if (pid > 0) started.push_back(pid);
  }
  close_opened();
  int result = 1;
  for (pid_t pid : started) result = wait_for(pid);
  return started.size() == n ? result : 1;
}

}  // namespace

std::string resolve_path(const std::string& path, const std::string& working_dir) {
  if (path.empty()) return path;
  if (lower(path) == "nul") return "/dev/null";
  fs::path full = in_folder(path, working_dir);
  std::error_code ec;
  if (fs::exists(full, ec)) return path;
  fs::path built = full.root_path();
  bool changed = false;
  for (const auto& part : full.relative_path()) {
    fs::path exact = built / part;
    if (!fs::exists(exact, ec)) {
      std::string wanted = lower(part.string());
      for (fs::directory_iterator d(built.empty() ? fs::path(".") : built, ec), end; !ec && d != end; d.increment(ec)) {
        if (lower(d->path().filename().string()) != wanted) continue;
        exact = built / d->path().filename();
        changed = true;
        break;
      }
    }
    built = exact;
  }
  return changed ? built.string() : path;
}

std::string find_batch_program(const std::string& name, const std::string& working_dir) {
  fs::path written(native_path(name));
  std::string stem = lower(written.filename().string());
  if (stem.size() > 4 && stem.ends_with(".exe")) stem.resize(stem.size() - 4);
  if (stem.empty()) return "";
  if (written.has_parent_path()) {
    // The folder the line names, then PATH: "C:\larvex\" is nowhere here.
    fs::path folder = in_folder(resolve_path(written.parent_path().string(), working_dir), working_dir);
    if (is_program(folder / written.filename())) return (folder / written.filename()).string();
    std::string found = program_in(folder, stem);
    if (!found.empty()) return found;
  } else {
    // A bare name is looked for in the working folder first.
    std::string found = program_in(working_dir.empty() ? "." : working_dir, stem);
    if (!found.empty()) return found;
  }
  std::string exact = find_on_path(stem);
  if (!exact.empty()) return exact;
  const char* path = std::getenv("PATH");
  std::string dirs = path ? std::string(path) + ":" : "";
  for (size_t start = 0, colon; (colon = dirs.find(':', start)) != std::string::npos; start = colon + 1) {
    if (colon == start) continue;
    std::string found = program_in(dirs.substr(start, colon - start), stem);
    if (!found.empty()) return found;
  }
  return "";
}

int run_batch_line(const std::string& text, BatchSession& s) {
  std::string line = trim(text);
  if (line.empty()) return 0;
  bool quiet = line[0] == '@';
  if (quiet) line = trim(line.substr(1));
  if (s.echo && !quiet) {
    std::string folder = s.working_dir.empty() ? fs::current_path().string() : s.working_dir;
    say(s.out_fd, folder + ">" + line + "\n");
  }
  // "command.com /c " before a command only hands it on.
  std::string l = lower(line);
  for (std::string shell : shell_prefixes) {
    if (l.compare(0, shell.size(), shell) != 0 || l.size() <= shell.size() || l[shell.size()] != ' ') continue;
    size_t flag = l.find_first_not_of(' ', shell.size());
    if (l.compare(flag, 2, "/c") != 0) continue;
    line = trim(line.substr(flag + 2));
    l = lower(line);
    break;
  }
  auto word_is = [&](const char* command) {
    std::string c = command;
    return l.compare(0, c.size(), c) == 0 && (l.size() == c.size() || l[c.size()] == ' ' || l[c.size()] == '\t');
  };
  if (line.empty() || word_is("rem") || l.starts_with("::")) return 0;
  if (word_is("echo") || l.starts_with("echo.")) {
    std::string what = trim(line.substr(5 < line.size() ? 5 : line.size()));
    if (lower(what) == "off" || lower(what) == "on") s.echo = lower(what) == "on";
    else say(s.out_fd, what + "\n");
    return 0;
  }

  std::vector<Stage> stages;
  if (!parse(tokens(native_path(line)), stages)) {
    say(s.err_fd, std::string(bad_syntax) + "\n");
    return 1;
  }
  if (stages.size() == 1) {
    // A command word may carry its switch: "copy/b", "Copy/B".
    std::vector<std::string> words = stages[0].words;
    std::string command = lower(words[0]);
    size_t slash = command.find('/');
    if (slash != std::string::npos && slash > 0) {
      std::string head = command.substr(0, slash);
      if (head == "copy" || head == "del" || head == "erase") {
        words.insert(words.begin() + 1, words[0].substr(slash));
        command = head;
      }
    }
    words.erase(words.begin());
    if (command == "copy") return copy_command(words, s);
    if (command == "del" || command == "erase") return delete_command(words, s);
    if (command == "pause") return pause_command(s);
  }
  return run_pipeline(stages, s);
}

int run_batch_text(const std::string& text, BatchSession session) {
  int result = 0;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find_first_of("\r\n", start);
    std::string line = text.substr(start, end == std::string::npos ? std::string::npos : end - start);
    if (!trim(line).empty()) result = run_batch_line(line, session);
    if (end == std::string::npos) break;
    start = end + 1;
  }
  return result;
}

}  // namespace tf
