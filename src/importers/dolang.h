// Dolang recordings, one ASCII file a channel (*.A01, *.A02 ...) and an info
// file *.ADT, into one SU file.
#pragma once

#include "frame/panel.h"

namespace tf {

class DOLANG : public Panel {
 public:
  explicit DOLANG(App& app);
  void Select_i();
  void Read_info_file();
  void Lecture_adt();
  void Choix_SU();
  void Convert();

 private:
  void help();
};

}  // namespace tf
