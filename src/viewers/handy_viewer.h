// The beginning of a McSeis-3 importer: it lists the records, proposes the
// output name and reads the sample interval of the first one. Convert and
// Output file have no action yet.
#pragma once

#include "frame/panel.h"

namespace tf {

class HandyViewer : public Panel {
 public:
  explicit HandyViewer(App& app);
  void Select_i();
};

}  // namespace tf
