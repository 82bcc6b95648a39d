// The Convert panel: one form for six conversions chosen by the mode that
// the main panel leaves in conversion_mode. SEG-Y and SEG-D go through a
// batch file of Seismic Unix commands; the KGS formats are rewritten here,
// word by word.
#pragma once

#include <string>

#include "frame/panel.h"

namespace tf {

// The box that ends a finished conversion ("Conversion OK" unless the caller
// has its own text), closed by its timer after three
// seconds if the user has not pressed OK.
void converter_ok_box(Platform& platform, const std::string& text = "Conversion OK");

class Convert : public Panel {
 public:
  explicit Convert(App& app);
  void form_load() override;

  void Lecture();
  void Choix_out();
  void Convert_SEGY_2_SU();
  void Convert_SU_2_SEGY();
  void Convert_SEGD_2_SU();
  void Convert_KGSI_2_SU();
  void Convert_KGS_2_SU();
  void Convert_SU_2_KGS();

 private:
  void convert_clicked();
  bool entry_checks();
  void start_convert_batch(const std::string& text, const std::string& failure);
  void finish_kgs();
  int16_t ask_header_value(const std::string& prompt, const std::string& default_text);
  int32_t ask_source_depth();
};

}  // namespace tf
