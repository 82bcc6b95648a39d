// Many text files, one trace each as one value a line, into one SU file.
#pragma once

#include "frame/panel.h"

namespace tf {

class XASCII2SU : public Panel {
 public:
  explicit XASCII2SU(App& app);
  void select_input();
  void convert_xascii();

 private:
  void out_file();
  void info();
};

}  // namespace tf
