#include "importers/xascii2su.h"

#include <iterator>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "importers/ascii2su.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    " ASCII SEISMIC FILE CONVERSION",
    " This module will convert many ASCII file to one SU file ",
    " DATA must be in column ",
    " You must only select the ASCII files and the output file name",
    " Number of samples per trace, sample rate and number of traces input is necessary and must be regular! ",
    "  ",
};
}  // namespace

XASCII2SU::XASCII2SU(App& owner) : Panel(owner, "XASCII2SU", "ASCII to SU") {
  add(Kind::button, "Command1", "Input file").on_click = [this] { select_input(); };
  add(Kind::list, "List1");
  add(Kind::button, "Command2", "Output file").on_click = [this] { out_file(); };
  add(Kind::text, "Text2", "", " ");
  add(Kind::text, "Text3", "Number of samples", "512");
  add(Kind::text, "Text4", "Sample rate", "0");
  add(Kind::text, "Text5", "Trace number", "0");
  add(Kind::check, "Check1", "Radar file");
  add(Kind::button, "Command3", "Convert").on_click = [this] { convert_xascii(); };
  add(Kind::button, "Command4", "Exit").on_click = [this] { unload(); };
  add(Kind::button, "Command5", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

// Every statement runs with failures skipped.
void XASCII2SU::select_input() {
  resume_next([&] {
    state.file_in = records_dialog(platform, "ASCII file selection", "All files|*.*|", "*.*", state.data_folder);
  });
  const RecordChoice choice = read_record_choice(state.file_in);
  for (const auto& entry : choice.entries) add_item("List1", entry);
  set_text("Text5", field_text(choice.count));

  // The first entry as it stands in the list: one file keeps its blank.
  state.file_in = list_entry((*this)["List1"], 0);
  resume_next([&] { set_text("Text2", su_name(state.file_in)); });
  int32_t traces = 0, tokens = 0;
  resume_next([&] { traces = field_i32(text("Text5")); });
  resume_next([&] { tokens = count_tokens(state.file_in); });  // from 0
  resume_next([&] { files.close_all(); });

  InputBoxRequest ask;
  ask.prompt = "Enter the number of samples / trace";
  ask.default_text = field_text(tokens);
  set_text("Text3", platform.input_box(ask));
  ask.prompt = "Enter the number of  traces";
  ask.default_text = field_text(traces);
  set_text("Text5", platform.input_box(ask));
  int16_t rate = 0;
  resume_next([&] { rate = field_i16(text("Text4")); });
  ask_for_rate(*this, platform, rate);
}

void XASCII2SU::out_file() {
  choose_text_output(*this, platform);
}

void XASCII2SU::info() {
  show_text_help(platform, help_lines, std::size(help_lines), state.crlf);
}

// Every statement runs with failures skipped; nothing is reported on the
// way. A short or missing file leaves the samples of the trace before.
void XASCII2SU::convert_xascii() {
  state.file_out = text("Text2");
  const AsciiGeometry g = read_ascii_geometry(*this, platform);
  ask_to_kill_output(platform, state.file_out);
  resume_next([&] { set_progress_range("ProgressBar1", 1, g.traces); });
  resume_next([&] {
    if (g.samples < 1) throw RunTimeError(err::subscript);
    state.r4_trace.assign(static_cast<size_t>(g.samples) + 1, 0.0f);
  });
  resume_next([&] { files.open(2, file_system_name(state.file_out)); });

  const bool radar = checked("Check1");
  auto& samples = state.r4_trace;
  const auto listed = static_cast<int32_t>((*this)["List1"].items.size());
  bool position_failed = false;
  su::RecordImage image(files, 2);
  for (int32_t t = 1; t <= g.traces; ++t) {
    // Past the list and past the 32-bit positions every trace repeats the
    // one before on the same record, so only the last one stays.
    if (position_failed && t > listed) t = g.traces;
    state.file_in = list_entry((*this)["List1"], t - 1);  // past the end: an empty name
    resume_next([&] {
      TokenReader lines(read_whole_file(file_system_name(state.file_in)));
      for (int32_t s = 1; s <= g.samples; ++s) samples[static_cast<size_t>(s)] = static_cast<float>(leading_number(lines.next_line()));
    });
    resume_next([&] { set_progress("ProgressBar1", t); });
    position_failed = true;
    resume_next([&] {
      state.trace_pos = i32_mul(t - 1, i32_add(su::header_size, i32_mul(4, g.samples)));
      position_failed = false;
    });
    image.move_to(state.trace_pos);
    put_text_trace_header(image, t, g.samples, g.rate, radar);
    if (g.samples >= 1 && samples.size() > static_cast<size_t>(g.samples))
      image.put_block(su::header_size, &samples[1], static_cast<size_t>(g.samples));
  }
  resume_next([&] { image.flush(); });
  resume_next([&] { files.close_all(); });
  report_text_conversion(platform, state.file_out);
}

}  // namespace tf
