// The seismic file explorer: one header word of the first trace of an SU or
// SEG-Y file, or the value at any byte of any file, read without walking
// through the file.
#pragma once

#include <array>
#include <string_view>

#include "frame/panel.h"

namespace tf {

// The explorer's word list, in list order (row 1 first): the texts as the
// list shows them.
extern const std::array<std::string_view, 79> explorer_word_texts;

// Zero-based offset in the first trace header and width in bytes of a list
// row counted from 1; width 0 for the rows that cannot be read (72 to 79,
// or no row). Rows 31 to 37 read 4 bytes although their words are 2 wide.
struct ExplorerWord {
  int offset = 0;
  int width = 0;
};
ExplorerWord explorer_word(int row);

class pick : public Panel {
 public:
  explicit pick(App& app);
  void form_load() override;
  void Command1_Click();
  void Command2_Click();
  void Command3_Click();
  void Command4_Click();

 private:
  void show_file_size();
  void set_mode(bool other);
  void read_listed_word();
  void read_at_position();
};

}  // namespace tf
