#include "operations/file_size.h"

#include "frame/helpers.h"
#include "operations/su_traces.h"

namespace tf {

namespace {
constexpr const char* digits = "0123456789";
// Both formats carry the same 240-byte trace header; SEG-Y adds its file
// header in front.
constexpr double trace_header = 240;
constexpr double segy_file_header = 3600;
}  // namespace

FileSize::FileSize(App& owner) : Panel(owner, "FileSize", "SU or SEG-Y File size") {
  auto field = [this](const char* name, const char* label, const char* text, const char* keys) {
    auto& c = add(Kind::text, name, label, text);
    c.key_filter = keys;
    c.on_change = [this] { calculB(); };
  };
  field("Text1", "Traces / shot", "24", digits);
  field("Text2", "Shot Number", "12", digits);
  field("Text3", "bytes / Sample ", "4", "1248");
  field("Text4", "Samples / trace", " 1024", digits);
  field("Text6", "Sample rate ms", " 1", ".0123456789");
  add(Kind::text, "Text5", "Total bytes", "1248768 ").locked = true;
  add(Kind::frame, "Frame1", "File type");
  auto& su = add_in("Frame1", Kind::option, "Option1", "SU");
  su.value = 1;
  auto& segy = add_in("Frame1", Kind::option, "Option2", "SEG-Y");
  for (auto* o : {&su, &segy}) o->on_click = [this] { calculB(); };
  add(Kind::frame, "Frame2", "File info");
  add_in("Frame2", Kind::label, "Label7", "Trace length");
  add_in("Frame2", Kind::label, "Label8", "Nyquist frequency");
}

void FileSize::form_load() {
  int16_t ns = 0, dt = 0;
  read_first_ns_dt(files, 1, state.current_file, ns, dt);
  resume_next([&] { files.close_all(); });
  state.ns = ns;
  state.dt = dt;
  set_text("Text4", field_text(ns));
  set_text("Text6", field_text(dt / 1000.0));
  if (state.nb_channels == 0) state.nb_channels = 1;
  set_text("Text1", field_text(state.nb_channels));
}

// Every result from the fields, each statement on its own: a sample rate of
// 0 leaves the Nyquist caption as it was.
void FileSize::calculB() {
  const double traces = leading_number(text("Text1")), shots = leading_number(text("Text2")),
               bytes = leading_number(text("Text3")), samples = leading_number(text("Text4")),
               rate_ms = leading_number(text("Text6"));
  const double header = checked("Option2") ? segy_file_header : 0;
  set_text("Text5", field_text(traces * shots * (samples * bytes + trace_header) + header));
  set_caption("Label7", "Recording time= " + number_text(samples * rate_ms / 1000) + " s");
  resume_next([&] {
    if (rate_ms == 0) throw RunTimeError(err::division_by_zero);
    set_caption("Label8", "Nyquist frequency=" + number_text(1 / (2 * rate_ms) * 1000));
  });
}

}  // namespace tf
