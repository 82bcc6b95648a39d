// Ambrogeo records (*.dta): text header lines, then a table of samples, one
// row a time sample and 24 columns, into one SU file with the record's date
// and time in the time words.
#pragma once

#include "frame/panel.h"

namespace tf {

class Ambrogeo : public Panel {
 public:
  explicit Ambrogeo(App& app);
  void Select_i();
  void Convert();

 private:
  void info();
};

}  // namespace tf
