#include "operations/su_files.h"

#include <filesystem>

#include "frame/conventions.h"
#include "frame/file_selection.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

BinaryFile& open_existing(FileTable& files, int number, const std::string& name) {
  const std::string path = file_system_name(native_path(name));
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) throw RunTimeError(err::file_not_found);
  return files.open(number, path);
}

std::vector<std::string> split_parts(const std::string& text, size_t limit) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (parts.size() + 1 < limit) {
    const size_t blank = text.find(' ', start);
    if (blank == std::string::npos) break;
    parts.push_back(text.substr(start, blank - start));
    start = blank + 1;
  }
  parts.push_back(text.substr(start));
  return parts;
}

std::string renamed(const std::string& name, size_t cut, const std::string& ending) {
  if (name.size() < cut) throw RunTimeError(err::invalid_call);
  return name.substr(0, name.size() - cut) + ending;
}

int16_t first_ns(BinaryFile& file) {
  int16_t ns = 0;
  file.read_value(su::word("ns").offset, ns);
  return ns;
}

void first_ns_dt(BinaryFile& file, int16_t& ns, int16_t& dt) {
  ns = first_ns(file);
  file.read_value(su::word("dt").offset, dt);
}

}  // namespace tf
