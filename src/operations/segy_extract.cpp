#include "operations/segy_extract.h"

#include <new>
#include <vector>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const intro_lines[] = {
    "You can extract some traces from any SEG-Y file with this module",
    "in order to perform conversion test or other operations",
    "You must input the number of traces  to extract and the number of samples/trace",
    "Now select a SEG-Y file",
};
constexpr const char* box_title = "SEG-Y file extractor";
constexpr int file_must_exist = 4096;
// A shorter name is taken for a cancelled dialog.
constexpr size_t shortest_name = 7;

FileDialogRequest segy_dialog(bool save) {
  FileDialogRequest dialog;
  dialog.save = save;
  dialog.flags = save ? 0 : file_must_exist;
  dialog.title = "SEG-Y file selection";
  dialog.filter = "SEG-Y file (SGY)|*.SGY|All files|*.*|";
  dialog.file_name = "*.SGY";
  dialog.filter_index = 1;
  return dialog;
}

std::string ask(Platform& platform, const std::string& prompt, const std::string& default_text) {
  InputBoxRequest request;
  request.prompt = prompt;
  request.title = box_title;
  request.default_text = default_text;
  return platform.input_box(request);
}
}  // namespace

void Extract_SEGY(App& app) {
  Platform& platform = app.platform;
  FileTable& files = app.files;
  std::string intro = ended_lines(intro_lines, app.state.crlf);
  if (message(platform, intro, Icon::information, Buttons::ok_cancel) != Answer::ok) return;
  const std::string input = platform.file_dialog(segy_dialog(false));
  if (input.size() < shortest_name) return;
  message(platform, "Select an output SEG-Y file", Icon::information);
  const std::string output = platform.file_dialog(segy_dialog(true));
  if (output.size() < shortest_name) return;

  int32_t traces = 0;
  int16_t ns = 0;
  resume_next([&] {
    traces = to_i32(leading_number(ask(platform, " How many traces would you extract from " + input, "120")));
  });
  if (traces == 0) return;
  resume_next([&] { ns = to_i16(leading_number(ask(platform, " How many samples per trace in " + input, "1024"))); });
  if (ns == 0) return;

  // The trace size is a 16-bit product: past 8131 samples it overflows and
  // the count stays 0. The buffer holds one byte more than the count.
  int32_t bytes = 0;
  resume_next(
      [&] { bytes = i32_add(i32_mul(traces, i16_add(i16_mul(ns, 4), su::header_size)), su::segy_file_header); });
  std::vector<uint8_t> buffer;
  resume_next([&] {
    if (bytes < 0) throw RunTimeError(err::subscript);
    try {
      buffer.assign(static_cast<size_t>(bytes) + 1, 0);
    } catch (const std::bad_alloc&) {
      throw RunTimeError(err::out_of_memory);
    }
  });
  resume_next([&] { open_record(files, 1, input); });
  resume_next([&] { files.open(2, file_system_name(native_path(output))); });
  resume_next([&] { files[1].read_block(0, buffer); });
  resume_next([&] { files[2].write_block(0, buffer); });
  resume_next([&] { files.close(1); });
  resume_next([&] { files.close(2); });
  message(platform, output + " has been recorded", Icon::information);
}

}  // namespace tf
