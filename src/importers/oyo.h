// OYO McSEIS 170 records (*.org, SEG-1 with a fixed-column text header) into
// one SU file, with the record's header values in the trace headers.
#pragma once

#include "frame/panel.h"

namespace tf {

class oyo : public Panel {
 public:
  explicit oyo(App& app);
  void Select_i();
  void Convert();

 private:
  void out_file();
  void info();
};

}  // namespace tf
