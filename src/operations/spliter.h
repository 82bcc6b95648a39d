// Any file cut into parts of a chosen size (".spt"), and parts joined into
// the original file again. It knows nothing of seismic data.
#pragma once

#include "frame/panel.h"

namespace tf {

class spliter : public Panel {
 public:
  explicit spliter(App& app);
  void form_load() override;
  void Affiche_file(std::string& names);
  void Split();
  void Joint();

 private:
  void choose(const std::string& title, const std::string& field);
  void select_parts();
  Answer box(const std::string& text, Icon icon = Icon::none, Buttons buttons = Buttons::ok);
};

// The name of part `number` of `file`: the name less its last 4 characters,
// the two-digit number, the extension (what follows the first "." of the
// whole path) and ".spt".
std::string part_name(const std::string& file, int number);

}  // namespace tf
