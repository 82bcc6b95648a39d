// Long records from short ones: each channel of an SU file of short records
// becomes one long trace, the traces of that channel laid end to end in
// time, overlapping samples cut first. No sample values are added.
#pragma once

#include "frame/panel.h"

namespace tf {

class Stack_Time : public Panel {
 public:
  explicit Stack_Time(App& app);
  void choose_input();
  void Process();

 private:
  std::string choose();
  void info();
  // Writes a batch text to batch_file and starts it through Run_Batch.
  void run_batch_text(std::string text);
};

}  // namespace tf
