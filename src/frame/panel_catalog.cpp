// Every panel model of the program, by the name that Lance and the buttons
// show it by.
#include "frame/batch_runner.h"
#include "frame/panel.h"
#include "frame/utility.h"
#include "importers/abem.h"
#include "importers/es1225.h"
#include "operations/add_file.h"
#include "operations/add_su_files.h"
#include "operations/extract.h"
#include "operations/reversex.h"
#include "operations/trace_edits.h"

namespace tf {

namespace {
template <typename P>
PanelFactory make() {
  return [](App& app) { return std::make_unique<P>(app); };
}
}  // namespace

void register_all_panels(App& app) {
  app.panels.add("Utility", make<Utility>());
  app.routines["Zip_Files"] = Zip_Files;
  app.panels.add("es1225", make<es1225>());
  app.panels.add("abem", make<abem>());
  app.panels.add("Add_SU_files", make<Add_SU_files>());
  app.panels.add("Add_file", make<Add_file>());
  app.panels.add("Extract", make<Extract>());
  app.panels.add("reversex", make<reversex>());
  app.routines["Replace_Trace"] = Replace_Trace;
  app.routines["Modify_FBP"] = Modify_FBP;
}

}  // namespace tf
