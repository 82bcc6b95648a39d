// ES-1225 (SEG-1) seismograph records, one record a file, into one SU file.
#pragma once

#include "frame/panel.h"

namespace tf {

class es1225 : public Panel {
 public:
  explicit es1225(App& app);
  void form_load() override;
  void Select_i();
  void Affiche_file(const std::string&) {}
  void Convert();

 private:
  void out_file();
  void info();
};

}  // namespace tf
