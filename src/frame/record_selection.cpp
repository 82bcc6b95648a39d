#include "frame/record_selection.h"

#include <filesystem>

#include "frame/conventions.h"

namespace tf {

RecordChoice Select_records(App& app, Panel& panel, const RecordDialog& dialog, const std::string& count_field) {
  SessionState& state = app.state;
  resume_next([&] {
    state.file_in = records_dialog(app.platform, dialog.title, dialog.filter, dialog.file_name, state.data_folder);
  });
  const RecordChoice choice = read_record_choice(state.file_in);
  for (const auto& entry : choice.entries) panel.add_item("List1", entry);
  panel.set_text(count_field, field_text(choice.count));
  resume_next([&] { panel.set_text("Text2", su_name(choice.name)); });
  return choice;
}

void open_record(FileTable& files, int number, const std::string& name) {
  const std::string path = file_system_name(name);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) throw RunTimeError(err::file_not_found);
  files.open(number, path);
}

}  // namespace tf
