// ABEM Terralock Mark 3 records (*.abm) into one SU file, a trace a channel,
// file after file.
#pragma once

#include "frame/panel.h"

namespace tf {

class abem : public Panel {
 public:
  explicit abem(App& app);
  void Select_i();
  void Convert();

 private:
  void read_record_header(const std::string& name);
  void out_file();
  void info();
};

}  // namespace tf
