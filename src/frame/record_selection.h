// The selection step that the field importers share with the ABEM panel:
// the record dialog, the list of records, their count and the proposed
// output name.
#pragma once

#include <string>

#include "frame/file_selection.h"
#include "frame/panel.h"

namespace tf {

struct RecordDialog {
  std::string title;
  std::string filter;
  std::string file_name;
};

// Every statement with failures skipped: `List1` gets the records, `count_field`
// their number, `Text2` the first name less three characters plus "SU".
// Gives the choice as read.
RecordChoice Select_records(App& app, Panel& panel, const RecordDialog& dialog, const std::string& count_field = "Text6");

// Records are opened for reading: a missing one is error 53, not a new
// empty file.
void open_record(FileTable& files, int number, const std::string& name);

}  // namespace tf
