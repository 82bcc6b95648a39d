// Two SU files of the same size combined sample by sample into a third:
// File 1 minus or plus File 2, each sign invertible; the headers are File 1's.
#pragma once

#include "frame/panel.h"

namespace tf {

class substract : public Panel {
 public:
  explicit substract(App& app);
  void form_load() override;
  enum class Operator { subtract, add };
  void Combine(Operator op);

 private:
  std::string choose();
  void info();
};

}  // namespace tf
