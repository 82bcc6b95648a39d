// Vibroseis correlation: each field record of an uncorrelated SU file (the
// pilot sweep first, the channels behind it) is cut out, correlated with
// its pilot by the Seismic Unix tools through a batch file, and gathered
// into the correlated file.
#pragma once

#include "frame/panel.h"

namespace tf {

class vibroseis : public Panel {
 public:
  explicit vibroseis(App& app);
  void form_load() override;
  void lecture_non_correle();
  void Command1_Click();  // the uncorrelated file
  void Command2_Click();  // the correlated file
  void Command3_Click();  // the run, a record at a time by suwind
  void Command4_Click();  // Info
  // A run that cuts the records itself, trace by trace; no control starts it.
  void correlate_trace_wise();

 private:
  struct RunFields;
  std::string choose_file(bool save);
  bool read_run_fields(RunFields& run, const std::string& samples_field, const char* limit_message);
  void gather(int16_t counter, const std::string& result);
  void delete_work_files(std::initializer_list<const char*> names);
  std::string work(const char* name) const;
  void begin_run(const RunFields& run, int progress_min);
  void finish();
};

}  // namespace tf
