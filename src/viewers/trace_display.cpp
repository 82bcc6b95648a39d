#include "viewers/trace_display.h"

#include <algorithm>
#include <cmath>

#include "frame/conventions.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

namespace {

constexpr int lane_width = 20;
constexpr int reference_width = 480;  // the width by which pixels per unit are measured
constexpr float trace_peak = 10;      // the greatest positive sample reaches half a lane
constexpr int32_t black = 0;
constexpr int32_t grey = 0x808080;
// The ends of the point arrays: past them the curve stops growing.
constexpr size_t line_capacity = 10000;
constexpr size_t fill_capacity = 20000;

void add_point(std::vector<PixelPoint>& points, size_t capacity, int32_t x, int32_t y) {
  if (points.size() < capacity) points.push_back({x, y});
}

// A pixel coordinate; a picture without a size gives none.
int32_t pixel(double value) {
  if (!std::isfinite(value) || std::abs(value) > 2e9) return 0;
  return static_cast<int32_t>(round_half_even(value));
}

}  // namespace

void Display_SU(App& app, Panel& panel, std::string& file) {
  FileTable& files = app.files;
  panel.select_tab("SSTab1", 1);
  resume_next([&] { files.close(1); });
  resume_next([&] { files.open(1, native_path(file)); });
  int16_t ns = 0;
  resume_next([&] { files[1].read_value(su::word("ns").offset, ns); });
  resume_next([&] { files[1].read_value(su::word("dt").offset, app.state.dt); });
  if (ns == 0) {
    resume_next([&] { files.close_all(); });
    return;
  }
  int16_t traces = 0;
  resume_next([&] { traces = to_i16(leading_number(panel.text("Text5"))); });
  const int32_t record_size = int32_t{ns} * 4 + su::header_size;
  std::vector<float>& samples = app.state.r4_trace;
  samples.assign(static_cast<size_t>(std::max<int16_t>(ns, 0)), 0.0f);

  Control& ecran = panel["ecran"];
  ecran.pen_color = black;
  ecran.fill_color = grey;
  panel.clear_picture("ecran");
  panel.scale_picture("ecran", lane_width, 1, (traces + 1) * lane_width, ns);
  // Samples per pixel down, units per pixel across: the drawing goes in
  // pixels, straight, not through the picture's user-scale calls.
  const float y_factor = static_cast<float>(ecran.scale_height / ecran.picture_height);
  const float x_factor = static_cast<float>(ecran.scale_width / ecran.picture_width);

  const double amplitude = leading_number(panel.text("Text13"));
  std::vector<PixelPoint> line, fill;
  line.reserve(std::min<size_t>(samples.size(), line_capacity));
  float trace_factor = 0;  // a trace with nothing positive keeps the one before
  float a_before = 0;
  bool lobe_open = false;
  for (int32_t i = 1; i <= traces; ++i) {
    resume_next([&] { files[1].read_block(int64_t{i - 1} * record_size + su::header_size, samples); });
    float peak = 0;
    for (float s : samples) peak = std::max(peak, s);
    if (peak != 0) trace_factor = trace_peak / peak;
    const int32_t centre = (i - 1) * lane_width + lane_width / 2;
    const int32_t x0 = pixel(centre / static_cast<double>(x_factor));
    line.clear();
    float k = 1;
    for (float s : samples) {
      const float a = static_cast<float>(s * trace_factor * amplitude);
      const int32_t x = pixel((centre + a) / x_factor);
      const int32_t y = pixel(k / y_factor);
      if (k == 1 && a > 0) add_point(fill, fill_capacity, x0, y);
      if (a_before <= 0 && a > 0) {
        add_point(fill, fill_capacity, x0, y);
        lobe_open = true;
      }
      if (a > 0 && lobe_open) add_point(fill, fill_capacity, x, y);
      if (a_before > 0 && a <= 0) {
        add_point(fill, fill_capacity, x0, y);
        lobe_open = false;
        panel.draw_shape("ecran", true, fill);
        fill.clear();
      }
      add_point(line, line_capacity, x, y);
      a_before = a;
      k += 1;
    }
    // A lobe still open at the trace's end is closed up to the top of the
    // picture on the trace's base line, and shows as a line.
    add_point(fill, fill_capacity, x0, 0);
    panel.draw_shape("ecran", false, line);
    panel.draw_shape("ecran", false, fill);
    fill.clear();
  }
  resume_next([&] { files.close_all(); });
  ecran.pointer = Pointer::cross;
  panel.refresh("ecran");
}

void ecran_mouse_move(App& app, Panel& panel, double x, double y) {
  const double trace = std::floor(x / lane_width);
  const double time = app.state.dt * y / 1000;
  panel.set_tooltip("ecran", number_text(time) + " ms Trace=" + number_text(trace));
}

}  // namespace tf
