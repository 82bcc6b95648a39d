// The file selection text of the shared dialog, and the dialogs that every
// importer opens the same way.
#pragma once

#include <string>
#include <vector>

#include "frame/platform.h"

namespace tf {

// A table of 100 texts: pieces past index 99 are lost, the count keeps them.
inline constexpr int selection_capacity = 100;

struct Selection {
  std::vector<std::string> items;  // up to 100, index 0 the folder of a multiple choice
  int count = 0;                   // pieces found, lost ones included
};

// Cuts a text at its blanks; each piece ends at a blank, so the text is
// passed with a blank appended and a run of blanks gives empty pieces.
Selection cut_at_blanks(const std::string& text);

// The output-name dialog of the importers: "SU File name selection", *.SU.
// Gives the name that comes back (the start name on a cancel).
std::string output_name_dialog(Platform& platform, const std::string& initial_dir);

}  // namespace tf
