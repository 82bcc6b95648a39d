#include "viewers/handy_viewer.h"

#include "frame/helpers.h"
#include "frame/paths.h"
#include "frame/record_selection.h"
#include "su/binary_file.h"

namespace tf {

namespace {
// The McSeis-3 record: the sample interval is the int16 at this offset.
constexpr int interval_offset = 40;
}  // namespace

HandyViewer::HandyViewer(App& owner) : Panel(owner, "HandyViewer", "Mc Seis 3 HandyViewer") {
  add(Kind::button, "Command5", "Press here to select McSeis3 files ").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text6", "Number of files to convert", "1").tooltip = "Type here the number of file to convert";
  // The fields are labelled as on the other record panels.
  add(Kind::text, "Text5", "Sample rate", "50").tooltip = "Don't forget the sample rate !!!";
  add(Kind::text, "Text4", "Number of sample", "445").tooltip = "Correct hre the number of sample per trace";
  add(Kind::text, "Text3", "Trace number per record", "3").tooltip = "Correct here the trace number if necesssary";
  add(Kind::text, "Text2", "", " ").tooltip = "This will be the SU file";
  add(Kind::button, "Command4", "Output file");  // no action yet; beside the output name
  add(Kind::button, "Command1", "Convert");      // no action yet
  add(Kind::progress, "ProgressBar1");
}

// Every statement runs with failures skipped; a record too short for the
// interval leaves dt as it was.
void HandyViewer::Select_i() {
  Select_records(app, *this, {"McSeis3 file selection", "Record |*.dat|All files|*.*|", "*.*"});
  state.file_in = list_entry((*this)["List1"], 0);
  Replace_All(state.file_in, sep + sep, sep);
  Replace_All(state.file_in, " ", "");
  resume_next([&] { open_record(files, 1, file_system_name(state.file_in)); });
  resume_next([&] {
    BinaryFile& record = files[1];
    if (record.length() < interval_offset + 2) throw RunTimeError(err::input_past_end);
    int16_t dt = 0;
    record.read_at(interval_offset, &dt, sizeof dt);
    state.dt = dt;
  });
  set_text("Text5", field_text(state.dt));
  resume_next([&] { files.close(1); });
}

}  // namespace tf
