// The records of an SU file resized by one Seismic Unix command: their time
// length, their samples and sample rate, or their channels. The tab in front
// chooses the change; the panel only writes and starts the batch.
#pragma once

#include "frame/panel.h"

namespace tf {

class rezize : public Panel {
 public:
  explicit rezize(App& app);
  void form_load() override;
  void read_input(const std::string& file);
  void Go();

 private:
  std::string choose(bool save);
  void new_recording_time();
};

}  // namespace tf
