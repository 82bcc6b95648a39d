#include "operations/reversex.h"

#include <algorithm>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "operations/su_files.h"
#include "su/su_record.h"

namespace tf {

namespace {
// The fields that REVERSE reads, in its order, with the box of a 0.
struct Required {
  const char* control;
  const char* missing;
};
constexpr Required required[] = {
    {"Text2", "Channel number missing"},     {"Combo2", "First trace number missing"},
    {"Combo3", "Last trace number missing"}, {"Combo1", "1st shot number missing"},
    {"Combo4", "Last shot number missing"},
};
constexpr int file_number = 3;
constexpr int64_t largest_work_array = int64_t{1} << 30;
}  // namespace

reversex::reversex(App& owner) : Panel(owner, "reversex", "Reverse channels") {
  add(Kind::text, "Text1", "", "???");
  add(Kind::button, "Command1", "Input file").on_click = [this] { load_file(); };
  add(Kind::combo, "Combo1", "From Shot number", "0");
  add(Kind::combo, "Combo4", "to shot", "0");
  add(Kind::combo, "Combo2", "From geophone", "0");
  add(Kind::combo, "Combo3", "to geophone", "0");
  add(Kind::text, "Text2", "Channels", "0");
  add(Kind::button, "Command3", "REVERSE").on_click = [this] { reverse(); };
  add(Kind::progress, "ProgressBar1");
}

// ns and dt of the file, opened as file 3 for what follows.
void reversex::read_geometry_start(const std::string& name) {
  int16_t ns = 0, dt = 0;
  resume_next([&] { first_ns_dt(open_existing(files, file_number, name), ns, dt); });
  state.ns = ns;
  state.dt = dt;
}

void reversex::form_load() {
  set_text("Text1", state.current_file);
  lecture_XFichier();
}

void reversex::load_file() {
  set_text("Text1", record_dialog(platform, "Load ", "Seismic Unix (SU)|*.SU|All files|*.*|", "*.SU", state.data_folder, 0));
  lecture_XFichier();
}

// Channels per record from tracf, narrowed to 16 bits: the count rises
// until tracf falls back at the next record. Each reading adds its items to
// the lists, behind those of the readings before.
void reversex::lecture_XFichier() {
  const std::string name = text("Text1");
  if (name.size() < 5 || File_Exists(name) == 0) return;
  read_geometry_start(name);
  // The record size is a 16-bit sum: past 8131 samples nb_traces keeps its value.
  resume_next([&] {
    const int16_t size = i16_add(i16_mul(state.ns, 4), su::header_size);
    if (size == 0) throw RunTimeError(err::division_by_zero);
    state.nb_traces = to_i32(static_cast<double>(files[file_number].length()) / size);
  });
  state.nb_channels = 0;
  int16_t value = 0, first_value = 0;
  for (int32_t k = 1; k <= state.nb_traces; ++k) {
    resume_next([&] {
      value = to_i16(su::read_word(files[file_number], su::trace_position(k, state.ns), su::word("tracf")));
    });
    if (k == 1) first_value = value;
    if (value > state.nb_channels) state.nb_channels = value;
    if (k == 5 && value == first_value) {
      state.nb_channels = 0;  // one tracf for all traces: no known channel count
      break;
    }
    if (value < state.nb_channels) break;
  }
  resume_next([&] { files.close_all(); });
  int32_t records = 0;
  resume_next([&] {
    if (state.nb_channels == 0) throw RunTimeError(err::division_by_zero);
    records = to_i32(static_cast<double>(state.nb_traces) / state.nb_channels);
  });
  for (int32_t r = 1; r <= records; ++r) {
    add_item("Combo1", number_text(r));
    add_item("Combo4", number_text(r));
  }
  for (int16_t c = 1; c <= state.nb_channels; ++c) {
    add_item("Combo2", number_text(c));
    add_item("Combo3", number_text(c));
  }
  // The selections go by index over the whole lists.
  resume_next([&] { select_item("Combo1", 0); });
  resume_next([&] { select_item("Combo4", records - 1); });
  resume_next([&] { select_item("Combo2", 0); });
  resume_next([&] { select_item("Combo3", state.nb_channels - 1); });
  set_text("Text2", field_text(state.nb_channels));
}

void reversex::reverse() {
  int16_t numbers[std::size(required)] = {};
  for (size_t i = 0; i < std::size(required); ++i) {
    resume_next([&] { numbers[i] = field_i16(text(required[i].control)); });
    if (numbers[i] == 0) {
      message(platform, required[i].missing);
      return;
    }
  }
  state.nb_channels = numbers[0];
  state.first_trace = numbers[1];
  state.last_trace = numbers[2];
  const int16_t first_record = numbers[3], last_record = numbers[4];
  const std::string name = text("Text1");
  read_geometry_start(name);
  set_progress_range("ProgressBar1", first_record, last_record);
  const int64_t ns = std::max(state.ns, 0);
  const int64_t size = su::header_size + 4 * ns;
  int64_t file_end = 0;
  resume_next([&] { file_end = files[file_number].length(); });
  for (int32_t n = first_record; n <= last_record; ++n) {
    if (first_record != last_record) set_progress("ProgressBar1", n);
    // The range may reach into the next record: the arithmetic is not
    // bound to the record.
    const int64_t first = state.first_trace + int64_t{state.nb_channels} * (n - 1);
    const int64_t last = state.last_trace + int64_t{state.nb_channels} * (n - 1);
    if (last < first) continue;  // an empty range: nothing is read or written
    // An array past what the platform can hold is not made (error 7): the
    // record is passed over.
    if ((last - first + 1) * size > largest_work_array) continue;
    // A range wholly past the end of the file holds nothing to reverse: it
    // is passed over rather than growing the file with traces of zeros.
    if ((std::max<int64_t>(first, 1) - 1) * size >= file_end) continue;
    // Traces before the first of the file read nothing (their columns stay
    // 0) and take no write.
    const auto count = static_cast<size_t>(last - first + 1);
    const auto skipped = static_cast<size_t>(std::clamp<int64_t>(1 - first, 0, last - first + 1));
    const size_t samples = static_cast<size_t>(4 * ns), step = static_cast<size_t>(size);
    const int64_t start = (first - 1 + static_cast<int64_t>(skipped)) * size;
    // The records of the range in one read; samples past the end read as 0.
    std::vector<uint8_t> span(count * step, 0);
    resume_next([&] { files[file_number].read_at(start, span.data() + skipped * step, (count - skipped) * step); });
    // Columns from the last to the first go to the traces in rising order:
    // only the samples move, each header is written back as it was.
    std::vector<uint8_t> reversed = span;
    for (size_t t = 0; t < count; ++t)
      std::copy_n(span.begin() + static_cast<std::ptrdiff_t>((count - 1 - t) * step + su::header_size), samples,
                  reversed.begin() + static_cast<std::ptrdiff_t>(t * step + su::header_size));
    if (skipped < count)
      resume_next([&] { files[file_number].write_at(start, reversed.data() + skipped * step, (count - skipped) * step); });
  }
  resume_next([&] { files.close(file_number); });
  // The answer changes nothing.
  message(platform, name + " has been updated", Icon::none, Buttons::yes_no);
}

}  // namespace tf
