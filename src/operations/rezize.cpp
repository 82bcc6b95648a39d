#include "operations/rezize.h"

#include <filesystem>

#include "frame/helpers.h"
#include "frame/paths.h"
#include "operations/su_traces.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const tab_captions[] = {"Info", "Time", "Sample rate", "Channels"};
// The texts of each tab, in the order of the tabs.
struct TabText {
  int tab;
  const char* text;
};
const TabText tab_texts[] = {
    {0, "You can see on this pannel the important parameters of the original SU file"},
    {0, "You cannot mix SU file with different sample rate or number of samples / trace !"},
    {1, "Use this module to change the recording time of the original SU file"},
    {2, "Use this module to change the trace length of the original SU file, select a new sample rate or number of sample / trace"},
    {3, "Use this module to change the channel number of the original SU file"},
};
// Fields of the tabs: name, label, default, locked.
struct FieldRow {
  int tab;
  const char* name;
  const char* label;
  const char* text;
  bool locked;
};
const FieldRow fields[] = {
    {0, "Text3", "Number of record", "", true},
    {0, "Text4", "Number of channel", "", true},
    {0, "Text8", "Total trace number", "", true},
    {0, "Text5", "Number of  sample/trace", "", true},
    {0, "Text6", "Sample rate (microS)", "", true},
    {0, "Text7", "Recording time (ms)", "", true},
    {1, "Text12", "Time to set", "", false},
    {2, "Text13", "Original sample rate", "", true},
    {2, "Text14", "New sample rate", "", false},
    {2, "Text15", "Original nb of samples/trace", "", true},
    {2, "Text16", "New number of samples/trace", "", false},
    {2, "Text11", "Original recording  time", "", false},
    {2, "Text17", "New recording time", "", false},
    {3, "Text9", "First channel to keep", "1", false},
    {3, "Text10", "Last channel to keep", "24", false},
};
constexpr const char* ns_varies = "Number of Samples per trace must be constant !";
constexpr const char* dt_varies = "Sample rate must be constant !";
constexpr const char* start_name = "*.SU";

// A number made into text, its blanks taken out.
std::string bare_number(double value) {
  std::string text = number_text(value);
  Replace_All(text, " ", "");
  return text;
}
}  // namespace

rezize::rezize(App& owner) : Panel(owner, "rezize", "SU file utility") {
  // Each field stands before the button that fills it.
  add(Kind::text, "Text1");
  add(Kind::button, "Command1", "Input file").on_click = [this] {
    std::string chosen = choose(false);
    if (chosen == start_name) {
      set_pointer(Pointer::arrow);
      return;
    }
    read_input(chosen);
  };
  add(Kind::text, "Text2");
  add(Kind::button, "Command2", "Output file").on_click = [this] { set_text("Text2", choose(true)); };
  auto& tabs = add(Kind::tabs, "SSTab1");
  tabs.items.assign(std::begin(tab_captions), std::end(tab_captions));
  int label = 1;
  for (const auto& t : tab_texts) {
    auto& c = add(Kind::label, "Label" + std::to_string(label++), t.text);
    c.parent = "SSTab1";
    c.tab = t.tab;
  }
  for (const auto& f : fields) {
    auto& c = add(Kind::text, f.name, f.label, f.text);
    c.parent = "SSTab1";
    c.tab = f.tab;
    c.locked = f.locked;
  }
  (*this)["Text14"].on_change = [this] { new_recording_time(); };
  (*this)["Text16"].on_change = [this] { new_recording_time(); };
  add(Kind::button, "Command3", "GO !").on_click = [this] { Go(); };
  add(Kind::progress, "ProgressBar1");
}

void rezize::form_load() {
  state.file_in = state.current_file;
  read_input(state.file_in);
}

std::string rezize::choose(bool save) {
  std::string chosen = start_name;
  resume_next([&] {
    std::error_code ec;
    if (!state.data_folder.empty()) std::filesystem::current_path(native_path(state.data_folder), ec);
    FileDialogRequest r;
    r.save = save;
    r.title = "SU File selection";
    r.filter = "SU File |*.SU|All files|*.*|";
    r.file_name = start_name;
    r.initial_dir = state.data_folder;
    chosen = platform.file_dialog(r);
  });
  return chosen;
}

// Text17 follows the new rate and samples; nothing reads it.
void rezize::new_recording_time() {
  resume_next([&] {
    const double rate = field_i16(text("Text14")), samples = field_i16(text("Text16"));
    set_text("Text17", field_text(rate / 1000 * samples));
  });
}

// The geometry of the input, with a box for every trace whose ns or dt
// differs from the first trace's.
void rezize::read_input(const std::string& file) {
  set_text("Text1", file);
  resume_next([&] { set_text("Text2", file.substr(0, file.size() - 3) + "_new.su"); });
  state.nb_channels = 0;
  int16_t ns = 0, dt = 0;
  resume_next([&] { files.close_all(); });
  read_first_ns_dt(files, 1, file, ns, dt);
  // The record size is summed in 16 bits: past 8131 samples the count keeps
  // its value from before, and the walk goes by it.
  resume_next([&] { state.nb_traces = traces_by_record_size(files[1].length(), i16_add(i16_mul(ns, 4), su::header_size)); });
  const int64_t record = su::header_size + 4 * static_cast<int64_t>(ns);
  // A read past the end leaves the words of the trace before.
  int16_t trace_ns = 0, trace_dt = 0;
  int32_t tracf = 0;
  for (int32_t k = 1; k <= state.nb_traces; ++k) {
    resume_next([&] {
      BinaryFile& f = files[1];
      const int64_t at = (k - 1) * record;
      f.read_value(at + su::word("ns").offset, trace_ns);
      f.read_value(at + su::word("dt").offset, trace_dt);
      f.read_value(at + su::word("tracf").offset, tracf);
    });
    if (trace_ns != ns) message(platform, ns_varies, Icon::stop);
    if (trace_dt != dt) message(platform, dt_varies, Icon::stop);
    if (tracf > state.nb_channels) resume_next([&] { state.nb_channels = to_i16(tracf); });
  }
  resume_next([&] { files.close_all(); });
  state.ns = ns;
  state.dt = dt;
  const double time = dt / 1000.0 * ns;
  resume_next([&] {
    if (state.nb_channels == 0) throw RunTimeError(err::division_by_zero);
    set_text("Text3", field_text(static_cast<double>(state.nb_traces) / state.nb_channels));
  });
  set_text("Text4", field_text(state.nb_channels));
  set_text("Text8", field_text(state.nb_traces));
  set_text("Text5", field_text(ns));
  set_text("Text6", field_text(dt));
  set_text("Text7", field_text(time));
  set_text("Text12", field_text(time));
  set_text("Text13", field_text(dt));
  set_text("Text14", field_text(dt));
  set_text("Text15", field_text(ns));
  set_text("Text16", field_text(ns));
  set_text("Text11", field_text(time));
  set_text("Text17", field_text(time));
  set_text("Text10", field_text(state.nb_channels));
}

void rezize::Go() {
  state.file_in = text("Text1");
  state.file_out = text("Text2");
  double records = 0, time = 0;
  resume_next([&] { records = leading_number(text("Text3")); });
  resume_next([&] { state.nb_channels = field_i16(text("Text4")); });
  resume_next([&] { state.ns = field_i32(text("Text5")); });
  resume_next([&] { state.dt = field_i16(text("Text6")); });
  resume_next([&] { time = leading_number(text("Text7")); });
  resume_next([&] { state.nb_traces = field_i32(text("Text8")); });
  (void)records, (void)time;

  const std::string app_folder = platform.application_folder();
  std::string batch, prefix;
  switch ((*this)["SSTab1"].value) {
    case 1:
      // The time comes from the total trace number, not from "Time to set":
      // Text12 is read by nothing.
      batch = app_folder + native_path("\\SUWIND <") + state.file_in + " >" + state.file_out + " tmin=0 tmax=" +
              bare_number(leading_number(text("Text8")) / 1000);
      prefix = "Time has been changed for file ";
      break;
    case 2:
      batch = app_folder + native_path("\\SURESAMP <") + state.file_in + " >" + state.file_out + " nt=" +
              text("Text16") + " dt=" + bare_number(leading_number(text("Text14")) / 1000000);
      prefix = "Trace length has been changed for file ";
      break;
    case 3:
      batch = app_folder + native_path("\\SUWIND key=tracf <") + state.file_in + " >" + state.file_out + " min=" +
              text("Text9") + " max=" + text("Text10");
      prefix = "Channels have been changed for file ";
      break;
    default:
      break;  // the information tab: an empty batch, started all the same
  }
  const std::string batch_path = app_folder + native_path("\\batch.bat");
  resume_next([&] { write_whole_file(batch_path, batch + "\r\n"); });
  ShellRequest start;
  start.file = batch_path;
  start.dir = app_folder;
  platform.shell_execute(start);
  message(platform, prefix + state.file_out, Icon::information);
}

}  // namespace tf
