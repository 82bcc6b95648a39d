// The size of an SU or SEG-Y file worked out from the survey's geometry, with
// the recording time and Nyquist frequency of the trace length chosen.
#pragma once

#include "frame/panel.h"

namespace tf {

class FileSize : public Panel {
 public:
  explicit FileSize(App& app);
  void form_load() override;
  void calculB();
};

}  // namespace tf
