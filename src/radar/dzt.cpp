#include "radar/dzt.h"

#include <algorithm>
#include <cmath>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "radar/radar_common.h"
#include "su/su_record.h"

namespace tf {

namespace {
// Each line is followed by crlf.
const char* const help_lines[] = {
    " GSSI RADAR FILE CONVERSION",
    " This module will convert GSSI DZT file to SU format ",
    " You must only select DZT file and the output file name",
    " Number of samples per trace input is necessary ! ",
    " You can also convert GSSI files to ASCII and then ASCII to SU ",
};
const char* const sample_rate_prompt = " Enter the sampling rate (nanoS)";
const char* const step1_caption =
    "Step 1: You must convert the DZT file to ASCII format using the GSSI conversion module using the belows "
    "parameters, Remember the number of samples per scan (trace) !";

// The DZT header as far as it is read (little-endian, offsets from 0).
constexpr int data_start_at = 2;      // int16, proposed as the divisor
constexpr int samples_at = 4;         // int16, samples per scan
constexpr int bits_at = 6;            // int16, bits per sample
constexpr int scans_per_second_at = 10;  // float32
constexpr int scans_per_metre_at = 14;   // float32
constexpr int channels_at = 52;       // int16, shown as traces per scan
// The first scan lies here whatever the word at offset 2 says.
constexpr int first_scan = 1024;

// The sample width: item "8" is code 1 and 2-byte samples, item "16" code 2
// and 4-byte samples. The labels are the bits of a file divided by 4.
int16_t width_code(const std::string& combo_text) { return combo_text == "8" ? 1 : 2; }

// A single-precision quotient: a zero divisor is error 11, a result past the
// range of a single (a garbled rate) error 6.
float single_quotient(float dividend, float divisor) {
  if (divisor == 0) throw RunTimeError(err::division_by_zero);
  return radar::finite(dividend / divisor);
}
}  // namespace

DZT::DZT(App& owner) : Panel(owner, "DZT", "GSSI Radar DZT to SU") {
  add(Kind::text, "Text1", "", " ").on_dblclick = [this] { Choix_IP(); };
  add(Kind::text, "Text2", "", " ").on_dblclick = [this] { Choix_OP(); };
  add(Kind::text, "Text3", "Number of samples", "512").key_filter = "0123456789";
  add(Kind::text, "Text4", "Sampling rate (nS)", "0").key_filter = "0123456789";
  add(Kind::text, "Text5", "Trace number", "0");
  add(Kind::text, "Text6", "Trace spacing cm)", "0.10").key_filter = ".0123456789";
  add(Kind::text, "Text7", "Rec time (ns)", "0");
  add(Kind::text, "Text8", "Trace/scan", "2").on_change = [this] { traces_per_scan_changed(); };
  add(Kind::text, "Text9", "Constante", "1024");
  add(Kind::combo, "Combo1", "Data bits", "16");
  add(Kind::button, "Command1", "Input file").on_click = [this] { Choix_IP(); };
  add(Kind::button, "Command2", "Output file").on_click = [this] { Choix_OP(); };
  add(Kind::button, "Command3", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command4", "Exit").on_click = [this] { unload(); };
  add(Kind::button, "Command5", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

void DZT::form_load() {
  add_item("Combo1", "8");
  add_item("Combo1", "16");
}

void DZT::Choix_IP() {
  resume_next([&] {
    state.file_in = record_dialog(platform, "DZT file selection", "Radar DZT |*.DZT", "", state.data_folder);
  });
  set_text("Text1", state.file_in);
  resume_next([&] { set_text("Text2", su_name(state.file_in)); });
  state.file_out = text("Text2");
  read_header();
}

// The fields proposed from the header; every statement runs with failures
// skipped, so a zero rate or a short file leaves the field it would set.
void DZT::read_header() {
  int16_t samples = 0, bits = 0, data_start = 0, channels = 0;
  float scans_per_second = 0, scans_per_metre = 0;
  resume_next([&] {
    BinaryFile& in = radar::open_existing(files, 1, state.file_in);
    in.read_value(samples_at, samples);
    in.read_value(scans_per_metre_at, scans_per_metre);
    in.read_value(scans_per_second_at, scans_per_second);
    in.read_value(bits_at, bits);
    in.read_value(data_start_at, data_start);
    in.read_value(channels_at, channels);
  });
  set_text("Text3", field_text(samples));
  resume_next([&] { set_text("Text6", field_text(radar::finite(single_quotient(1.0f, scans_per_metre) * 100.0f))); });
  resume_next([&] { set_text("Text4", field_text(single_quotient(1000.0f, scans_per_second))); });
  resume_next([&] { select_item("Combo1", bits == 16 ? 1 : 0); });
  resume_next([&] { files.close_all(); });
  resume_next([&] {
    const int16_t scan_bits = i16_mul(samples, bits);  // 16 bits: 2048 samples of 32 bits overflow
    const double scan_bytes = scan_bits / 4.0;
    if (scan_bytes == 0) throw RunTimeError(err::division_by_zero);
    const double length = static_cast<double>(file_length(file_system_name(state.file_in)));
    set_text("Text5", field_text(radar::finite(round_half_even((length - first_scan) / scan_bytes))));
  });
  resume_next([&] { set_text("Text7", field_text(radar::finite(leading_number(text("Text4")) * samples / 1000))); });
  set_text("Text9", field_text(data_start));
  set_text("Text8", field_text(channels));
}

// Acts on what the fields hold now: a second change compounds the first.
void DZT::traces_per_scan_changed() {
  const double per_scan = leading_number(text("Text8"));
  resume_next([&] {
    if (per_scan == 0) throw RunTimeError(err::division_by_zero);
    set_text("Text3", field_text(radar::finite(leading_number(text("Text3")) / per_scan)));
  });
  resume_next([&] { set_text("Text5", field_text(radar::finite(leading_number(text("Text5")) * per_scan))); });
}

void DZT::Choix_OP() {
  resume_next([&] { set_text("Text2", radar::su_file_dialog(platform)); });
  state.file_out = text("Text2");
}

void DZT::info() {
  message(platform, ended_lines(help_lines, state.crlf), Icon::information);
}

void DZT::Convert() {
  state.file_out = text("Text2");
  state.file_in = text("Text1");
  int16_t samples = 0, rate = 0, divisor = 0;
  int32_t traces = 0;
  const int16_t code = width_code(text("Combo1"));
  resume_next([&] { samples = field_i16(text("Text3")); });
  resume_next([&] { traces = field_i32(text("Text5")); });
  resume_next([&] { rate = field_i16(text("Text4")); });
  resume_next([&] { divisor = field_i16(text("Text9")); });
  if (divisor == 0) divisor = 1;
  while (rate == 0) {
    InputBoxRequest ask;
    ask.prompt = sample_rate_prompt;
    ask.default_text = "0";
    const std::string answer = platform.input_box(ask);
    resume_next([&] {
      rate = to_i16(leading_number(answer));
      set_text("Text4", field_text(rate));
    });
  }
  if (!File_Exists(state.file_in)) {
    message(platform, "Input file does not exists!", Icon::stop);
    return;
  }
  radar::offer_to_delete(platform, state.file_out, "Outfile name already exists, kill this file ?");

  resume_next([&] { radar::size_from_one(state.r4_trace, samples); });
  resume_next([&] {
    if (code == 1) radar::size_from_one(state.i2_trace, samples);
    else radar::size_from_one(state.i4_trace, samples);
  });
  resume_next([&] { files.close_all(); });
  resume_next([&] { files.open(2, file_system_name(state.file_out)); });
  resume_next([&] { radar::open_existing(files, 1, state.file_in); });
  resume_next([&] { set_progress_range("ProgressBar1", 1, traces); });

  const float spacing = static_cast<float>(leading_number(text("Text6")));
  int32_t in_pos = 0;
  su::RecordImage image(files, 2);
  // A record over 16 bits has no size: every trace goes to the same place.
  const int64_t record = int64_t{samples} * 4 + su::header_size;
  for (int64_t i = 1; i <= traces; ++i) {
    if (record <= INT16_MAX && radar::past_last_place(i - 1, record)) break;
    set_progress("ProgressBar1", static_cast<int>(i));
    // Past 8131 samples the 16-bit sizes overflow: the positions stay where
    // they were and the trace lands on the one before.
    resume_next([&] { in_pos = i32_add(first_scan, i32_mul(i - 1, i16_mul(i16_mul(samples, 2), code))); });
    resume_next([&] { state.trace_pos = i32_mul(i - 1, i16_add(i16_mul(samples, 4), su::header_size)); });
    resume_next([&] {
      if (code == 1)
        files[1].read_at(in_pos, radar::from_one(state.i2_trace), 2 * radar::count_from_one(state.i2_trace));
      else
        files[1].read_at(in_pos, radar::from_one(state.i4_trace), 4 * radar::count_from_one(state.i4_trace));
    });
    image.move_to(state.trace_pos);
    image.put(su::word("tracl"), 0);
    image.put(su::word("tracr"), 0);
    image.put(su::word("fldr"), 1);
    image.put(su::word("tracf"), i);
    image.put(su::word("cdp"), i);
    image.put(su::word("cdpt"), i);
    for (const char* key : {"trid", "nvs", "nhs", "duse"}) image.put(su::word(key), 1);
    image.zero_words(36, 88, 4);
    image.zero_words(88, 180, 2);
    image.put(su::word("ns"), samples);
    image.put(su::word("dt"), rate);  // the nanosecond figure as it stands
    // The zeroing runs 16 bytes past the header; the samples cover them.
    image.zero_words(180, 256, 4);
    image.put(su::word("d1"), spacing);
    image.put(su::word("d2"), spacing);
    image.put(su::word("mark"), 0);
    image.put_i16(su::word("mark").offset + 1, 0);  // one byte further, overlapping mark
    // Each sample as read, divided by the divisor; no gain, no offset.
    auto& out = state.r4_trace;
    auto convert = [&](const auto& in) {
      const size_t last = std::min({radar::count_from_one(in), radar::count_from_one(out),
                                    static_cast<size_t>(std::max<int16_t>(samples, 0))});
      for (size_t k = 1; k <= last; ++k) out[k] = static_cast<float>(static_cast<double>(in[k]) / divisor);
    };
    if (code == 1) convert(state.i2_trace);
    else convert(state.i4_trace);
    radar::put_samples(image, out);
    radar::write_out_every_16(image, i);
  }
  resume_next([&] { image.flush(); });
  resume_next([&] { files.close_all(); });
  message(platform, "Conversion OK! " + state.file_out + " has been recorded", Icon::information);
}

DZT2::DZT2(App& owner) : Panel(owner, "DZT2", "GSSI DZT file conversion") {
  add(Kind::button, "Command3", step1_caption).on_click = [this] { start_ascii_export(); };
  add(Kind::button, "Command1", "Step 2: Convert ASCII data to SEISMIC UNIX format").on_click = [this] {
    app.panels.show("ASCII2SU");
  };
  add(Kind::picture, "Picture1", "Use the same values for DZT to ASCII conversion");
}

// The vendor's converter writes the scans as ASCII columns; its absence
// shows only as the shell's failure.
void DZT2::start_ascii_export() {
  ShellRequest start;
  start.file = platform.application_folder() + native_path("\\rtoaw.exe");
  if (platform.shell_execute(start) < 32) message(platform, "Unable to shell application:");
}

}  // namespace tf
