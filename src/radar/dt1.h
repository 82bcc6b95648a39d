// EKKO radar: a .DT1 record and its .HD text header into one SU file.
#pragma once

#include "frame/panel.h"

namespace tf {

class DT1 : public Panel {
 public:
  explicit DT1(App& app);
  void Choix_IP();
  void Choix_OP();
  void Convert();

 private:
  void read_header(const std::string& header_text);
  void info();
};

}  // namespace tf
