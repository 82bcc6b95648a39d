#include "radar/dt1.h"

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "radar/radar_common.h"
#include "su/su_record.h"

namespace tf {

namespace {
// Each line is followed by crlf.
const char* const help_lines[] = {
    "DT1 to SU Translation",
    " This module can convert DT1 radar file to SU format using DT1TOSU.EXE",
    " You must only select DT1 file and the output file name",
    " Number of sample per trace is necessary ! ",
    "  ",
};

// Keys of the .HD text (their blanks and equal signs included) and the
// fields they fill.
const char* const samples_key = "NUMBER OF PTS/TRC  = ";
const char* const time_zero_key = "TIMEZERO AT POINT  = ";
const char* const traces_key = "NUMBER OF TRACES   = ";
const char* const time_window_key = "TOTAL TIME WINDOW  = ";
const char* const start_key = "STARTING POSITION  = ";
const char* const final_key = "FINAL POSITION     = ";

// Each trace of the .DT1 is a 128-byte header, not read here, and its
// int16 samples.
constexpr int trace_header = 128;
// A settled value of the radar traces, not a count.
constexpr int radar_nhs = 95;
}  // namespace

DT1::DT1(App& owner) : Panel(owner, "DT1", "Radar EKKO DT1 to SU") {
  add(Kind::text, "Text1", "", " ").on_dblclick = [this] { Choix_IP(); };
  add(Kind::text, "Text2", "", " ").on_dblclick = [this] { Choix_OP(); };
  add(Kind::text, "Text6", "Samples per trace", " 480");
  add(Kind::text, "Text5", "Sampling rate (nS)", " 4").key_filter = "0123456789";
  add(Kind::text, "Text7", "Recording time (nS)", " 1920");
  add(Kind::text, "Text8", "Number of channel", " ");
  add(Kind::text, "Text4", "Trace spacing (cm)", ".20").key_filter = "0123456789";
  add(Kind::text, "Text3", "Time zero at point", "0").tooltip = radar::time_zero_tip;
  add(Kind::rich_text, "RichTextBox1").multiline = true;
  add(Kind::button, "Command1", "Input file").on_click = [this] { Choix_IP(); };
  // The output dialog opens by the double click on Text2 only.
  add(Kind::button, "Command2", "Output file");
  add(Kind::button, "Command3", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command5", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

void DT1::Choix_IP() {
  resume_next([&] {
    state.file_in = record_dialog(platform, "DT1 file selection", "Record |*.DT1|All files|*.*|", "*.dt1",
                                         state.data_folder);
  });
  set_text("Text1", state.file_in);
  resume_next([&] { set_text("Text2", su_name(state.file_in)); });
  state.file_out = text("Text2");
  std::string header_name;
  resume_next([&] { header_name = radar::beside(state.file_in, "HD"); });
  if (radar::show_header_text(*this, "RichTextBox1", header_name, state.file_in, state.crlf))
    read_header(text("RichTextBox1"));
}

// The fields from the header text; a missing key beeps and leaves its field.
void DT1::read_header(const std::string& header_text) {
  radar::key_into_field(*this, platform, header_text, samples_key, "Text6");
  radar::key_into_field(*this, platform, header_text, time_zero_key, "Text3");
  radar::key_into_field(*this, platform, header_text, traces_key, "Text8");
  radar::key_into_field(*this, platform, header_text, time_window_key, "Text7");
  resume_next([&] {
    const double samples = leading_number(text("Text6"));
    if (samples == 0) throw RunTimeError(err::division_by_zero);
    set_text("Text5", field_text(radar::finite(leading_number(text("Text7")) / samples)));
  });
  double start = 0, final = 0, spacing = 0;
  radar::key_into_number(platform, header_text, start_key, start);
  radar::key_into_number(platform, header_text, final_key, final);
  resume_next([&] {
    const double traces = leading_number(text("Text8"));
    if (traces == 0) throw RunTimeError(err::division_by_zero);
    spacing = (final - start) / traces;
  });
  // Two decimals kept through a 16-bit whole number.
  resume_next([&] { set_text("Text4", field_text(to_i16(spacing * 100) / 100.0)); });
}

void DT1::Choix_OP() {
  resume_next([&] { set_text("Text2", radar::su_file_dialog(platform)); });
}

void DT1::info() {
  message(platform, ended_lines(help_lines, state.crlf));
}

void DT1::Convert() {
  state.file_out = text("Text2");
  if (state.file_out.empty()) return;
  radar::offer_to_delete(platform, state.file_out, radar::output_exists_question);
  set_pointer(Pointer::hourglass);
  int16_t time_zero = 0;
  resume_next([&] { time_zero = field_i16(text("Text3")); });
  resume_next([&] { state.nb_channels = field_i16(text("Text8")); });
  resume_next([&] { state.ns = field_i32(text("Text6")); });
  // Above 32.767 nS the rate overflows and dt keeps its value.
  resume_next([&] { state.dt = to_i16(leading_number(text("Text5")) * 1000); });
  const int32_t ns = state.ns;
  int32_t ns_out = 0;
  resume_next([&] { ns_out = i32_add(ns, -int64_t{time_zero}); });
  resume_next([&] { radar::size_from_one(state.i2_trace, ns); });
  resume_next([&] { radar::size_from_one(state.r4_trace, ns_out); });
  state.file_in = text("Text1");
  resume_next([&] { set_progress_range("ProgressBar1", 1, state.nb_channels + 2); });
  resume_next([&] { files.close_all(); });
  resume_next([&] { files.open(2, file_system_name(state.file_out)); });
  resume_next([&] { radar::open_existing(files, 1, state.file_in); });

  const double spacing = leading_number(text("Text4"));
  su::RecordImage image(files, 2);
  for (int32_t i = 1; i <= state.nb_channels; ++i) {
    if (radar::past_last_place(i - 1, int64_t{ns_out} * 4 + su::header_size)) break;
    resume_next([&] { set_progress("ProgressBar1", i); });
    resume_next([&] { state.trace_pos = i32_add(i32_mul(i32_mul(ns, 2), i - 1), i32_mul(i, trace_header)); });
    if (state.trace_pos < 0) {
      message(platform, "Verify your parameters...", Icon::stop);
      return;
    }
    resume_next([&] {
      files[1].read_at(state.trace_pos, radar::from_one(state.i2_trace), 2 * radar::count_from_one(state.i2_trace));
    });
    resume_next([&] { state.trace_pos = i32_mul(i32_add(i32_mul(ns_out, 4), su::header_size), i - 1); });
    image.move_to(state.trace_pos);
    radar::put_line_numbers(image, i);
    image.put(su::word("cdpt"), 0);
    image.put(su::word("trid"), 1);
    image.put(su::word("nvs"), 1);
    image.put(su::word("nhs"), radar_nhs);
    image.put(su::word("duse"), 1);
    image.zero_words(36, 88, 4);
    // The field's units, rounded: what lies below 1 is lost.
    resume_next([&] { image.put(su::word("sx"), spacing * (i - 1)); });
    image.zero_words(88, 180, 2);
    image.put_i32(su::word("ns").offset, ns_out);  // 4 bytes: dt mends its upper half
    image.put(su::word("dt"), state.dt);
    // The zeroing runs 16 bytes past the header; the samples cover them.
    image.zero_words(180, 256, 4);
    image.put(su::word("mark"), 0);
    image.put_i16(su::word("mark").offset + 1, 0);  // one byte further, overlapping mark
    radar::shift_by_time_zero(state.i2_trace, state.r4_trace, time_zero, ns);
    radar::put_samples(image, state.r4_trace);
    radar::write_out_every_16(image, i);
  }
  resume_next([&] { image.flush(); });
  resume_next([&] { files.close(1); });
  resume_next([&] { files.close(2); });
  set_pointer(Pointer::arrow);
  message(platform, "OK, Conversion done");
}

}  // namespace tf
