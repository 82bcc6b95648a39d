// Vibrator parameters written into every trace header of an SU file, in
// place: the samples and every other word stay as they are.
#pragma once

#include "frame/panel.h"

namespace tf {

class vibro : public Panel {
 public:
  explicit vibro(App& app);
  void form_load() override;
  void Command1_Click();  // Write data
  void Command2_Click();  // Info
  void Command3_Click();  // File

 private:
  void show_progress_bar(bool shown);
};

}  // namespace tf
