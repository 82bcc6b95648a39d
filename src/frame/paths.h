// The platform's path separator. Paths that the panels compose with a
// backslash are written with this one.
#pragma once

#include <string>
#include <string_view>

namespace tf {

#ifdef _WIN32
inline constexpr char sep_char = '\\';
#else
inline constexpr char sep_char = '/';
#endif
inline const std::string sep(1, sep_char);

// Every backslash of a composed path becomes the separator.
inline std::string native_path(std::string_view path) {
  std::string s(path);
  for (char& c : s)
    if (c == '\\') c = sep_char;
  return s;
}

inline std::string join_path(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  if (folder.back() == sep_char || folder.back() == '/') return folder + name;
  return folder + sep + name;
}

}  // namespace tf
