// Merge SU files: many SU files of a line appended, byte for byte, into one.
#pragma once

#include "frame/panel.h"

namespace tf {

class Add_SU_files : public Panel {
 public:
  explicit Add_SU_files(App& app);
  void Affiche_file(const std::string& selection);

 private:
  void select_files();
  void append_files();
  void help();
  void pointers(Pointer pointer);
  int16_t file_count = 0;
};

}  // namespace tf
