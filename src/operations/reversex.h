// Channel reversal: inside chosen records of an SU file, the samples of a
// range of channels change places, in place; every header stays.
#pragma once

#include "frame/panel.h"

namespace tf {

class reversex : public Panel {
 public:
  explicit reversex(App& app);
  void form_load() override;
  void lecture_XFichier();

 private:
  void load_file();
  void read_geometry_start(const std::string& name);
  void reverse();
};

}  // namespace tf
