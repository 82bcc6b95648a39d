// Every panel model of the program, by the name that Lance and the buttons
// show it by.
#include "frame/batch_runner.h"
#include "frame/panel.h"
#include "frame/utility.h"
#include "importers/abem.h"
#include "importers/es1225.h"
#include "operations/file_size.h"
#include "operations/rezize.h"
#include "operations/spliter.h"
#include "operations/stack_time.h"
#include "operations/su_compression.h"
#include "operations/substract.h"

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
  app.panels.add("rezize", make<rezize>());
  app.panels.add("substract", make<substract>());
  app.panels.add("Stack_Time", make<Stack_Time>());
  app.panels.add("FileSize", make<FileSize>());
  app.panels.add("spliter", make<spliter>());
  app.routines["SU_Compress"] = SU_Compress;
  app.routines["SU_Uncompress"] = SU_Uncompress;
}

}  // namespace tf
