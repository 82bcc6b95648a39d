#include "importers/segb.h"

#include "frame/helpers.h"
#include "frame/paths.h"
#include "frame/record_selection.h"

namespace tf {

SEGB::SEGB(App& owner) : Panel(owner, "SEGB", "SEG_B to SU") {
  add(Kind::button, "Command5", "Press here to select SEG-B files").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text3", "Trace number per record", "12").tooltip = "Correct here the trace number if necesssary";
  add(Kind::text, "Text4", "Number of sample", "512").tooltip = "Correct hre the number of sample per trace";
  add(Kind::text, "Text5", "Sample rate (micros)", "500").tooltip = "Don't forget the sample rate !!!";
  add(Kind::text, "Text6", "Number of files to convert", "1").tooltip = "Type here the number of file to convert";
  add(Kind::text, "Text2", "", " ").tooltip = "This will be the SU file";
  add(Kind::label, "Label9", "Input file size");
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command2", "Info");         // nothing attached
  add(Kind::button, "Command4", "Output file");  // nothing attached
  add(Kind::progress, "ProgressBar1");           // no step moves it
}

// Every statement runs with failures skipped. A single file is cut like
// several: it lists nothing. The count goes into the sample rate box.
void SEGB::Select_i() {
  const RecordChoice choice =
      Select_cut_records(app, *this, {"SEG-B file selection", "Record |*.sgb|All files|*.*|", "*.sgb"});
  set_text("Text5", field_text(choice.count));
  set_text("Text2", choice.folder + sep + "my_profil.SU");
}

// No SEG-B reader exists: the panel only answers.
void SEGB::Convert() { message(platform, "Available on request", Icon::stop); }

}  // namespace tf
