// The batch and history editor: a text window on the file that a caller
// puts into editor_file, with find, replace, font and printing.
#pragma once

#include "frame/panel.h"

namespace tf {

// "Lines:" and the count of lines of a text, the last one counted even
// when it is empty.
std::string line_count_text(const std::string& text);

class editor : public Panel {
 public:
  explicit editor(App& app);
  void form_load() override;
  void open_Click();
  void save_Click();
  void Find_Click();
  void Replacement_Click();
  void Font_Click();
  void Print_Click();

 private:
  void load_text(const std::string& file);
  void Toolbar1_ButtonClick();
};

}  // namespace tf
