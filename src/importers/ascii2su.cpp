#include "importers/ascii2su.h"

#include <charconv>
#include <cstdlib>
#include <memory>
#include <cmath>
#include <limits>
#include <filesystem>
#include <iterator>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include "frame/file_selection.h"
#include "frame/helpers.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    " ASCII SEISMIC FILE CONVERSION",
    " This module will convert ASCII file to SU format ",
    " DATA must be in column and with a comma as delimiter ! ",
    " You must only select ASCII file and the output file name",
    " Number of samples per trace, sample rate and number of traces input is necessary ! ",
    "  ",
};
const char* const samples_prompt = "Enter the number of samples / trace";
const char* const traces_prompt_at_selection = "Enter the number of  traces";
const char* const traces_prompt = "Enter the number of traces";
const char* const rate_prompt = "Enter the sampling rate (ns)";

// The GSSI DZT header words the radar option takes.
constexpr int dzt_samples = 4, dzt_unused = 6, dzt_scans_per_ns = 10, dzt_traces = 52;
// Radar text holds unsigned 16-bit values: centred by this shift, and the
// first two samples (the scan's mark words) cleared.
constexpr double radar_shift = 32767;
constexpr int16_t radar_nhs = 95;

// A cell of the working matrix holds a general value: empty until a token
// is read into it, a number, or text. Empty counts as 0 in a subtraction,
// so it is kept as 0; text, on which a subtraction fails, as NaN (no token
// reads as NaN).
using Cell = double;
const Cell text_cell = std::numeric_limits<double>::quiet_NaN();
bool is_text(Cell cell) { return std::isnan(cell); }
// The matrix is allocated whole at 16 bytes a general value; past this size
// the allocation fails, as it does in the address space the panel was made
// for.
constexpr size_t variant_bytes = 16;
constexpr size_t matrix_limit = size_t{1} << 30;

// The cells, allocated whole and filled in one pass. Large pages where the
// system offers them: the pass and the reading across rows then touch far
// fewer pages.
class Matrix {
 public:
  void allocate(size_t cells) {
    constexpr size_t page = size_t{2} << 20;
    const size_t bytes = (cells * sizeof(Cell) + page - 1) / page * page;
    cells_.reset(static_cast<Cell*>(std::aligned_alloc(page, bytes)));
    if (!cells_) throw RunTimeError(err::out_of_memory);
#if defined(__linux__)
    ::madvise(cells_.get(), bytes, MADV_HUGEPAGE);
#endif
    size_ = cells;
  }
  bool empty() const { return size_ == 0; }
  size_t size() const { return size_; }
  Cell& operator[](size_t i) { return cells_[i]; }

 private:
  struct Free {
    void operator()(Cell* p) const { std::free(p); }
  };
  std::unique_ptr<Cell[], Free> cells_;
  size_t size_ = 0;
};

// A token as a value: a number where the whole token reads as a finite one,
// 0 where nothing stands, else text.
Cell cell_of(std::string_view token) {
  if (token.empty()) return 0;
  if (token.front() == '+') token.remove_prefix(1);
  // Whole numbers of a few digits, the usual recorder values, read directly.
  if (!token.empty() && token.size() <= 10) {
    const bool negative = token.front() == '-';
    int64_t whole = 0;
    size_t i = negative ? 1 : 0;
    while (i < token.size() && token[i] >= '0' && token[i] <= '9') whole = whole * 10 + (token[i++] - '0');
    if (i == token.size() && i > (negative ? 1u : 0u)) return static_cast<Cell>(negative ? -whole : whole);
  }
  Cell number = 0;
  auto [end, ec] = std::from_chars(token.data(), token.data() + token.size(), number);
  return ec == std::errc() && end == token.data() + token.size() && std::isfinite(number) ? number : text_cell;
}

// The record start of trace t with a 16-bit record size; false where the
// arithmetic overflows and the step fails (past 8131 samples).
bool record_start(int32_t t, int16_t samples, int32_t& pos) {
  const int32_t size = su::header_size + 4 * samples;
  if (size > INT16_MAX) return false;
  const int64_t p = int64_t{t - 1} * size;
  if (p > INT32_MAX) return false;
  pos = static_cast<int32_t>(p);
  return true;
}

// Asks until the answer reads as a number other than 0, the answer going
// to `control`.
template <typename T>
void ask_until_not_zero(Panel& panel, Platform& platform, T& value, const char* prompt, const std::string& default_text,
                        const std::string& control) {
  while (value == 0) {
    InputBoxRequest ask;
    ask.prompt = prompt;
    ask.default_text = default_text;
    panel.set_text(control, platform.input_box(ask));
    resume_next([&] {
      if constexpr (sizeof(T) == 2)
        value = field_i16(panel.text(control));
      else
        value = field_i32(panel.text(control));
    });
  }
}
}  // namespace

AsciiGeometry read_ascii_geometry(Panel& panel, Platform& platform) {
  AsciiGeometry g;
  resume_next([&] { g.samples = field_i16(panel.text("Text3")); });
  resume_next([&] { g.traces = field_i32(panel.text("Text5")); });
  resume_next([&] { g.rate = field_i16(panel.text("Text4")); });
  ask_until_not_zero(panel, platform, g.samples, samples_prompt, "0", "Text3");
  ask_until_not_zero(panel, platform, g.traces, traces_prompt, "0", "Text5");
  ask_until_not_zero(panel, platform, g.rate, rate_prompt, "0", "Text4");
  return g;
}

int32_t count_tokens(const std::string& file) {
  TokenReader reader(read_whole_file(file_system_name(file)));
  int32_t tokens = 0;
  resume_next([&] {
    for (; !reader.at_end(); ++tokens) reader.next_field_view();
  });
  return tokens;
}

void ask_for_rate(Panel& panel, Platform& platform, int16_t& rate) {
  ask_until_not_zero(panel, platform, rate, rate_prompt, "100", "Text4");
}

void choose_text_output(Panel& panel, Platform& platform) {
  FileDialogRequest dialog;
  dialog.title = "KGS Integer File selection";
  dialog.filter = "SU File |*.SU|All files|*.*|";
  dialog.file_name = "*.SU";
  panel.set_text("Text2", platform.file_dialog(dialog));
}

void ask_to_kill_output(Platform& platform, const std::string& file_out) {
  if (!File_Exists(file_out)) return;
  if (message(platform, "Outfile name already exists, kill this file ?", Icon::question, Buttons::yes_no) != Answer::yes)
    return;
  resume_next([&] {
    std::error_code ec;
    if (!std::filesystem::remove(file_system_name(file_out), ec)) throw RunTimeError(err::permission_denied);
  });
}

void put_text_trace_header(su::RecordImage& image, int32_t t, int16_t samples, int16_t rate, bool radar) {
  image.put(su::word("tracl"), 0);
  image.put(su::word("tracr"), 0);
  image.put(su::word("fldr"), 1);
  image.put(su::word("tracf"), t);
  image.put(su::word("cdp"), t);
  image.put(su::word("cdpt"), 0);
  image.put(su::word("trid"), 1);
  image.put(su::word("nvs"), 1);
  image.put(su::word("nhs"), radar ? radar_nhs : 1);
  image.put(su::word("duse"), 1);
  image.zero_words(36, 88, 4);
  image.zero_words(88, 114, 2);
  image.put(su::word("ns"), samples);
  image.put(su::word("dt"), rate);  // the typed rate, without change of unit
  image.zero_words(118, 180, 2);
  // The zeroing runs 16 bytes past the header; the samples cover them.
  image.zero_words(180, 256, 4);
}

void report_text_conversion(Platform& platform, const std::string& file_out) {
  message(platform, "Conversion OK! " + file_out + " has been recorded", Icon::information);
}

void show_text_help(Platform& platform, const char* const* lines, size_t count, const std::string& crlf) {
  std::string text = lines[0];
  for (size_t i = 1; i < count; ++i) text += crlf + lines[i];
  message(platform, text);
}

ASCII2SU::ASCII2SU(App& owner) : Panel(owner, "ASCII2SU", "ASCII to SU") {
  add(Kind::button, "Command1", "Input file").on_click = [this] { select_input(); };
  add(Kind::text, "Text1", "", " ");
  add(Kind::button, "Command2", "Output file").on_click = [this] { out_file(); };
  add(Kind::text, "Text2", "", " ");
  add(Kind::text, "Text3", "Number of samples", "512");
  add(Kind::text, "Text4", "Sample rate", "0");
  add(Kind::text, "Text5", "Trace number", "0");
  add(Kind::check, "Check1", "DZT Radar file");
  add(Kind::button, "Command3", "Convert").on_click = [this] { convert_ascii(); };
  add(Kind::button, "Command4", "Exit").on_click = [this] { unload(); };
  add(Kind::button, "Command5", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

// Every statement runs with failures skipped.
void ASCII2SU::select_input() {
  auto choose = [&] { return records_dialog(platform, "ASCII file selection", "TXT file |*.TXT", "", state.data_folder); };
  resume_next([&] { state.file_in = choose(); });
  set_text("Text1", state.file_in);
  resume_next([&] { set_text("Text2", su_name(state.file_in)); });
  state.file_out = text("Text2");

  int32_t tokens = 0;
  if (checked("Check1")) {
    // The geometry of the radar file the text was exported from.
    std::string dzt;
    resume_next([&] {
      if (state.file_in.size() < 3) throw RunTimeError(err::invalid_call);
      dzt = state.file_in.substr(0, state.file_in.size() - 3) + "DZT";
    });
    if (!File_Exists(dzt)) resume_next([&] { dzt = choose(); });
    resume_next([&] { open_record(files, 1, dzt); });
    int16_t samples = 0, unused = 0, traces = 0;
    float scans_per_ns = 0;
    resume_next([&] { files[1].read_value(dzt_samples, samples); });
    resume_next([&] { files[1].read_value(dzt_unused, unused); });
    resume_next([&] { files[1].read_value(dzt_scans_per_ns, scans_per_ns); });
    resume_next([&] { files[1].read_value(dzt_traces, traces); });
    resume_next([&] { files.close(1); });
    resume_next([&] { set_text("Text3", field_text(samples)); });
    resume_next([&] {
      if (scans_per_ns == 0) throw RunTimeError(err::division_by_zero);
      set_text("Text4", field_text(1000 / scans_per_ns));
    });
    resume_next([&] { set_text("Text5", field_text(traces)); });
    // The token count is not made: the traces are asked for below.
  } else {
    // One below the number of tokens: the count starts at -1.
    tokens = -1;
    resume_next([&] { tokens += count_tokens(state.file_in); });
  }
  int16_t samples = 0, rate = 0;
  int32_t traces = 0;
  resume_next([&] { samples = field_i16(text("Text3")); });
  resume_next([&] { rate = field_i16(text("Text4")); });
  ask_until_not_zero(*this, platform, samples, samples_prompt, "512", "Text3");
  resume_next([&] { traces = to_i32(static_cast<double>(tokens) / samples); });
  while (traces == 0) {
    InputBoxRequest ask;
    ask.prompt = traces_prompt_at_selection;
    ask.default_text = "0";
    const std::string answer = platform.input_box(ask);
    resume_next([&] { traces = field_i32(answer); });
  }
  set_text("Text5", field_text(traces));
  ask_for_rate(*this, platform, rate);
}

void ASCII2SU::out_file() {
  choose_text_output(*this, platform);
}

void ASCII2SU::info() {
  show_text_help(platform, help_lines, std::size(help_lines), state.crlf);
}

// Every statement runs with failures skipped.
void ASCII2SU::convert_ascii() {
  state.file_out = text("Text2");
  state.file_in = text("Text1");
  const AsciiGeometry g = read_ascii_geometry(*this, platform);
  if (!File_Exists(state.file_in)) {
    message(platform, "Input file does not exists!", Icon::stop);
    return;
  }
  ask_to_kill_output(platform, state.file_out);
  resume_next([&] { set_progress_range("ProgressBar1", 1, g.traces); });

  // The whole matrix first: the file runs across the traces.
  Matrix matrix;
  resume_next([&] {
    if (g.samples < 1 || g.traces < 1) throw RunTimeError(err::subscript);
    const size_t cells = static_cast<size_t>(g.samples) * static_cast<size_t>(g.traces);
    if (cells > matrix_limit / variant_bytes) throw RunTimeError(err::out_of_memory);
    matrix.allocate(cells);
  });
  resume_next([&] {
    if (g.samples < 1) throw RunTimeError(err::subscript);
    state.r4_trace.assign(static_cast<size_t>(g.samples) + 1, 0.0f);
  });
  // Without its matrix every statement on the cells would fail: nothing is
  // read or written.
  if (!matrix.empty()) {
    // Held as the file runs: a row of the matrix is one time sample.
    size_t read = 0;
    resume_next([&] {
      TokenReader reader(read_whole_file(file_system_name(state.file_in)));
      for (; read < matrix.size(); ++read) matrix[read] = cell_of(reader.next_field_view());
    });
    // Past the end of the file every read fails and the cells stay empty.
    for (; read < matrix.size(); ++read) matrix[read] = 0;
    resume_next([&] { files.close_all(); });
    resume_next([&] { files.open(2, file_system_name(state.file_out)); });

    const bool radar = checked("Check1");
    const double shift = radar ? radar_shift : 0;
    const auto ns = static_cast<size_t>(g.samples);
    auto& samples = state.r4_trace;
    // Traces are made a few at a time, so that each row is read along its
    // length; each sample still follows from the trace before.
    constexpr int32_t block = 64;
    std::vector<float> made(block * ns);
    su::RecordImage image(files, 2);
    for (int32_t first = 1; first <= g.traces; first += block) {
      const int32_t count = std::min(block, g.traces - first + 1);
      for (size_t s = 1; s <= ns; ++s) {
        const Cell* row = &matrix[(s - 1) * static_cast<size_t>(g.traces) + static_cast<size_t>(first - 1)];
        float value = samples[s];
        for (int32_t k = 0; k < count; ++k) {
          // A cell less the shift; text makes the subtraction fail (a type
          // mismatch) and the sample of the trace before stays. Radar
          // traces then lose their first two samples.
          if (!is_text(row[k])) value = static_cast<float>(row[k] - shift);
          if (radar && s <= 2) value = 0;
          made[static_cast<size_t>(k) * ns + (s - 1)] = value;
        }
        samples[s] = value;
      }
      for (int32_t k = 0; k < count; ++k) {
        const int32_t t = first + k;
        resume_next([&] { set_progress("ProgressBar1", t); });
        // Where the step fails the trace goes where the last one went: past
        // 8131 samples every trace lands on the same record.
        record_start(t, g.samples, state.trace_pos);
        image.move_to(state.trace_pos);
        put_text_trace_header(image, t, g.samples, g.rate, radar);
        image.put_block(su::header_size, &made[static_cast<size_t>(k) * ns], ns);
      }
      resume_next([&] { image.flush(); });
    }
    resume_next([&] { image.flush(); });
  }
  resume_next([&] { files.close_all(); });
  report_text_conversion(platform, state.file_out);
}

}  // namespace tf
