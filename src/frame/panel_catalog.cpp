// Every panel model of the program, by the name that Lance and the buttons
// show it by.
#include "frame/batch_runner.h"
#include "frame/panel.h"
#include "exchange/convert.h"
#include "exchange/segy.h"
#include "exchange/su2sgy.h"
#include "frame/utility.h"
#include "importers/abem.h"
#include "importers/ambrogeo.h"
#include "importers/bison.h"
#include "importers/bison2su.h"
#include "importers/es1225.h"
#include "viewers/digit.h"
#include "viewers/editor.h"
#include "viewers/handy_viewer.h"
#include "viewers/pick.h"
#include "importers/ascii2su.h"
#include "importers/es1225.h"
#include "importers/oyo.h"
#include "importers/pasi.h"
#include "importers/segb.h"
#include "importers/xascii2su.h"
#include "operations/segy_extract.h"
#include "operations/add_file.h"
#include "operations/add_su_files.h"
#include "operations/extract.h"
#include "operations/reversex.h"
#include "operations/trace_edits.h"
#include "exports/first_breaks.h"
#include "exports/text_exports.h"
#include "vibroseis/vibro.h"
#include "vibroseis/vibroseis.h"
#include "operations/file_size.h"
#include "operations/rezize.h"
#include "operations/spliter.h"
#include "operations/stack_time.h"
#include "operations/su_compression.h"
#include "operations/substract.h"
#include "importers/dolang.h"
#include "importers/sisforme.h"
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
  app.panels.add("sisforme", make<sisforme>());
  app.panels.add("DOLANG", make<DOLANG>());
  app.panels.add("es1225", make<es1225>());
  app.panels.add("abem", make<abem>());
  app.panels.add("Bison", make<Bison>());
  app.panels.add("Ambrogeo", make<Ambrogeo>());
  app.panels.add("pasi", make<pasi>());
  app.panels.add("Bison2su", make<Bison2su>());
  app.panels.add("SEGB", make<SEGB>());
  app.panels.add("pick", make<pick>());
  app.panels.add("editor", make<editor>());
  app.panels.add("digit", make<digit>());
  app.panels.add("HandyViewer", make<HandyViewer>());
  app.panels.add("oyo", make<oyo>());
  app.panels.add("ASCII2SU", make<ASCII2SU>());
  app.panels.add("XASCII2SU", make<XASCII2SU>());
  app.panels.add("Convert", make<Convert>());
  app.panels.add("SU2SGY", make<SU2SGY>());
  app.panels.add("SEGY", make<SEGY>());
  app.routines["Extract_SEGY"] = Extract_SEGY;
  app.panels.add("Add_SU_files", make<Add_SU_files>());
  app.panels.add("Add_file", make<Add_file>());
  app.panels.add("Extract", make<Extract>());
  app.panels.add("reversex", make<reversex>());
  app.routines["Replace_Trace"] = Replace_Trace;
  app.routines["Modify_FBP"] = Modify_FBP;
  app.panels.add("vibro", make<vibro>());
  app.panels.add("vibroseis", make<vibroseis>());
  app.routines["su2ascii2"] = su2ascii2;
  app.routines["su2Ascii"] = su2Ascii;
  app.routines["Convert_2_X_Y_Z"] = Convert_2_X_Y_Z;
  app.routines["Write_FBP"] = Write_FBP;
  app.routines["Write_Rayfract"] = Write_Rayfract;
  app.panels.add("rezize", make<rezize>());
  app.panels.add("substract", make<substract>());
  app.panels.add("Stack_Time", make<Stack_Time>());
  app.panels.add("FileSize", make<FileSize>());
  app.panels.add("spliter", make<spliter>());
  app.routines["SU_Compress"] = SU_Compress;
  app.routines["SU_Uncompress"] = SU_Uncompress;
  app.panels.add("DZT", make<DZT>());
  app.panels.add("DZT2", make<DZT2>());
  app.panels.add("DT1", make<DT1>());
  app.panels.add("Radar_F", make<Radar_F>());
}

}  // namespace tf
