// The bitmap digitiser: a picture of a map or a section with world
// coordinates on its edges; each click writes X, Y and Z to a text file and
// draws a line from the previous point.
#pragma once

#include <array>

#include "frame/panel.h"

namespace tf {

class digit : public Panel {
 public:
  explicit digit(App& app);
  void form_load() override;
  void form_unload() override;
  void Affiche_BMP();
  void xinfo();

  static constexpr int max_points = 1000;

 private:
  void read_settings();
  void write_settings();
  void Commandx1_Click();
  void recent_file_Click(const std::string& entry);
  void fin_Click();
  void set_scale();
  void Image2_Click();
  void Image2_MouseDown(MouseButton button, double x, double y);
  void Image2_MouseMove(double x, double y);
  void ask_number(const char* prompt, int16_t& setting);

  int16_t decimals_ = 3;
  int16_t line_width_ = 2;
  int32_t line_color_ = 0;
  // The digitising session.
  bool active_ = false;
  int16_t count_ = 0;
  std::vector<std::array<double, 4>> points_ = std::vector<std::array<double, 4>>(max_points + 1);
  double z_ = 0;
  std::string z_answer_;
  double previous_x_ = 0, previous_y_ = 0;
  std::string output_;
};

}  // namespace tf
