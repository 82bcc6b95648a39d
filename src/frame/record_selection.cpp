#include "frame/record_selection.h"

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

RecordChoice Select_cut_records(App& app, Panel& panel, const RecordDialog& dialog) {
  SessionState& state = app.state;
  resume_next([&] {
    state.file_in = records_dialog(app.platform, dialog.title, dialog.filter, dialog.file_name, state.data_folder);
  });
  const RecordChoice choice = read_record_choice(state.file_in, SingleChoice::cut_like_several);
  for (const auto& entry : choice.entries) panel.add_item("List1", entry);
  return choice;
}

}  // namespace tf
