// Panels as plain models: named controls with their captions, defaults and
// key filters, and the handlers that the desktop or the script runner fires.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frame/platform.h"
#include "frame/session_state.h"
#include "su/binary_file.h"

namespace tf {

enum class Kind {
  button, text, label, check, option, list, combo, frame, tabs, progress, rich_text, grid, picture,
  menu,       // a menu of the menu bar; its entries name it as their parent
  menu_item,  // an entry; caption "-" is a separator
  toolbar     // buttons by key: items are the keys, cells the [key, tooltip] rows
};

// A line drawn on a picture, in the picture's user units.
struct DrawnLine {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  int width = 1;
  int32_t color = 0;  // 0x00BBGGRR
};

// A shape drawn straight on a picture in its pixels, from its top left
// corner: a filled polygon (the picture's fill colour inside, its pen
// around) or an open polyline.
struct PixelPoint {
  int32_t x = 0, y = 0;
  bool operator==(const PixelPoint&) const = default;
};
struct DrawnShape {
  bool filled = false;
  std::vector<PixelPoint> points;
  int32_t pen = 0;           // 0x00BBGGRR
  int32_t fill = 0x808080;   // 0x00BBGGRR
};

enum class MouseButton { left = 1, right = 2, middle = 4 };

struct Control {
  std::string name;
  Kind kind = Kind::label;
  std::string caption;  // buttons, labels, checks, options, frames; for a field, the label beside it
  std::string text;     // text boxes, combo boxes, rich text
  std::string tooltip;
  std::string parent;   // the frame or tab control that holds it, "" for the panel
  int tab = -1;         // page of the parent tab control
  bool enabled = true;
  bool visible = true;
  bool locked = false;
  bool bold = false;
  bool multiline = false;
  bool tiny = false;    // drawn at a fraction of the usual size
  int value = 0;        // check and option state, progress value, current tab
  int min = 0;
  int max = 100;
  std::vector<std::string> items;      // list and combo entries; tab captions
  int list_index = -1;
  std::vector<std::vector<std::string>> cells;  // grid rows
  // Grid back colours beside `cells`, 0xRRGGBB; a cell with none (or -1) has
  // the plain back.
  std::vector<std::vector<int>> cell_colors;
  int row = 0, col = 0;  // the grid's current cell: the one last clicked
  std::string key_filter;              // allowed keys of a number field, backspace added
  // Rich text: the selection (start from 0) and the font.
  int sel_start = 0;
  int sel_length = 0;
  FontChoice font;
  // Picture: the picture's size in pixels, its user coordinate system (the
  // top left corner and the extent; a zero extent means pixels), and the
  // lines drawn on it.
  int picture_width = 0;
  int picture_height = 0;
  double scale_left = 0, scale_top = 0, scale_width = 0, scale_height = 0;
  std::vector<DrawnLine> lines;
  std::vector<DrawnShape> shapes;  // in drawing order, after the lines
  int32_t pen_color = 0;
  int32_t fill_color = 0x808080;
  std::optional<Pointer> pointer;  // the mouse pointer over the control, where one is set
  std::function<void(MouseButton, double, double)> on_mouse_down;  // user units
  std::function<void(double, double)> on_mouse_move;
  std::function<void()> on_click;
  std::function<void()> on_change;
  std::function<void()> on_dblclick;
  std::function<void()> on_hover;
};

class App;

class Panel {
 public:
  Panel(App& app, std::string name, std::string caption);
  virtual ~Panel() = default;
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;

  virtual void form_load() {}
  virtual void form_unload() {}

  const std::string& name() const { return name_; }
  const std::string& caption() const { return caption_; }
  // The window's caption; the desktop takes it when it draws the panel.
  void set_panel_caption(const std::string& caption) { caption_ = caption; }
  std::vector<std::unique_ptr<Control>>& controls() { return controls_; }
  Control& operator[](const std::string& control);  // logic error when missing
  Control* find(const std::string& control);

  // What a user does, and what the code does to a control. Setting a text
  // fires the change handler when the text changes; setting an option clears
  // the others of its group and fires its click when it was not set.
  void set_text(const std::string& control, const std::string& text);
  void set_caption(const std::string& control, const std::string& caption);
  void set_value(const std::string& control, int value);  // checks and options
  void set_progress(const std::string& control, int value);
  void set_visible(const std::string& control, bool visible);
  void set_progress_range(const std::string& control, int min, int max);
  void add_item(const std::string& control, const std::string& item);
  void select_item(const std::string& control, int index);
  void select_tab(const std::string& control, int tab);
  void click(const std::string& control);
  // A click on a grid cell: it becomes the current cell, then the click runs.
  void click_cell(const std::string& control, int row, int col);
  void dblclick(const std::string& control);
  void hover(const std::string& control);
  // One key press through the field's key filter: a dropped key beeps.
  void press_key(const std::string& control, char key);
  // A selection in a rich text, from 0, clamped to the text.
  void set_selection(const std::string& control, int start, int length);
  // The pointer on a picture, in its user units: a press fires the mouse
  // down and, for the left button, the click; a move fires the mouse move.
  void mouse_down(const std::string& control, MouseButton button, double x, double y);
  void mouse_move(const std::string& control, double x, double y);
  // Drawing on a picture. The scale is the user system of the mouse and of
  // the lines (left, top, right, bottom); shapes are in pixels. A clear
  // empties lines and shapes. The drawing calls do not tell the desktop:
  // `refresh` does, once a drawing is complete.
  void clear_picture(const std::string& control);
  void scale_picture(const std::string& control, double left, double top, double right, double bottom);
  void draw_shape(const std::string& control, bool filled, const std::vector<PixelPoint>& points);
  void set_tooltip(const std::string& control, const std::string& tooltip);
  void refresh(const std::string& control);
  // A toolbar button pressed by its key: the index goes to list_index and
  // the toolbar's click runs.
  void press_button(const std::string& control, const std::string& key);

  std::string text(const std::string& control) { return (*this)[control].text; }
  bool checked(const std::string& control) { return (*this)[control].value != 0; }
  void set_pointer(Pointer pointer);
  void unload();

  // The desktop listens to every change of a control.
  std::function<void(Control&)> observer;

 protected:
  Control& add(Kind kind, const std::string& name, const std::string& caption = "", const std::string& text = "");
  // A control drawn inside the frame `parent`.
  Control& add_in(const std::string& parent, Kind kind, const std::string& name, const std::string& caption = "");
  void changed(Control& c);
  App& app;
  SessionState& state;
  Platform& platform;
  FileTable& files;

 private:
  std::string name_;
  std::string caption_;
  std::vector<std::unique_ptr<Control>> controls_;
  std::map<std::string, Control*> by_name_;
};

using PanelFactory = std::function<std::unique_ptr<Panel>(App&)>;

// Panels by name. A panel is made and loaded at its first show, lives while
// it is open, and an unload leaves room for a fresh one at the next show.
class PanelRegistry {
 public:
  explicit PanelRegistry(App& app) : app_(app) {}
  void add(const std::string& name, PanelFactory factory);
  bool knows(const std::string& name) const { return factories_.count(name) != 0; }
  Panel* show(const std::string& name);  // a name with no model is recorded only: nullptr
  Panel* loaded(const std::string& name);
  void unload(const std::string& name);
  // Unloaded panels are destroyed here, once no handler of theirs runs.
  void collect();
  std::vector<std::string> names() const;
  std::vector<Panel*> open_panels();
  // The panel that took the last show or click, whose fields routines of the
  // shared module read by name.
  Panel* active = nullptr;

 private:
  App& app_;
  std::map<std::string, PanelFactory> factories_;
  std::map<std::string, std::unique_ptr<Panel>> open_;
  std::vector<std::string> open_order_;
  std::vector<std::unique_ptr<Panel>> retired_;
};

// The running program: its one SessionState, its file numbers, its panels.
class App {
 public:
  explicit App(Platform& platform);
  Platform& platform;
  SessionState state;
  FileTable files;
  PanelRegistry panels;
  // Routines of parts not yet built are asked for by name.
  std::map<std::string, std::function<void(App&)>> routines;
  void run_routine(const std::string& name);
};

// Registers every panel model and routine of the program.
void register_all_panels(App& app);

}  // namespace tf
