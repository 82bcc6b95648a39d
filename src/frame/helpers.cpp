#include "frame/helpers.h"

#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <sstream>

#include "frame/file_selection.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

namespace fs = std::filesystem;

namespace {
// A DOS wildcard pattern ("*.su", "rec??.dat") against a name, ignoring case.
// One pass with a return to the last star: the time stays within the
// product of the two lengths, whatever the pattern.
bool wildcard_match(const std::string& pattern, const std::string& name) {
  auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b)); };
  size_t p = 0, n = 0, star = std::string::npos, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == '?' || (pattern[p] != '*' && same(pattern[p], name[n])))) {
      ++p, ++n;
    } else if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = n;
    } else if (star != std::string::npos) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}
}  // namespace

int File_Exists(const std::string& name) {
  if (name.empty()) return 0;
  std::string path = native_path(name);
  std::error_code ec;
  if (path.find_first_of("*?") == std::string::npos) return fs::is_regular_file(path, ec) ? 1 : 0;
  fs::path p(path);
  fs::path dir = p.has_parent_path() ? p.parent_path() : fs::path(".");
  const std::string pattern = p.filename().string();
  for (const auto& entry : fs::directory_iterator(dir, ec))
    if (entry.is_regular_file(ec) && wildcard_match(pattern, entry.path().filename().string())) return 1;
  return 0;
}

int Filter_Key(Platform& platform, int key, const std::string& allowed, bool allow_backspace) {
  std::string set = upper(allowed);
  if (allow_backspace) set += '\b';
  char pressed = upper(std::string(1, static_cast<char>(key)))[0];
  if (key != 0 && set.find(pressed) != std::string::npos) return key;
  platform.beep();
  return 0;
}

void Replace_All(std::string& text, const std::string& find, const std::string& replacement) {
  if (find.empty()) return;
  size_t p = 0;  // positions from 1: the search starts at p + 1
  while (true) {
    if (p >= text.size() + 1) break;
    size_t found = text.find(find, p);
    if (found == std::string::npos) break;
    text = text.substr(0, found) + replacement + text.substr(found + find.size());
    p = found + 1 + find.size() - 1;  // p is the 1-based place of the match plus len - 1
  }
}

void Folder_Of(Platform& platform, const std::string& path, std::string& folder) {
  if (File_Exists(path) == 0) return;
  size_t cut = path.find_last_of("\\/");
  folder = cut == std::string::npos ? path.substr(0, 2) : path.substr(0, cut + 1);
  Replace_All(folder, sep + sep, sep);
  if (folder.find(' ') != std::string::npos)
    message(platform, folder + " path name contain a space, VEDRA module cannot work properly, you must correct it using WINDOWS tools ",
            Icon::stop);
}

void Read_ns_dt(App& app, const std::string& file) {
  resume_next([&] {
    auto& f = app.files.open(11, file_system_name(native_path(file)));  // a wildcard is a bad name
    int16_t ns = 0, dt = 0;
    f.read_value(su::word("ns").offset, ns);
    f.read_value(su::word("dt").offset, dt);
    app.state.ns = ns;
    app.state.dt = dt;
  });
  resume_next([&] { app.files.close(11); });
  if (app.state.dt == 0) app.state.dt = 1;
  if (app.state.ns == 0) app.state.ns = 1024;
}

void Swap2(int16_t value, int16_t& result) {
  int32_t v = value;
  int32_t high = (v < 0 ? v + 65536 : v) / 256;
  int32_t low = (v & 255) * 256;
  if (low >= 32768) low -= 65536;
  result = static_cast<int16_t>(low | high);
}

void Value_After_Key(Platform& platform, std::string& text, std::string& key, double& result) {
  text = upper(text);
  key = upper(key);
  size_t at = text.find(key);
  if (at == std::string::npos) {
    platform.beep();
    return;
  }
  std::string digits;
  size_t limit = at + 60;
  for (size_t i = at + key.size(); i <= limit && i < text.size(); ++i) {
    char c = text[i];
    if (c == '\r') {
      result = leading_number(digits);
      return;
    }
    if (c == '.' || std::isdigit(static_cast<unsigned char>(c))) digits += c;
  }
}

void Keep_Decimals(double value, int decimals, double& result) {
  std::string text = field_text(value);
  std::string whole = field_text(std::trunc(value));  // any size: no integer can hold them all
  size_t keep = whole.size() + 1 + static_cast<size_t>(std::max(decimals, 0));
  result = leading_number(text.substr(0, std::min(keep, text.size())));
}

std::pair<std::string, std::string> file_date_time(const std::string& path) {
  std::error_code ec;
  const auto written = fs::last_write_time(path, ec);
  if (ec) throw RunTimeError(err::file_not_found);
  const std::time_t t = std::chrono::system_clock::to_time_t(std::chrono::file_clock::to_sys(written));
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &t);
#else
  localtime_r(&t, &local);
#endif
  char date[16], time[8];
  std::strftime(date, sizeof date, "%d/%m/%Y", &local);
  std::strftime(time, sizeof time, "%H:%M", &local);
  return {date, time};
}

std::string single_separators(std::string path) {
  Replace_All(path, sep + sep, sep);
  return path;
}

Answer message(Platform& platform, const std::string& text, Icon icon, Buttons buttons, const std::string& title) {
  MessageBoxRequest r;
  r.text = text;
  r.icon = icon;
  r.buttons = buttons;
  r.title = title;
  return platform.message_box(r);
}

void retry_statement(Platform& platform, const std::function<void()>& statement, const std::string& ending) {
  while (true) {
    try {
      statement();
      return;
    } catch (const RunTimeError& e) {
      message(platform, "File conversion error N° " + number_text(e.number) + ending);
    }
  }
}

}  // namespace tf
