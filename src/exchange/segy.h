// The SEG-Y import panel: many SEG-Y field records into one SU file through
// SEGYREAD and SEGYCLEAN, one record a batch, the pieces joined by copy.
// The first record proposes the byte order; Test converts it alone and
// draws it on the panel's picture.
#pragma once

#include <string>

#include "frame/panel.h"

namespace tf {

class SEGY : public Panel {
 public:
  explicit SEGY(App& app);
  void form_load() override;
  void form_unload() override;

  void Select_i();
  void Test();
  void Convert();
  void Quick_Conversion();
  void Output_File();
  void Help();

 private:
  std::string program_file(const std::string& name);  // "\name" in the program's folder
  void enable(const std::string& control, bool enabled);
  void wait_seconds(double seconds);
  bool shell_batch(const std::string& batch);
  void convert_records(int16_t record_count, const std::string& numbers, const std::string& limits);
};

}  // namespace tf
