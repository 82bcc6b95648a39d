#include "viewers/digit.h"

#include <algorithm>

#include "frame/helpers.h"
#include "frame/paths.h"

namespace tf {

namespace {
const char* const settings_file = "plotdig.ini";
const char* const settings_section = "Digitizalisation";
const char* const default_recent = "c:\\vedra\\data\\aire.bmp";
constexpr int name_buffer = 100, value_buffer = 50;

// Fields and their keys in the settings, with the defaults.
struct FieldSetting {
  const char* key;
  const char* control;
  const char* fallback;
};
constexpr FieldSetting field_settings[] = {
    {"P2", "TextX2", "0 "}, {"P3", "TextX3", "0 "}, {"P4", "TextX4", "100 "}, {"P5", "TextX5", "100"}};
const char* const recent_entries[] = {"f1", "f2", "f3"};
const char* const recent_keys[] = {"F1", "F2", "F3"};

const char* const help_lines[] = {
    " How to use PLOTDIG Module",
    "Load any BMP or JPG file  ",
    "Enter X min and max, Y min and max  ",
    "Then double click to start digitalization  ",
    "Then click on the point you need X,Y coordinates  ",
    "Press right mouse button to end",
    "  ",
};
}  // namespace

digit::digit(App& owner) : Panel(owner, "digit", "Brenholt Digitizing tool ") {
  auto menu = [this](const char* name, const char* caption) -> Control& { return add(Kind::menu, name, caption); };
  auto entry = [this](const char* name, const char* caption, const char* parent) -> Control& {
    auto& e = add(Kind::menu_item, name, caption);
    e.parent = parent;
    return e;
  };
  menu("of", "Open file");
  entry("sep1", "-", "of");
  for (int i = 0; i < 3; ++i) {
    const std::string name = recent_entries[i];
    entry(recent_entries[i], ("file" + std::to_string(i + 1)).c_str(), "of").on_click = [this, name] {
      recent_file_Click(name);
    };
  }
  entry("sep2", "-", "of");
  entry("fin", "END", "of").on_click = [this] { fin_Click(); };
  menu("util", "Utility");
  entry("dec", "decimal number", "util").on_click = [this] { ask_number("Enter the number of decimale", decimals_); };
  entry("lw", "Line width", "util").on_click = [this] { ask_number("Enter the line width (1-10)", line_width_); };
  entry("L_color", "Line color", "util").on_click = [this] {
    line_color_ = platform.color_dialog("Qualtor Dead trace Color selection", line_color_);
  };
  menu("h", "Help").on_click = [this] { xinfo(); };

  add(Kind::text, "TextX1").locked = true;
  add(Kind::button, "Commandx1", "Select  a  BMP").on_click = [this] { Commandx1_Click(); };
  auto scale_field = [this](const char* name, const char* label, const char* value, bool digits_only) {
    auto& f = add(Kind::text, name, label, value);
    if (digits_only) f.key_filter = "0123456789";  // only X min can take a sign or a fraction
    f.on_change = [this] { set_scale(); };
  };
  scale_field("TextX2", "X min=", "0", false);
  scale_field("TextX4", "X max =", "100", true);
  scale_field("TextX3", "Y min =", "0", true);
  scale_field("TextX5", "Y max =", "100", true);
  add(Kind::check, "CheckX1", "Ask for Z");
  add(Kind::text, "TextX7", "Datum", "0").tooltip = "Z value will be substracted from the datum value";
  // The viewport with its scroll bars and the picture inside it are one
  // scrolled picture on the desktop.
  auto& picture = add(Kind::picture, "Image2");
  picture.on_click = [this] { Image2_Click(); };
  picture.on_mouse_down = [this](MouseButton b, double x, double y) { Image2_MouseDown(b, x, y); };
  picture.on_mouse_move = [this](double x, double y) { Image2_MouseMove(x, y); };
  add(Kind::text, "TextX6", "").locked = true;
  add(Kind::button, "CommandX2", "Info").on_click = [this] { xinfo(); };
}

void digit::form_load() { read_settings(); }

void digit::form_unload() { write_settings(); }

void digit::read_settings() {
  for (int i = 0; i < 3; ++i)
    set_caption(recent_entries[i],
                platform.profile_string(settings_section, recent_keys[i], default_recent, name_buffer, settings_file));
  for (const auto& f : field_settings)
    set_text(f.control, platform.profile_string(settings_section, f.key, f.fallback, value_buffer, settings_file));
  auto setting = [this](const char* key, const char* fallback) {
    return leading_number(platform.profile_string(settings_section, key, fallback, value_buffer, settings_file));
  };
  resume_next([&] { decimals_ = to_i16(setting("P6", "3")); });
  resume_next([&] { line_width_ = to_i16(setting("P7", "2")); });
  resume_next([&] { line_color_ = to_i32(setting("P8", "0")); });
}

void digit::write_settings() {
  for (int i = 0; i < 3; ++i)
    platform.write_profile_string(settings_section, recent_keys[i], (*this)[recent_entries[i]].caption, settings_file);
  for (const auto& f : field_settings) platform.write_profile_string(settings_section, f.key, text(f.control), settings_file);
  platform.write_profile_string(settings_section, "P6", field_text(decimals_), settings_file);
  platform.write_profile_string(settings_section, "P7", field_text(line_width_), settings_file);
  platform.write_profile_string(settings_section, "P8", field_text(line_color_), settings_file);
}

void digit::Commandx1_Click() {
  FileDialogRequest ask;
  ask.title = "BMP File selection";
  ask.filter = "BMP File |*.BMP|JPG File |*.JPG|WMF File |*.WMF|All files|*.*|";
  ask.file_name = "*.BMP";
  set_text("TextX1", platform.file_dialog(ask));
  Affiche_BMP();
}

void digit::recent_file_Click(const std::string& entry) {
  state.current_file = (*this)[entry].caption;
  if (File_Exists(state.current_file) == 1) set_text("TextX1", state.current_file);
  Affiche_BMP();
}

void digit::fin_Click() {
  write_settings();
  platform.quit();  // the whole program ends here, whatever is open
}

void digit::Affiche_BMP() {
  state.current_file = text("TextX1");
  set_pointer(Pointer::hourglass);
  auto& picture = (*this)["Image2"];
  int width = 0, height = 0;
  // A picture that cannot be loaded leaves the former one.
  if (platform.load_picture(name(), "Image2", native_path(state.current_file), width, height)) {
    picture.text = state.current_file;
    picture.picture_width = width;
    picture.picture_height = height;
    picture.lines.clear();
    changed(picture);
  }
  const std::string& file = state.current_file;
  size_t cut = file.find_last_of("\\/");
  state.data_folder = cut == std::string::npos ? file.substr(0, 2) : file.substr(0, cut + 1);
  set_pointer(Pointer::arrow);
  set_caption("f3", (*this)["f2"].caption);
  set_caption("f2", (*this)["f1"].caption);
  set_caption("f1", file);
  set_scale();
}

// Top left corner at X min and Y max, bottom right at X max and Y min:
// clicks arrive in world units, Y rising upward.
void digit::set_scale() {
  auto& picture = (*this)["Image2"];
  const double x_min = leading_number(text("TextX2")), x_max = leading_number(text("TextX4"));
  const double y_min = leading_number(text("TextX3")), y_max = leading_number(text("TextX5"));
  if (x_max == x_min || y_max == y_min) return;  // an invalid scale is refused
  picture.scale_left = x_min;
  picture.scale_top = y_max;
  picture.scale_width = x_max - x_min;
  picture.scale_height = y_min - y_max;
  changed(picture);
}

void digit::Image2_MouseMove(double x, double y) {
  resume_next([&] { set_text("TextX6", "X=" + number_text(to_i16(x)) + "  Y=" + number_text(to_i16(y))); });
}

void digit::Image2_Click() {
  if (active_) return;
  active_ = true;
  InputBoxRequest ask;
  ask.prompt = "Enter the elevation or line number";
  ask.default_text = "100";
  z_ = leading_number(platform.input_box(ask));
  std::string z_text = number_text(z_);
  z_text.erase(std::remove(z_text.begin(), z_text.end(), ' '), z_text.end());
  output_ = state.data_folder + z_text + ".dat";
  count_ = 0;
  resume_next([&] {
    write_whole_file(native_path(output_), "");  // opened for output: emptied
    files.open(1, native_path(output_));
  });
}

void digit::Image2_MouseDown(MouseButton button, double x, double y) {
  if (button != MouseButton::left) {
    if (message(platform, "Save the data ?", Icon::question, Buttons::yes_no) != Answer::yes) return;
    active_ = false;
    resume_next([&] { files.close(1); });
    ShellRequest notepad;
    notepad.file = "notepad";
    notepad.params = "XYZ_file$";  // the fixed text, not the name of the file written
    notepad.dir = platform.application_folder();
    platform.shell_execute(notepad);
    return;
  }
  if (!active_) return;
  count_ = i16_add(count_, 1);
  // Past the table's end the stores and the line fail; the drawing goes on.
  auto row = [this]() -> std::array<double, 4>& {
    if (count_ < 0 || count_ > max_points) throw RunTimeError(err::subscript);
    return points_[static_cast<size_t>(count_)];
  };
  resume_next([&] { Keep_Decimals(x, decimals_, row()[1]); });
  resume_next([&] { Keep_Decimals(y, decimals_, row()[2]); });
  if (!checked("CheckX1")) {
    resume_next([&] { row()[3] = z_; });
  } else {
    InputBoxRequest ask;
    ask.prompt = "Enter the Z value for point " + number_text(count_);
    ask.default_text = z_answer_;
    const std::string answer = platform.input_box(ask);
    resume_next([&] { row()[3] = leading_number(answer); });
    const double datum = leading_number(text("TextX7"));
    z_ = datum != 0 ? datum - leading_number(answer) : leading_number(answer);
    z_answer_ = answer;
  }
  resume_next([&] {
    const auto& p = row();
    const std::string line = PrintedLine().item(p[1]).item(p[2]).item(z_).str();
    auto& out = files[1];
    out.write_at(out.length(), line.data(), line.size());
  });
  if (count_ != 1 && previous_x_ != 0 && previous_y_ != 0) {
    auto& picture = (*this)["Image2"];
    picture.lines.push_back({previous_x_, previous_y_, x, y, line_width_, line_color_});
    changed(picture);
  }
  previous_x_ = x;
  previous_y_ = y;
}

void digit::ask_number(const char* prompt, int16_t& setting) {
  InputBoxRequest ask;
  ask.prompt = prompt;
  ask.default_text = "2";
  const std::string answer = platform.input_box(ask);
  resume_next([&] { setting = to_i16(leading_number(answer)); });
}

void digit::xinfo() {
  message(platform, ended_lines(help_lines));
}

}  // namespace tf
