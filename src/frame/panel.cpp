#include "frame/panel.h"

#include <algorithm>
#include <stdexcept>

#include "frame/helpers.h"

namespace tf {

Panel::Panel(App& a, std::string name, std::string caption)
    : app(a), state(a.state), platform(a.platform), files(a.files), name_(std::move(name)), caption_(std::move(caption)) {}

Control& Panel::add(Kind kind, const std::string& name, const std::string& caption, const std::string& text) {
  auto c = std::make_unique<Control>();
  c->name = name;
  c->kind = kind;
  c->caption = caption;
  c->text = text;
  Control& ref = *c;
  by_name_[name] = &ref;
  controls_.push_back(std::move(c));
  return ref;
}

Control& Panel::add_in(const std::string& parent, Kind kind, const std::string& name, const std::string& caption) {
  Control& c = add(kind, name, caption);
  c.parent = parent;
  return c;
}

Control* Panel::find(const std::string& control) {
  auto it = by_name_.find(control);
  return it == by_name_.end() ? nullptr : it->second;
}

Control& Panel::operator[](const std::string& control) {
  Control* c = find(control);
  if (!c) throw std::logic_error("panel " + name_ + " has no control " + control);
  return *c;
}

void Panel::changed(Control& c) {
  if (observer) observer(c);
}

void Panel::clear_picture(const std::string& control) {
  Control& c = (*this)[control];
  c.lines.clear();
  c.shapes.clear();
}

void Panel::scale_picture(const std::string& control, double left, double top, double right, double bottom) {
  Control& c = (*this)[control];
  c.scale_left = left, c.scale_top = top, c.scale_width = right - left, c.scale_height = bottom - top;
}

void Panel::draw_shape(const std::string& control, bool filled, const std::vector<PixelPoint>& points) {
  Control& c = (*this)[control];
  c.shapes.push_back({filled, points, c.pen_color, c.fill_color});
}

void Panel::set_tooltip(const std::string& control, const std::string& tooltip) {
  Control& c = (*this)[control];
  c.tooltip = tooltip;
  changed(c);
}

void Panel::refresh(const std::string& control) { changed((*this)[control]); }

void Panel::set_text(const std::string& control, const std::string& text) {
  Control& c = (*this)[control];
  if (c.text == text) return;
  c.text = text;
  changed(c);
  if (c.on_change) c.on_change();
}

void Panel::set_caption(const std::string& control, const std::string& caption) {
  Control& c = (*this)[control];
  c.caption = caption;
  changed(c);
}

void Panel::set_value(const std::string& control, int value) {
  Control& c = (*this)[control];
  if (c.kind == Kind::option) {
    if (!value) {
      c.value = 0;
      changed(c);
      return;
    }
    if (c.value) return;  // a set option raises no click
    for (auto& other : controls_)
      if (other->kind == Kind::option && other->parent == c.parent && other->tab == c.tab && other->value) {
        other->value = 0;
        changed(*other);
      }
    c.value = 1;
    changed(c);
    app.panels.active = this;
    if (c.on_click) c.on_click();
    return;
  }
  if (c.value == value) return;
  c.value = value;
  changed(c);
  if (c.kind == Kind::check && c.on_click) c.on_click();
}

void Panel::set_progress(const std::string& control, int value) {
  Control& c = (*this)[control];
  c.value = value;
  changed(c);
}

void Panel::set_visible(const std::string& control, bool visible) {
  Control& c = (*this)[control];
  c.visible = visible;
  changed(c);
}

void Panel::set_progress_range(const std::string& control, int min, int max) {
  Control& c = (*this)[control];
  c.min = min;
  c.max = max;
  changed(c);
}

void Panel::add_item(const std::string& control, const std::string& item) {
  Control& c = (*this)[control];
  c.items.push_back(item);
  changed(c);
}

void Panel::select_item(const std::string& control, int index) {
  Control& c = (*this)[control];
  if (index < -1 || index >= static_cast<int>(c.items.size())) throw RunTimeError(380);
  c.list_index = index;
  if (c.kind == Kind::combo && index >= 0) {
    c.text = c.items[static_cast<size_t>(index)];
  }
  changed(c);
  if (c.on_click) c.on_click();
}

void Panel::select_tab(const std::string& control, int tab) {
  Control& c = (*this)[control];
  if (c.value == tab) return;
  c.value = tab;
  changed(c);
  if (c.on_change) c.on_change();
}

void Panel::click(const std::string& control) {
  Control& c = (*this)[control];
  app.panels.active = this;
  if (c.kind == Kind::option) {
    set_value(control, 1);
    return;
  }
  if (c.kind == Kind::check) {
    set_value(control, c.value ? 0 : 1);
    return;
  }
  if (c.on_click) c.on_click();
}

void Panel::click_cell(const std::string& control, int row, int col) {
  Control& c = (*this)[control];
  c.row = row;
  c.col = col;
  app.panels.active = this;
  if (c.on_click) c.on_click();
}

void Panel::dblclick(const std::string& control) {
  Control& c = (*this)[control];
  app.panels.active = this;
  if (c.on_dblclick) c.on_dblclick();
}

void Panel::hover(const std::string& control) {
  Control& c = (*this)[control];
  if (c.on_hover) c.on_hover();
}

void Panel::press_key(const std::string& control, char key) {
  Control& c = (*this)[control];
  int k = static_cast<unsigned char>(key);
  if (!c.key_filter.empty()) k = Filter_Key(platform, k, c.key_filter, true);
  if (k == 0) return;
  std::string t = c.text;
  if (k == 8) {
    if (!t.empty()) t.pop_back();
  } else {
    t += static_cast<char>(k);
  }
  set_text(control, t);
}

void Panel::set_selection(const std::string& control, int start, int length) {
  Control& c = (*this)[control];
  const int size = static_cast<int>(c.text.size());
  c.sel_start = std::clamp(start, 0, size);
  c.sel_length = std::clamp(length, 0, size - c.sel_start);
  changed(c);
}

void Panel::mouse_down(const std::string& control, MouseButton button, double x, double y) {
  Control& c = (*this)[control];
  app.panels.active = this;
  if (c.on_mouse_down) c.on_mouse_down(button, x, y);
  if (button == MouseButton::left && c.on_click) c.on_click();
}

void Panel::mouse_move(const std::string& control, double x, double y) {
  Control& c = (*this)[control];
  if (c.on_mouse_move) c.on_mouse_move(x, y);
}

void Panel::press_button(const std::string& control, const std::string& key) {
  Control& c = (*this)[control];
  auto it = std::find(c.items.begin(), c.items.end(), key);
  if (it == c.items.end()) throw std::logic_error("toolbar " + control + " has no button " + key);
  app.panels.active = this;
  c.list_index = static_cast<int>(it - c.items.begin());
  if (c.on_click) c.on_click();
}

void Panel::set_pointer(Pointer pointer) { platform.set_pointer(name_, pointer); }

void Panel::unload() { app.panels.unload(name_); }

void PanelRegistry::add(const std::string& name, PanelFactory factory) { factories_[name] = std::move(factory); }

Panel* PanelRegistry::show(const std::string& name) {
  auto it = open_.find(name);
  if (it == open_.end()) {
    auto f = factories_.find(name);
    if (f == factories_.end()) {
      app_.platform.panel_shown(name);
      return nullptr;
    }
    auto panel = f->second(app_);
    Panel* p = panel.get();
    open_[name] = std::move(panel);
    open_order_.push_back(name);
    p->form_load();
    it = open_.find(name);
  }
  active = it->second.get();
  app_.platform.panel_shown(name);
  return it->second.get();
}

Panel* PanelRegistry::loaded(const std::string& name) {
  auto it = open_.find(name);
  return it == open_.end() ? nullptr : it->second.get();
}

void PanelRegistry::unload(const std::string& name) {
  auto it = open_.find(name);
  if (it == open_.end()) return;
  if (active == it->second.get()) active = nullptr;
  Panel* panel = it->second.get();
  retired_.push_back(std::move(it->second));
  open_.erase(it);
  open_order_.erase(std::remove(open_order_.begin(), open_order_.end(), name), open_order_.end());
  app_.platform.panel_unloaded(name);
  panel->form_unload();
}

void PanelRegistry::collect() { retired_.clear(); }

std::vector<std::string> PanelRegistry::names() const {
  std::vector<std::string> n;
  for (const auto& [name, f] : factories_) n.push_back(name);
  return n;
}

std::vector<Panel*> PanelRegistry::open_panels() {
  std::vector<Panel*> v;
  for (const auto& name : open_order_) v.push_back(open_[name].get());
  return v;
}

App::App(Platform& p) : platform(p), panels(*this) { register_all_panels(*this); }

void App::run_routine(const std::string& name) {
  auto it = routines.find(name);
  if (it == routines.end()) {
    platform.routine_requested(name);
    return;
  }
  it->second(*this);
}

}  // namespace tf
