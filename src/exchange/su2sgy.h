// SU to SEG-Y through the Seismic Unix tools SEGYHDRS and SEGYWRITE, with
// SEGYWRITE's parameters on the panel.
#pragma once

#include "frame/panel.h"

namespace tf {

class SU2SGY : public Panel {
 public:
  explicit SU2SGY(App& app);

 private:
  void input_file();
  void output_file();
  void convert();
  void info();
};

}  // namespace tf
