// KGS record files, integer (*.EVD) and floating (*.DAT, "KGS-FPT"), to SU
// and back. A KGS trace is shaped like an SU trace, a 240-byte header and
// the samples, but its header is a table of 16-bit words at places of its
// own. Reading and writing do not use the same places for every word
// (ep comes back as tracl, sdel is read from the gdel word): files written
// and read back show it, and other KGS software expects it so.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <optional>
#include <vector>

#include "exchange/convert.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/geometry.h"
#include "su/su_record.h"

namespace tf {

namespace {

namespace fs = std::filesystem;

// A header word by its key, looked up when compiling.
consteval const su::HeaderWord& word(std::string_view key) { return su::word(key); }

constexpr const char* kgs_title = "Enter Values not available in KGS header";
constexpr const char* su_title = "Enter Values not available in SU header";
constexpr const char* depth_prompt = " Source depth below surface";
constexpr int16_t format_mark = 21930;  // 55AA hexadecimal, at byte 118
constexpr int kgs_words = su::header_size / 2;
constexpr int32_t traces_a_write = 256;
constexpr int64_t copy_step = 1 << 20;

// How much of a piece of `size` bytes lies in the `left` bytes before the
// end of a file.
size_t part_inside(int64_t left, int64_t size) {
  return static_cast<size_t>(std::max<int64_t>(0, std::min(left, size)));
}

// A KGS header as read: its 16-bit words by byte offset.
struct KgsHeader {
  const int16_t* words;
  int32_t operator()(int offset) const { return words[offset / 2]; }
};

// The SU header of a KGS trace, written over the record image. The integer
// and the floating files take tracl, tracr and tracf from different words.
void put_su_header(su::RecordImage& image, KgsHeader kgs, bool floating, int32_t depth) {
  image.put(word("tracl"), kgs(floating ? 172 : 170));
  image.put(word("tracr"), kgs(floating ? 184 : 182));
  image.put(word("fldr"), kgs(12));
  image.put(word("tracf"), kgs(floating ? 26 : 16));
  image.put(word("ep"), kgs(172));
  image.put(word("cdp"), kgs(22));
  image.put(word("cdpt"), kgs(26));
  image.put(word("trid"), kgs(28));
  image.put(word("nvs"), kgs(30));
  image.put(word("nhs"), kgs(32));
  image.put(word("duse"), 1);
  image.put(word("offset"), kgs(36));
  image.put(word("gelev"), kgs(40));
  image.put(word("selev"), kgs(44));
  image.put(word("sdepth"), depth);
  image.put(word("gdel"), kgs(52));
  image.put(word("sdel"), kgs(52));
  // Only the low halves of swdep and gwdep: their upper bytes keep what the
  // record image holds there.
  image.put_i16(word("swdep").offset, 0);
  image.put_i16(word("gwdep").offset, 0);
  image.put(word("scalel"), 1);
  image.put(word("scalco"), kgs(70));
  image.put(word("sx"), kgs(76));
  image.put(word("sy"), kgs(78));
  image.put(word("gx"), kgs(70));
  image.put(word("gy"), kgs(72));
  image.put(word("counit"), 1);
  image.zero_words(word("wevel").offset, word("sstat").offset, 2);  // wevel, swevel, sut, gut
  image.put(word("sstat"), kgs(98));
  image.put(word("gstat"), kgs(100));
  image.put(word("tstat"), kgs(102));
  image.zero_words(word("laga").offset, word("delrt").offset, 2);
  image.put(word("delrt"), kgs(108));
  image.zero_words(word("muts").offset, word("ns").offset, 2);
  image.put(word("ns"), kgs(114));
  image.put(word("dt"), kgs(116));
  image.put(word("gain"), 3);
  image.zero_words(120, 148, 2);
  image.put(word("lcf"), kgs(148));
  image.put(word("hcf"), kgs(150));
  image.zero_words(152, 240, 2);
}

// SU words into KGS places, in the order they are written. A 4-byte SU
// word narrows to 16 bits with the overflow error.
struct KgsPlace {
  const su::HeaderWord* su_word;
  int offset;
};
constexpr KgsPlace kgs_places_before_gx[] = {
    {&word("tracl"), 174}, {&word("tracr"), 182}, {&word("fldr"), 10}, {&word("tracf"), 26}, {&word("ep"), 172},
    {&word("cdp"), 22},    {&word("trid"), 28},   {&word("nvs"), 30},  {&word("nhs"), 32},   {&word("offset"), 36},
    {&word("gelev"), 40},  {&word("selev"), 44},  {&word("gdel"), 52}, {&word("sdel"), 56},  {&word("scalco"), 70},
    {&word("sx"), 76},     {&word("sx"), 76},     {&word("sy"), 78},   {&word("gx"), 70},    {&word("gy"), 72},
};
constexpr KgsPlace kgs_places_after_gx[] = {
    {&word("sstat"), 98},  {&word("gstat"), 100}, {&word("tstat"), 102},
    {&word("delrt"), 108}, {&word("ns"), 114},    {&word("dt"), 116},
};

int32_t su_value(const std::vector<uint8_t>& header, const su::HeaderWord& w) {
  if (w.width == 2) {
    int16_t v;
    std::memcpy(&v, header.data() + w.offset, 2);
    return v;
  }
  int32_t v;
  std::memcpy(&v, header.data() + w.offset, 4);
  return v;
}

// The answers that head every KGS trace, at 0, 2, 4, 6 and 8.
struct KgsAnswers {
  int16_t data_type, channels, record_word, trace_word, direction;
};

// The KGS words of one SU trace over its blanked header, in the order of
// writing; a value too wide for its word stops with the overflow error.
void put_kgs_header(su::RecordImage& image, const std::vector<uint8_t>& header, const KgsAnswers& answers) {
  image.put_i16(0, answers.data_type);
  image.put_i16(2, answers.channels);
  image.put_i16(4, answers.record_word);
  image.put_i16(6, answers.trace_word);
  image.put_i16(8, answers.direction);
  for (const auto& place : kgs_places_before_gx) image.put_i16(place.offset, to_i16(su_value(header, *place.su_word)));
  image.put_i16(70, static_cast<int16_t>(su_value(header, word("gx")) & 0xFFFF));  // the low word of gx
  for (const auto& place : kgs_places_after_gx) image.put_i16(place.offset, to_i16(su_value(header, *place.su_word)));
  image.put_i16(118, format_mark);
  image.put_i16(148, to_i16(su_value(header, word("lcf"))));
  image.put_i16(150, to_i16(su_value(header, word("hcf"))));
}

}  // namespace

int32_t Convert::ask_source_depth() {
  InputBoxRequest ask;
  ask.prompt = depth_prompt;
  ask.title = kgs_title;
  ask.default_text = "1";
  int32_t depth = 0;
  resume_next([&] { depth = to_i32(leading_number(platform.input_box(ask))); });
  return depth;
}

int16_t Convert::ask_header_value(const std::string& prompt, const std::string& default_text) {
  InputBoxRequest ask;
  ask.prompt = prompt;
  ask.title = su_title;
  ask.default_text = default_text;
  return to_i16(leading_number(platform.input_box(ask)));
}

void Convert::Convert_KGSI_2_SU() {
  if (!entry_checks()) return;
  resume_next([&] { fs::remove(native_path(state.file_out)); });
  int16_t data_type = 0, samples = 0;  // samples: the 16-bit local that all sizes come from
  resume_next([&] { open_record(files, 1, state.file_in); });
  resume_next([&] { files[1].read_value(0, data_type); });  // read, and no use is made of it
  resume_next([&] { files[1].read_value(16, state.nb_channels); });
  resume_next([&] { files[1].read_value(word("ns").offset, samples); });
  state.ns = samples;
  resume_next([&] { files.close(1); });
  (void)data_type;

  int16_t in_size = 0, out_size = 0;
  resume_next([&] { in_size = i16_add(i16_mul(samples, 2), su::header_size); });
  resume_next([&] {
    if (in_size == 0) throw RunTimeError(err::division_by_zero);
    state.nb_traces = to_i32(static_cast<double>(file_length(native_path(state.file_in))) / in_size);
  });
  resume_next([&] { set_progress_range("ProgressBar1", 1, state.nb_traces); });
  const int32_t depth = ask_source_depth();

  // One input record as 16-bit words, one output record as floats: float k
  // takes word k + 60, so the first 60 floats are the KGS header from byte
  // 120 on and the samples follow at 240.
  std::vector<int16_t> record;
  std::vector<float> trace;
  resume_next([&] {
    if (samples < 0) throw RunTimeError(err::subscript);
    record.assign(static_cast<size_t>(samples) + 120, 0);
    trace.assign(static_cast<size_t>(samples) + 60, 0.0f);
  });
  resume_next([&] { open_record(files, 1, state.file_in); });
  resume_next([&] { files.open(2, native_path(state.file_out)); });
  auto& bar = (*this)["ProgressBar1"];
  bar.visible = true;
  changed(bar);
  resume_next([&] { out_size = i16_add(i16_mul(samples, 4), su::header_size); });

  su::RecordImage image(files, 2);
  ReadAhead input(files, 1);
  int32_t in_pos = 0;
  for (int32_t i = 1; i <= state.nb_traces; ++i) {
    resume_next([&] { set_progress("ProgressBar1", i); });
    // A size that overflowed leaves the positions at their last values.
    resume_next([&] { in_pos = i32_mul(in_size, i - 1); });
    resume_next([&] { input.read_block(in_pos, record); });
    for (size_t k = 0; k < trace.size(); ++k) trace[k] = record[k + 60];
    resume_next([&] { state.trace_pos = i32_mul(out_size, i - 1); });
    image.move_to(state.trace_pos);
    image.put_block(0, trace.data(), trace.size());
    if (record.size() >= kgs_words) put_su_header(image, KgsHeader{record.data()}, false, depth);
    // Some hundred traces a write: large writes, and the image's memory reused.
    if (i % traces_a_write == 0) resume_next([&] { image.flush(); });
  }
  resume_next([&] { image.flush(); });
  finish_kgs();
}

void Convert::Convert_KGS_2_SU() {
  if (!entry_checks()) return;
  resume_next([&] { fs::remove(native_path(state.file_out)); });
  // The KGS words at 114 and 116 stand where SU keeps ns and dt.
  Read_ns_dt(app, state.file_in);
  resume_next([&] { state.nb_traces = su::trace_count(file_length(native_path(state.file_in)), state.ns); });
  resume_next([&] { set_progress_range("ProgressBar1", 1, state.nb_traces); });
  // The samples travel with the copy, byte for byte; only headers change.
  resume_next([&] { copy_whole_file(native_path(state.file_in), native_path(state.file_out), err::path_file_access); });
  const int32_t depth = ask_source_depth();
  resume_next([&] { open_record(files, 1, state.file_in); });
  resume_next([&] { files.open(2, native_path(state.file_out)); });
  // The output is deleted here too, while it is open: that fails, unnoticed.

  std::vector<int16_t> header(kgs_words, 0);
  su::RecordImage image(files, 2);
  ReadAhead input(files, 1);
  for (int32_t i = 1; i <= state.nb_traces; ++i) {
    resume_next([&] { set_progress("ProgressBar1", i); });
    resume_next([&] { state.trace_pos = su::trace_position(i, state.ns); });
    resume_next([&] { input.read_block(state.trace_pos, header); });
    image.move_to(state.trace_pos);
    put_su_header(image, KgsHeader{header.data()}, true, depth);
    // Each header goes out alone: the samples between stay as copied.
    resume_next([&] { image.flush(); });
  }
  finish_kgs();
}

// Any failing statement, a 4-byte value too wide for its 16-bit KGS word
// among them, ends the routine with one box; what was written stays.
void Convert::Convert_SU_2_KGS() {
  if (!entry_checks()) return;
  try {
    Read_ns_dt(app, state.file_in);
    state.nb_traces = su::trace_count(file_length(native_path(state.file_in)), state.ns);
    set_progress_range("ProgressBar1", 1, state.nb_traces);
    int16_t stack_flag = 0;
    Detect_Geometry(app, state.file_in, state.nb_traces, state.nb_channels, stack_flag);

    const std::string& crlf = state.crlf;
    int16_t data_type = 0;
    if (state.nb_channels == 0)
      data_type = ask_header_value(" Data type: 0 = raw field; 1 = CDP gather" + crlf +
                                       "2 = CDP stacked; 3 = trace number index" + crlf + "4 = Velocity Scan" + crlf,
                                   "2");
    const int16_t record_word =
        ask_header_value("Trace-header word of record number for this data set:" + crlf +
                             "8   = common recording charnel number   12 = common depth point" + crlf +
                             "19 = common offset          86 = commun receiver station number" + crlf +
                             "87 = common source station number   92 = common source sequence number" + crlf,
                         "12");
    const int16_t trace_word = ask_header_value("Trace-header word of trace number within each record" + crlf +
                                                    "0   = input order of seismic data to be sorted " + crlf,
                                                "0");
    const int16_t direction = ask_header_value(" Trace direction 1=ascending -1= descending", "1");

    files.close_all();
    Read_ns_dt(app, state.file_in);
    // The output is the input copied whole, every counted header blanked,
    // then the KGS words written trace by trace. The three go out together,
    // a few hundred traces a write; the file ends as those steps one after
    // the other leave it, also when a word stops the words part way.
    fs::remove(native_path(state.file_out));
    open_record(files, 1, state.file_in);
    files.open(2, native_path(state.file_out));
    const int64_t length = files[1].length();
    const int64_t record = su::record_size(state.ns);
    su::RecordImage image(files, 2);
    ReadAhead input(files, 1);
    std::vector<uint8_t> bytes(static_cast<size_t>(std::max<int64_t>(record, su::header_size)), 0);
    std::optional<RunTimeError> stopped;
    for (int32_t i = 1; i <= state.nb_traces; ++i) {
      const int64_t pos = su::trace_position(i, state.ns);
      const size_t inside = part_inside(length - pos, record);
      input.read_at(pos, bytes.data(), inside);
      image.move_to(pos);
      image.put_bytes(0, bytes.data(), inside);
      image.zero_words(0, su::header_size, 4);
      if (!stopped) {
        try {
          set_progress("ProgressBar1", i);
          state.trace_pos = static_cast<int32_t>(pos);
          put_kgs_header(image, bytes, KgsAnswers{data_type, state.nb_channels, record_word, trace_word, direction});
        } catch (const RunTimeError& e) {
          stopped = e;
        }
      }
      if (i % traces_a_write == 0) image.flush();
    }
    // Past the counted traces the copy goes on to the end of the input.
    const int64_t covered = state.nb_traces > 0 && record > 0 ? int64_t{state.nb_traces} * record : 0;
    bytes.resize(std::max<size_t>(bytes.size(), copy_step));
    for (int64_t pos = covered; pos < length; pos += copy_step) {
      const size_t inside = part_inside(length - pos, copy_step);
      input.read_at(pos, bytes.data(), inside);
      image.move_to(pos);
      image.put_bytes(0, bytes.data(), inside);
      image.flush();
    }
    image.flush();
    files.close_all();
    if (stopped) throw *stopped;
    finish_kgs();
  } catch (const RunTimeError&) {
    message(platform, "File conversion error");
  }
}

}  // namespace tf
