// GSSI ground-penetrating radar: the DZT panel reads a .DZT file itself, the
// DZT2 panel guides through the vendor's ASCII export and the ASCII importer.
#pragma once

#include "frame/panel.h"

namespace tf {

class DZT : public Panel {
 public:
  explicit DZT(App& app);
  void form_load() override;
  void Choix_IP();
  void Choix_OP();
  void Convert();

 private:
  void read_header();
  void traces_per_scan_changed();
  void info();
};

class DZT2 : public Panel {
 public:
  explicit DZT2(App& app);

 private:
  void start_ascii_export();
};

}  // namespace tf
