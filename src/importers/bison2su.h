// Bison 2 records through the outside converter Bison2SU: a one-line batch
// file of its command, one record a run.
#pragma once

#include "frame/panel.h"

namespace tf {

class Bison2su : public Panel {
 public:
  explicit Bison2su(App& app);
  void Choix_IP();
  void Choix_OP();
  void Convert();

 private:
  void info();
};

}  // namespace tf
