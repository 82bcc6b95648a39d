// SEG-B records (*.sgb): the panel and its file list; the conversion itself
// is offered on request only.
#pragma once

#include "frame/panel.h"

namespace tf {

class SEGB : public Panel {
 public:
  explicit SEGB(App& app);
  void Select_i();
  void Convert();
};

}  // namespace tf
