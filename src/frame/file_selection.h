// The file selection text of the shared dialog, and the dialogs that every
// importer opens the same way.
#pragma once

#include <string>
#include <vector>

#include "frame/platform.h"

namespace tf {

struct Control;
class FileTable;

// A table of 100 texts: pieces past index 99 are lost, the count keeps them.
inline constexpr int selection_capacity = 100;

struct Selection {
  std::vector<std::string> items;  // up to 100, index 0 the folder of a multiple choice
  int count = 0;                   // pieces found, lost ones included
};

// Cuts a text at its blanks; each piece ends at a blank, so the text is
// passed with a blank appended and a run of blanks gives empty pieces.
Selection cut_at_blanks(const std::string& text);

// The other walk of a selection text, that of the generic importer: the text
// behind the last blank is a piece too (no blank need be appended), and the
// walk takes at most `capacity` pieces. `text` is consumed: it is left with
// the last piece, or with what lies past the pieces taken.
Selection take_pieces(std::string& text, int capacity);

// The record dialog of the importers: multiple selection (flags 512), the
// data folder first; gives the one text that comes back.
std::string records_dialog(Platform& platform, const std::string& title, const std::string& filter,
                           const std::string& file_name, const std::string& data_folder, int filter_index = 0);
// The same for one file (the radar and exchange panels choose the first
// filter); a cancel gives back `file_name`.
std::string record_dialog(Platform& platform, const std::string& title, const std::string& filter,
                          const std::string& file_name, const std::string& data_folder, int filter_index = 1,
                          int flags = 0);

// A dialog text read as the importers read it. No blank: one file. With a
// blank, the folder and names, cut at the blanks (a single path holding a
// blank is taken for several files too). Some panels have no path for one
// file: they always cut the text, so that a single choice is a folder
// without names and lists nothing.
enum class SingleChoice { listed, cut_like_several };
struct RecordChoice {
  bool multiple = false;
  std::vector<std::string> entries;  // for List1: the single text with its blank, or folder + sep + name
  int count = 0;                     // the number of files: 1, or the pieces less the folder
  // The single name with its blanks removed, or folder + sep + first name:
  // the name the output is proposed from.
  std::string name;
  std::string folder;  // the first piece when the text is cut: the folder, or the one path
};
RecordChoice read_record_choice(const std::string& dialog_text, SingleChoice single = SingleChoice::listed);

// A name less its last three characters, plus "SU"; a name shorter than
// three characters fails with error 5.
std::string su_name(const std::string& name);

// Entry `index` of a list; past the end the list gives an empty text.
std::string list_entry(const Control& list, int index);

// A name as the file system takes it: trailing blanks are dropped, and a
// wildcard makes a bad file name (error 52), as on the desktop the records
// come from.
std::string file_system_name(const std::string& name);

// Opens a record for reading: a missing one is error 53, not a new empty
// file.
void open_record(FileTable& files, int number, const std::string& name);

// A name found as the desktop's file system finds it, letters of either
// case: each part of the path that does not stand as written is looked up
// in its folder without regard to case. The name as written when nothing
// matches.
std::string case_blind_name(const std::string& name);

// The output-name dialog of the importers: "SU File name selection", *.SU.
// Gives the name that comes back (the start name on a cancel).
inline constexpr const char* su_output_title = "SU File name selection";
inline constexpr const char* su_output_filter = "Seismic File |*.SU|All files|*.*|";
std::string output_name_dialog(Platform& platform, const std::string& initial_dir,
                               const std::string& title = su_output_title,
                               const std::string& filter = su_output_filter);

}  // namespace tf
