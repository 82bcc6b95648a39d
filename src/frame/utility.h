// The start window: option table, buttons of the SU utilities, Lance.
#pragma once

#include "frame/panel.h"

namespace tf {

class Utility : public Panel {
 public:
  explicit Utility(App& app);
  void form_load() override;
  void form_unload() override;
  void Lance();

 private:
  void hover_control(const std::string& control, const std::string& hover_caption, const std::string& help);
  void unbold(const std::vector<std::string>& list);
  void option1_s2conv();
  void option23_ascii();
  void info();
  void tab_changed();
  void quit();
  void start_button_program(const std::string& control);
};

}  // namespace tf
