// PASI LCM-12 records (*.asc): bare numbers, channel after channel, without
// a header, into one SU file; the geometry comes from the panel.
#pragma once

#include "frame/panel.h"

namespace tf {

class pasi : public Panel {
 public:
  explicit pasi(App& app);
  void Select_i();
  void Convert();

 private:
  void info();
};

}  // namespace tf
