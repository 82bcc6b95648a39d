// Every panel model of the program, by the name that Lance and the buttons
// show it by.
#include "frame/batch_runner.h"
#include "frame/panel.h"
#include "frame/utility.h"
#include "importers/abem.h"
#include "importers/es1225.h"
#include "radar/dt1.h"
#include "radar/dzt.h"
#include "radar/ramac.h"

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
  app.panels.add("DZT", make<DZT>());
  app.panels.add("DZT2", make<DZT2>());
  app.panels.add("DT1", make<DT1>());
  app.panels.add("Radar_F", make<Radar_F>());
}

}  // namespace tf
