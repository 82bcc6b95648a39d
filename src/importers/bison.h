// Bison 5000 records (*.dat) into one SU file: a text header closed by a
// double ETX, then each channel's samples in groups of four behind a gain
// word.
#pragma once

#include "frame/panel.h"

namespace tf {

class Bison : public Panel {
 public:
  explicit Bison(App& app);
  void Select_i();
  void Header_Size();
  void Convert();

 private:
  void Outputfile();
  void info();
};

}  // namespace tf
