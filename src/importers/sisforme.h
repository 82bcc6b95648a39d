// Any regular binary record into SU, as the operator describes it: a file
// header, then each channel's trace header and samples of one type.
#pragma once

#include "frame/panel.h"

namespace tf {

class sisforme : public Panel {
 public:
  explicit sisforme(App& app);
  void Select_i();
  void Affiche_file(std::string& selection);
  void Calcul_gd_file();
  void Outputfile();
  void Convert();

 private:
  void info();
  int sample_width();  // W of the data type on: 0 for ASCII, nothing is read
};

}  // namespace tf
