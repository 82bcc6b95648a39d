#include "radar/radar_common.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

#include "frame/file_selection.h"
#include "frame/helpers.h"

namespace tf::radar {

BinaryFile& open_existing(FileTable& files, int number, const std::string& name) {
  const std::string path = file_system_name(name);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) throw RunTimeError(err::file_not_found);
  return files.open(number, path);
}

std::string su_file_dialog(Platform& platform) {
  FileDialogRequest dialog;
  dialog.title = "SU file selection";
  dialog.filter = "SU file |*.SU|All files|*.*|";
  dialog.file_name = "*.SU";
  return platform.file_dialog(dialog);
}

std::string beside(const std::string& name, const std::string& ending) {
  if (name.size() < 3) throw RunTimeError(err::invalid_call);
  return name.substr(0, name.size() - 3) + ending;
}

bool show_header_text(Panel& panel, const std::string& pane, const std::string& header_name,
                      const std::string& record_name, const std::string& crlf) {
  if (File_Exists(header_name)) {
    std::string text;
    resume_next([&] { text = read_whole_file(file_system_name(header_name)); });
    panel.set_text(pane, text);
    return true;
  }
  panel.set_text(pane, " No RAD file available for " + record_name + crlf);
  return false;
}

void key_into_number(Platform& platform, const std::string& header_text, const std::string& key, double& value) {
  // Both texts are made upper case by the search; the pane keeps its own.
  std::string text = header_text, wanted = key;
  Value_After_Key(platform, text, wanted, value);
}

void key_into_field(Panel& panel, Platform& platform, const std::string& header_text, const std::string& key,
                    const std::string& field) {
  double value = std::numeric_limits<double>::quiet_NaN();
  key_into_number(platform, header_text, key, value);
  if (!std::isnan(value)) panel.set_text(field, field_text(value));
}

void offer_to_delete(Platform& platform, const std::string& name, const std::string& question) {
  if (!File_Exists(name)) return;
  if (message(platform, question, Icon::question, Buttons::yes_no) != Answer::yes) return;
  std::error_code ec;
  std::filesystem::remove(file_system_name(name), ec);
}

void put_line_numbers(su::RecordImage& image, int32_t i) {
  image.put(su::word("tracl"), i);
  image.put(su::word("tracr"), i);
  image.put(su::word("fldr"), 1);
  image.put(su::word("tracf"), i);
  image.put(su::word("cdp"), i);
}

void shift_by_time_zero(const std::vector<int16_t>& input, std::vector<float>& output, int time_zero, int64_t last) {
  const int64_t in_count = static_cast<int64_t>(count_from_one(input));
  const int64_t out_count = static_cast<int64_t>(count_from_one(output));
  // The k for which both k and k + time_zero - 1 lie inside their arrays.
  const int64_t shift = int64_t{time_zero} - 1;
  const int64_t first = std::max<int64_t>(1, 1 - shift);
  const int64_t end = std::min({last, out_count, in_count - shift});
  const int16_t* from = input.data();
  float* to = output.data();
  for (int64_t k = first; k <= end; ++k) to[k] = from[k + shift];
}

}  // namespace tf::radar
