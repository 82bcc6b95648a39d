// The record appending module: up to 20 SU files added end to end, or a
// range of traces copied out of one SU file.
#pragma once

#include <string>
#include <vector>

#include "frame/panel.h"

namespace tf {

class Add_file : public Panel {
 public:
  explicit Add_file(App& app);
  void form_load() override;
  void Recherche_Nom();
  void Lecture_file2();
  void Choix_Output();

 private:
  void input_file();
  std::string choose_input(int flags);
  void show_range(const std::string& name);
  void start();
  void add_files();
  void extract_traces(int32_t first, int32_t last);
  // The parts of the selection (1 .. 20) and the full paths, 0 unused.
  std::vector<std::string> add_names = std::vector<std::string>(21);
  std::vector<std::string> add_paths = std::vector<std::string>(21);
};

}  // namespace tf
