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

// The walk of the OYO family: the record dialog, its text always cut at the
// blanks (a single choice lists nothing), the records into `List1`. Every
// statement with failures skipped; gives the choice as read.
RecordChoice Select_cut_records(App& app, Panel& panel, const RecordDialog& dialog);

}  // namespace tf
