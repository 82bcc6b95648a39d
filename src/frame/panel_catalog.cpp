// Every panel model of the program, by the name that Lance and the buttons
// show it by.
#include "frame/batch_runner.h"
#include "frame/panel.h"
#include "exchange/convert.h"
#include "exchange/su2sgy.h"
#include "frame/utility.h"
#include "importers/abem.h"
#include "importers/es1225.h"
#include "operations/segy_extract.h"

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
  app.panels.add("Convert", make<Convert>());
  app.panels.add("SU2SGY", make<SU2SGY>());
  app.routines["Extract_SEGY"] = Extract_SEGY;
}

}  // namespace tf
