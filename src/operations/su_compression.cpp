#include "operations/su_compression.h"

#include <cmath>

#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "operations/su_traces.h"
#include "su/su_record.h"

namespace tf {

namespace {

// Nearest whole number of a single below 2^22 in size, a tie going to the
// even one: adding and taking away 1.5 * 2^23 rounds it in the default mode.
float nearest_even(float value) { return (value + 12582912.0f) - 12582912.0f; }

// The samples times the factor into 16 bits. A product past the 16-bit
// range (or no number) overflows: the sample keeps the value of the trace
// before. Both tests are taken without a branch, so that the loop runs on
// vectors, on the widest that the processor has.
VECTOR_CLONES void compress_samples(const float* samples, int16_t* kept, int32_t ns, float scale) {
  for (int32_t i = 0; i < ns; ++i) {
    const float product = scale * samples[i];
    const float rounded = nearest_even(product);
    const bool fits = (product >= -32768.5f) & (rounded <= 32767.0f);
    const auto value = static_cast<int16_t>(static_cast<int32_t>(fits ? rounded : 0.0f));
    kept[i] = fits ? value : kept[i];
  }
}

constexpr int input_file = 3, output_file = 4;
constexpr double peak_target = 10000;

// The dialog of the main panel; "" when the choice names no file.
std::string chosen_file(App& app, const char* title, const char* filter, const char* start_name, int filter_index) {
  FileDialogRequest r;
  r.title = title;
  r.filter = filter;
  r.file_name = start_name;
  r.filter_index = filter_index;
  std::string name;
  resume_next([&] { name = app.platform.file_dialog(r); });
  return File_Exists(name) == 1 ? name : std::string();
}

// ns and dt of the first trace through file 11; 0 means 1024 samples of
// 1000 microseconds.
void first_trace_geometry(App& app, const std::string& file) {
  int16_t ns = 0, dt = 0;
  read_first_ns_dt(app.files, 11, file, ns, dt);
  resume_next([&] { app.files.close(11); });
  app.state.ns = ns == 0 ? 1024 : ns;
  app.state.dt = dt == 0 ? 1000 : dt;
}

// Traces by the size of an expanded record, 240 + 4 ns, formed in 16 bits:
// an ns above 8131 overflows and the count keeps its value.
void count_traces(App& app, const std::string& file, int32_t& traces) {
  resume_next([&] {
    traces = traces_by_record_size(file_length(native_path(file)), i16_add(su::header_size, i16_mul(4, app.state.ns)));
  });
}

// The scan steps: every 500th trace, every 50th below 1000 traces, every
// 10th below 100.
int32_t scan_step(int32_t traces) { return traces < 100 ? 10 : traces < 1000 ? 50 : 500; }

// ns and dt of the input, its traces by the expanded record size, both
// files opened as 3 and 4, the buffers sized (indices from 1). Gives the
// trace count.
int32_t start_job(App& app, const std::string& in, const std::string& out) {
  first_trace_geometry(app, in);
  int32_t traces = 0;
  count_traces(app, in, traces);
  // A negative sample count dimensions no buffer: nothing is converted.
  if (app.state.ns < 0) traces = 0;
  resume_next([&] { app.files.close_all(); });
  resume_next([&] { app.files.open(input_file, native_path(in)); });
  resume_next([&] { app.files.open(output_file, native_path(out)); });
  const auto samples = static_cast<size_t>(std::max(app.state.ns, 0));
  app.state.r4_trace.assign(samples + 1, 0.0f);
  app.state.i2_trace.assign(samples + 1, 0);
  app.state.header_bytes.assign(su::header_size + 1, 0);
  return traces;
}

}  // namespace

void SU_Compress(App& app) {
  SessionState& state = app.state;
  FileTable& files = app.files;
  const std::string in = chosen_file(app, "Qualtor File to compress selection", "Seismic Unix (SU)|*.SU|All files|*.*|",
                                     "*.SU", 0);
  if (in.empty()) return;
  const std::string out = in.substr(0, in.size() - 2) + "SU2";
  const int32_t traces = start_job(app, in, out), ns = state.ns;
  const int64_t in_record = su::header_size + 4 * static_cast<int64_t>(ns);
  const int64_t out_record = su::header_size + 2 * static_cast<int64_t>(ns);
  auto read_trace = [&](int32_t k) {
    resume_next([&] { files[input_file].read_at((k - 1) * in_record, &state.header_bytes[1], su::header_size); });
    resume_next([&] { files[input_file].read_at((k - 1) * in_record + su::header_size, &state.r4_trace[1], 4 * static_cast<size_t>(ns)); });
  };

  // The largest sample, signs counted: a large negative peak is not seen.
  float peak = 0;
  for (int32_t k = 1; k <= traces; k += scan_step(traces)) {
    read_trace(k);
    for (int32_t i = 1; i <= ns; ++i) peak = std::max(peak, state.r4_trace[static_cast<size_t>(i)]);
  }
  int16_t proposed = 0;
  resume_next([&] {
    if (peak == 0) throw RunTimeError(err::division_by_zero);
    proposed = to_i16(peak_target / peak);
  });
  InputBoxRequest ask;
  ask.prompt = "Enter the conversion factor";
  ask.default_text = field_text(proposed);
  int16_t factor = 0;
  resume_next([&] { factor = to_i16(leading_number(app.platform.input_box(ask))); });
  if (factor == 0) factor = 1;

  auto convert = [&](const void* samples) {
    compress_samples(static_cast<const float*>(samples), &state.i2_trace[1], ns, static_cast<float>(factor));
  };
  const RecordBuffers buffers{&state.header_bytes[1], &state.r4_trace[1], 4 * static_cast<size_t>(ns), &state.i2_trace[1],
                              2 * static_cast<size_t>(ns)};
  convert_records(files, input_file, output_file, traces, in_record, out_record, buffers, convert);
  resume_next([&] { files.close_all(); });

  double ratio = 0;
  resume_next([&] {
    const int64_t in_length = file_length(native_path(in));
    if (in_length == 0) throw RunTimeError(err::division_by_zero);
    ratio = std::floor(static_cast<double>(file_length(native_path(out))) / static_cast<double>(in_length) * 100) / 100;
  });
  message(app.platform, out + " has been recorded. Compression factor: " + number_text(ratio), Icon::information);
}

void SU_Uncompress(App& app) {
  SessionState& state = app.state;
  FileTable& files = app.files;
  const std::string in = chosen_file(app, "Qualtor compressed File  selection", "Seismic Unix (SU2)|*.SU2|All files|*.*|",
                                     "*.SU2", 1);
  if (in.empty()) return;
  const std::string out = in.substr(0, in.size() - 3) + "SU";
  // Counted by the expanded record size, as the compression counts: the
  // traces past that count are not expanded.
  const int32_t traces = start_job(app, in, out), ns = state.ns;
  const int64_t in_record = su::header_size + 2 * static_cast<int64_t>(ns);
  const int64_t out_record = su::header_size + 4 * static_cast<int64_t>(ns);
  // The factor is stored nowhere: the samples stay multiplied by it.
  auto convert = [&](const void* samples) {
    const auto* words = static_cast<const int16_t*>(samples);
    for (int32_t i = 0; i < ns; ++i) state.r4_trace[static_cast<size_t>(i) + 1] = words[i];
  };
  const RecordBuffers buffers{&state.header_bytes[1], &state.i2_trace[1], 2 * static_cast<size_t>(ns), &state.r4_trace[1],
                              4 * static_cast<size_t>(ns)};
  convert_records(files, input_file, output_file, traces, in_record, out_record, buffers, convert);
  resume_next([&] { files.close_all(); });
  int64_t in_length = 0, out_length = 0;
  resume_next([&] { in_length = file_length(native_path(in)); });
  resume_next([&] { out_length = file_length(native_path(out)); });
  message(app.platform, out + " has been recorded " + number_text(out_length) + " instead " + number_text(in_length),
          Icon::information);
}

}  // namespace tf
