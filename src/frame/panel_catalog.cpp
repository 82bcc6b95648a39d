// Every panel model of the program, by the name that Lance and the buttons
// show it by.
#include "frame/batch_runner.h"
#include "frame/panel.h"
#include "frame/utility.h"
#include "importers/abem.h"
#include "importers/es1225.h"
#include "exports/first_breaks.h"
#include "exports/text_exports.h"
#include "vibroseis/vibro.h"
#include "vibroseis/vibroseis.h"

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
  app.panels.add("vibro", make<vibro>());
  app.panels.add("vibroseis", make<vibroseis>());
  app.routines["su2ascii2"] = su2ascii2;
  app.routines["su2Ascii"] = su2Ascii;
  app.routines["Convert_2_X_Y_Z"] = Convert_2_X_Y_Z;
  app.routines["Write_FBP"] = Write_FBP;
  app.routines["Write_Rayfract"] = Write_Rayfract;
}

}  // namespace tf
