#include "radar/ramac.h"

#include <filesystem>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "radar/radar_common.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const first_channel_tip = "Click here and select the first channel of your record";
const char* const sample_rate_prompt = " Enter the sampling rate (nanoS)";
const char* const samples_prompt = " Enter the number of sample per trace";

// A settled value of the radar traces, not a count.
constexpr int radar_nhs = 95;
// Without a header the record is taken for traces of 512 samples, 1024
// bytes each.
constexpr int proposed_trace_bytes = 1024;

}  // namespace

RecordDate record_date(const std::string& short_date, const std::string& time) {
  auto part = [](const std::string& text, size_t from, size_t count) {
    return from < text.size() ? text.substr(from, count) : std::string();
  };
  RecordDate d;
  resume_next([&] { d.year = to_i16(leading_number(short_date.size() < 2 ? short_date : short_date.substr(short_date.size() - 2))); });
  resume_next([&] { d.day = i16_add(i16_mul(to_i16(leading_number(part(short_date, 0, 2))) - 1, 30), to_i16(leading_number(part(short_date, 3, 2)))); });
  resume_next([&] { d.hour = to_i16(leading_number(part(time, 0, 2))); });
  resume_next([&] { d.minute = to_i16(leading_number(time.size() < 2 ? time : time.substr(time.size() - 2))); });
  return d;
}

Radar_F::Radar_F(App& owner) : Panel(owner, "Radar_F", "RAMAC  file conversion") {
  add(Kind::button, "Command3", "Input RAMAC file").on_click = [this] { Lit_RAMAC(); };
  auto& input = add(Kind::text, "Text1", "", "XXX");
  input.tooltip = first_channel_tip;
  input.on_dblclick = [this] { Lit_RAMAC(); };
  input.on_change = [this] { resume_next([&] { set_text("Text5", su_name(text("Text1"))); }); };
  add(Kind::text, "Text5", "Output SU file name", "*.SU");
  add(Kind::text, "Text2", "Number of channel", " ");
  add(Kind::text, "Text6", "Samples per trace", " 480");
  add(Kind::text, "Text4", "Sample rate (NanoS)", " 4");
  add(Kind::text, "Text7", "Recording time (ns)", " 1920");
  add(Kind::text, "Text3", "Trace spacing", ".20");
  add(Kind::text, "Text8", "Time zero at point", "0").tooltip = radar::time_zero_tip;
  add(Kind::rich_text, "RichTextBox1").multiline = true;
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::progress, "ProgressBar1");
}

void Radar_F::Lit_RAMAC() {
  std::string chosen;
  resume_next([&] {
    chosen = record_dialog(platform, "File selection", "Radar files|*.rd3|All files|*.*|", "*.rd3",
                                  state.data_folder);
  });
  set_text("Text1", chosen);
  state.file_in = chosen;
  // The folder is what stands before the file title the dialog reports.
  const size_t title_at = chosen.find_last_of("\\/");
  std::string folder = title_at == std::string::npos ? "" : chosen.substr(0, title_at + 1);
  if (folder.empty() || (folder.back() != sep_char && folder.back() != '\\')) folder += sep;
  state.data_folder = folder;
  resume_next([&] { set_text("Text5", su_name(chosen)); });
  set_text("Text6", "512");
  resume_next([&] {
    set_text("Text2", number_text(static_cast<double>(file_length(file_system_name(chosen))) / proposed_trace_bytes));
  });
  std::string header_name;
  resume_next([&] { header_name = radar::beside(chosen, "rad"); });
  if (radar::show_header_text(*this, "RichTextBox1", header_name, state.file_in, state.crlf))
    read_header(text("RichTextBox1"));
}

// The keys in this order; a missing key beeps and leaves its field.
void Radar_F::read_header(const std::string& header_text) {
  radar::key_into_field(*this, platform, header_text, "SAMPLES:", "Text6");
  radar::key_into_field(*this, platform, header_text, "LAST TRACE:", "Text2");
  radar::key_into_field(*this, platform, header_text, "TIME INTERVAL:", "Text4");
  radar::key_into_field(*this, platform, header_text, "TIMEWINDOW:", "Text7");
  // No sample interval: the time window over the samples.
  if (leading_number(text("Text4")) == 0)
    resume_next([&] {
      const double samples = leading_number(text("Text6"));
      if (samples == 0) throw RunTimeError(err::division_by_zero);
      set_text("Text4", field_text(radar::finite(leading_number(text("Text7")) / samples)));
    });
  radar::key_into_field(*this, platform, header_text, "DISTANCE INTERVAL:", "Text3");
}

void Radar_F::Convert() {
  resume_next([&] { files.close_all(); });
  state.file_in = text("Text1");
  state.file_out = text("Text5");
  radar::offer_to_delete(platform, state.file_out, radar::output_exists_question);
  // Above 32.767 nS the rate overflows, dt stays 0 and the box asks for it.
  int16_t dt = 0;
  resume_next([&] { dt = to_i16(leading_number(text("Text4")) * 1000); });
  while (dt == 0) {
    InputBoxRequest ask;
    ask.prompt = sample_rate_prompt;
    ask.default_text = "0";
    const std::string answer = platform.input_box(ask);
    resume_next([&] { dt = i16_mul(to_i16(leading_number(answer)), 1000); });
    set_text("Text4", field_text(dt));
  }
  state.dt = dt;
  int16_t time_zero = 0, traces = 0, samples = 0;
  resume_next([&] { time_zero = field_i16(text("Text8")); });
  resume_next([&] { traces = field_i16(text("Text2")); });
  resume_next([&] { samples = field_i16(text("Text6")); });
  while (samples == 0) {
    InputBoxRequest ask;
    ask.prompt = samples_prompt;
    ask.default_text = "0";
    set_text("Text6", platform.input_box(ask));
    resume_next([&] { samples = field_i16(text("Text6")); });
  }
  const double spacing = leading_number(text("Text3"));
  RecordDate date;
  resume_next([&] {
    const auto [short_date, time] = file_date_time(file_system_name(state.file_in));
    date = record_date(short_date, time);
  });

  resume_next([&] { set_progress_range("ProgressBar1", 1, traces); });
  state.trace_pos = 0;
  int16_t ns_out = 0;
  resume_next([&] { ns_out = i16_add(samples, -time_zero); });
  resume_next([&] { radar::size_from_one(state.r4_trace, ns_out); });
  resume_next([&] { radar::size_from_one(state.i2_trace, samples); });
  resume_next([&] { files.open(2, file_system_name(state.file_out)); });
  resume_next([&] { radar::open_existing(files, 1, state.file_in); });

  su::RecordImage image(files, 2);
  for (int32_t i = 1; i <= traces; ++i) {
    set_progress("ProgressBar1", i);
    int32_t position = 0;  // P: a whole number, spacings under 0.5 leave the first traces at 0
    resume_next([&] { position = to_i32((i - 1) * spacing); });
    resume_next([&] {
      files[1].read_at(i32_mul(i - 1, i16_mul(samples, 2)), radar::from_one(state.i2_trace),
                       2 * radar::count_from_one(state.i2_trace));
    });
    radar::shift_by_time_zero(state.i2_trace, state.r4_trace, time_zero, ns_out);
    // The samples go first, the header after; the record size is 16-bit.
    resume_next([&] {
      const int32_t at = i32_mul(i16_add(i16_mul(ns_out, 4), su::header_size), i - 1);
      image.move_to(at);
      radar::put_samples(image, state.r4_trace);
    });
    resume_next([&] { state.trace_pos = i32_mul(i16_add(i16_mul(ns_out, 4), su::header_size), i - 1); });
    image.move_to(state.trace_pos);
    radar::put_line_numbers(image, i);
    image.put(su::word("ep"), position);
    image.put(su::word("cdpt"), i);
    image.put(su::word("trid"), 1);
    image.put(su::word("nvs"), 0);
    image.put(su::word("nhs"), radar_nhs);
    image.put(su::word("duse"), 0);
    image.put(su::word("offset"), position);
    image.zero_words(40, 68, 4);
    image.put(su::word("scalel"), 0);
    image.put(su::word("scalco"), 1);
    image.put(su::word("sx"), position);
    image.put(su::word("sy"), 0);
    image.put(su::word("gx"), position);
    image.put(su::word("gy"), 0);
    // Two bytes at every byte from 88 to 180: plain zeros from 88 to 181.
    image.zero_words(88, 182, 2);
    for (const char* key : {"tstat", "muts", "mute"}) image.put(su::word(key), 0);
    image.put(su::word("dt"), dt);
    image.put(su::word("ns"), ns_out);
    image.put(su::word("year"), date.year);
    image.put(su::word("day"), date.day);
    image.put(su::word("hour"), date.hour);
    image.put(su::word("minute"), date.minute);
    image.put(su::word("d1"), spacing);
    image.put(su::word("d2"), spacing);
    radar::write_out_every_16(image, i);
  }
  resume_next([&] { image.flush(); });
  resume_next([&] { files.close_all(); });
  set_pointer(Pointer::arrow);
  resume_next([&] {
    const int64_t length = file_length(file_system_name(state.file_out));
    message(platform, "OK Conversion done " + state.file_out + "  " + number_text(length));
  });
}

}  // namespace tf
