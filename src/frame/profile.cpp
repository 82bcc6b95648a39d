// Private profile files read and written the way the platform's profile
// calls do it: sections in brackets, key=value lines, case-insensitive names.
#include <fstream>
#include <sstream>
#include <vector>

#include "frame/conventions.h"
#include "frame/paths.h"
#include "frame/platform.h"

namespace tf {

namespace {
std::string trim(const std::string& s) {
  size_t a = s.find_first_not_of(" \t\r\n");
  if (a == std::string::npos) return "";
  size_t b = s.find_last_not_of(" \t\r\n");
  return s.substr(a, b - a + 1);
}

std::vector<std::string> read_lines(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

bool is_section(const std::string& line, const std::string& section) {
  std::string t = trim(line);
  return t.size() >= 2 && t.front() == '[' && t.back() == ']' && upper(trim(t.substr(1, t.size() - 2))) == upper(section);
}

// Key of a "key=value" line, upper case, or "" for other lines.
std::string key_of(const std::string& line) {
  size_t eq = line.find('=');
  if (eq == std::string::npos || trim(line).front() == ';') return "";
  return upper(trim(line.substr(0, eq)));
}
}  // namespace

std::string Platform::profile_path(const std::string& file) {
  if (file.find_first_of("/\\") != std::string::npos) return native_path(file);
  return join_path(system_folder(), file);
}

std::string Platform::profile_string(const std::string& section, const std::string& key,
                                     const std::string& default_value, int buffer_size,
                                     const std::string& file) {
  std::string value = default_value;
  bool in_section = false;
  for (const auto& line : read_lines(profile_path(file))) {
    if (trim(line).starts_with("[")) {
      in_section = is_section(line, section);
    } else if (in_section && key_of(line) == upper(key)) {
      value = trim(line.substr(line.find('=') + 1));
      break;
    }
  }
  if (buffer_size > 0 && static_cast<int>(value.size()) > buffer_size - 1) value.resize(buffer_size - 1);
  return value;
}

void Platform::write_profile_string(const std::string& section, const std::string& key, const std::string& value,
                                    const std::string& file) {
  auto lines = read_lines(profile_path(file));
  bool in_section = false, done = false;
  size_t section_end = lines.size();
  bool found_section = false;
  for (size_t i = 0; i < lines.size() && !done; ++i) {
    if (trim(lines[i]).starts_with("[")) {
      if (in_section) {
        section_end = i;
        break;
      }
      in_section = is_section(lines[i], section);
      found_section = found_section || in_section;
    } else if (in_section && key_of(lines[i]) == upper(key)) {
      lines[i] = key + "=" + value;
      done = true;
    }
  }
  if (!done) {
    if (!found_section) {
      lines.push_back("[" + section + "]");
      section_end = lines.size();
    }
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(section_end), key + "=" + value);
  }
  std::ofstream out(profile_path(file), std::ios::binary | std::ios::trunc);
  for (const auto& line : lines) out << line << "\r\n";
}

}  // namespace tf
