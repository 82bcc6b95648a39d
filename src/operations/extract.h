// Trace extraction on a grid: every trace a row with a yes/no cell; the
// marked traces are copied into a new SU file.
#pragma once

#include "frame/panel.h"

namespace tf {

class Extract : public Panel {
 public:
  explicit Extract(App& app);
  void form_load() override;
  void regrid();

  // Back colours of the Extract cells.
  static constexpr int plain_color = 0xFFFFFF;
  static constexpr int mark_color = 0x80FF80;

 private:
  void input_file();
  void output_file();
  void fill_grid(const std::string& name);
  void grid_click();
  void extract();
  void mark(int row, bool yes);
  int32_t traces = 0;
};

}  // namespace tf
