// A text matrix (one row a time sample, one column a trace, comma-separated)
// into one SU file; optionally text exported from a GSSI DZT radar file.
// Also what the one-file-a-trace sibling shares with it.
#pragma once

#include <cstdint>
#include <string>

#include "frame/panel.h"
#include "su/su_record.h"

namespace tf {

class ASCII2SU : public Panel {
 public:
  explicit ASCII2SU(App& app);
  void select_input();
  void convert_ascii();

 private:
  void out_file();
  void info();
};

// The geometry typed in the panel: samples a trace, traces and the rate.
struct AsciiGeometry {
  int16_t samples = 0;
  int32_t traces = 0;
  int16_t rate = 0;
};

// Samples, traces and rate from Text3, Text5 and Text4; each that is 0 is
// asked for, in that order, until the answer isn't 0.
AsciiGeometry read_ascii_geometry(Panel& panel, Platform& platform);

// The tokens of a text file up to its end; a missing file is error 53.
int32_t count_tokens(const std::string& file);

// While the rate is 0, asked for with 100 offered; the answer goes to Text4.
void ask_for_rate(Panel& panel, Platform& platform, int16_t& rate);

// The output dialog of the text imports; its answer goes to Text2.
void choose_text_output(Panel& panel, Platform& platform);

// With an existing output the user chooses: Yes deletes it, No writes into
// the old file, which keeps its tail past the new data.
void ask_to_kill_output(Platform& platform, const std::string& file_out);

// The header of trace t (from 1) of a text import at the image's trace.
// Radar data are marked by nhs 95.
void put_text_trace_header(su::RecordImage& image, int32_t t, int16_t samples, int16_t rate, bool radar);

// The last box of a text import.
void report_text_conversion(Platform& platform, const std::string& file_out);

// The help box of a text import: its lines joined by line ends.
void show_text_help(Platform& platform, const char* const* lines, size_t count, const std::string& crlf);

}  // namespace tf
