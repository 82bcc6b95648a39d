#include "ui/headless/script_runner.h"

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <sstream>
#include <vector>

#include "frame/conventions.h"
#include "frame/panel.h"
#include "ui/headless/json_line.h"
#include "ui/headless/picture_png.h"

namespace tf {

namespace {

class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// ${NAME} is replaced by the environment variable NAME.
std::string expand(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '$' && i + 1 < text.size() && text[i + 1] == '{') {
      size_t close = text.find('}', i);
      if (close == std::string::npos) throw ScriptError("unclosed ${");
      const char* value = std::getenv(text.substr(i + 2, close - i - 2).c_str());
      out += value ? value : "";
      i = close;
    } else {
      out += text[i];
    }
  }
  return out;
}

// Words of a line: bare words or double-quoted texts with \" \\ \n \r \t.
std::vector<std::string> tokens(const std::string& line) {
  std::vector<std::string> out;
  size_t i = 0;
  while (i < line.size()) {
    if (line[i] == ' ' || line[i] == '\t') {
      ++i;
      continue;
    }
    std::string word;
    if (line[i] == '"') {
      ++i;
      bool closed = false;
      while (i < line.size()) {
        char c = line[i++];
        if (c == '"') {
          closed = true;
          break;
        }
        if (c == '\\' && i < line.size()) {
          char n = line[i];
          const std::string escapes = "\"\\nrtb";
          if (escapes.find(n) != std::string::npos) {
            ++i;
            c = n == 'n' ? '\n' : n == 'r' ? '\r' : n == 't' ? '\t' : n == 'b' ? '\b' : n;
          }
        }
        word += c;
      }
      if (!closed) throw ScriptError("unclosed quote");
      out.push_back(expand(word));
    } else {
      while (i < line.size() && line[i] != ' ' && line[i] != '\t') word += line[i++];
      out.push_back(expand(word));
    }
  }
  return out;
}

const char* kind_name(Kind k) {
  switch (k) {
    case Kind::button: return "button";
    case Kind::text: return "text";
    case Kind::label: return "label";
    case Kind::check: return "check";
    case Kind::option: return "option";
    case Kind::list: return "list";
    case Kind::combo: return "combo";
    case Kind::frame: return "frame";
    case Kind::tabs: return "tabs";
    case Kind::progress: return "progress";
    case Kind::rich_text: return "rich_text";
    case Kind::grid: return "grid";
    case Kind::picture: return "picture";
    case Kind::menu: return "menu";
    case Kind::menu_item: return "menu_item";
    case Kind::toolbar: return "toolbar";
  }
  return "";
}

std::string dump_control(const Control& c) {
  JsonLine j;
  j.add("kind", kind_name(c.kind)).add("caption", c.caption).add("text", c.text).add("value", c.value);
  j.add("enabled", c.enabled).add("visible", c.visible).add("locked", c.locked).add("bold", c.bold);
  if (!c.tooltip.empty()) j.add("tooltip", c.tooltip);
  if (c.pointer) j.add("pointer", static_cast<int>(*c.pointer));
  if (c.kind == Kind::list || c.kind == Kind::combo || c.kind == Kind::tabs) {
    j.add("items", c.items);
    j.add("list_index", c.list_index);
  }
  if (c.kind == Kind::progress) j.add("min", c.min).add("max", c.max);
  if (c.kind == Kind::toolbar) j.add("items", c.items);
  if (c.kind == Kind::rich_text) {
    j.add("sel_start", c.sel_start).add("sel_length", c.sel_length);
    j.add("font_name", c.font.name).add("font_size", c.font.size).add("font_bold", c.font.bold);
    j.add("font_italic", c.font.italic);
  }
  if (c.kind == Kind::picture) {
    j.add("width", c.picture_width).add("height", c.picture_height);
    j.add("scale_left", c.scale_left).add("scale_top", c.scale_top);
    j.add("scale_width", c.scale_width).add("scale_height", c.scale_height);
    std::vector<std::string> lines;
    for (const auto& l : c.lines) {
      JsonLine drawn;
      drawn.add("x1", l.x1).add("y1", l.y1).add("x2", l.x2).add("y2", l.y2).add("width", l.width);
      drawn.add("color", int64_t{l.color});
      lines.push_back(drawn.str());
    }
    std::string list = "[";
    for (size_t i = 0; i < lines.size(); ++i) list += (i ? "," : "") + lines[i];
    j.add_raw("lines", list + "]");
  }
  if (c.kind == Kind::grid) {
    // Rows of cells, and beside them each cell's back colour as "#RRGGBB"
    // ("" for the plain back).
    std::string cells = "[", colors = "[";
    for (size_t r = 0; r < c.cells.size(); ++r) {
      cells += r ? ",[" : "[";
      colors += r ? ",[" : "[";
      for (size_t k = 0; k < c.cells[r].size(); ++k) {
        int color = -1;
        if (r < c.cell_colors.size() && k < c.cell_colors[r].size()) color = c.cell_colors[r][k];
        char hex[8] = "";
        if (color >= 0) std::snprintf(hex, sizeof hex, "#%06X", color & 0xFFFFFF);
        cells += (k ? "," : "") + json_quote(c.cells[r][k]);
        colors += (k ? "," : "") + json_quote(hex);
      }
      cells += "]";
      colors += "]";
    }
    j.add_raw("cells", cells + "]").add_raw("colors", colors + "]").add("row", c.row).add("col", c.col);
  }
  return j.str();
}

// A picture's size, its user scale and its shapes in pixels, in drawing
// order: {"kind":"polygon"|"polyline","points":[[x,y],...]}.
std::string dump_picture(const std::string& panel, const Control& c) {
  JsonLine j;
  j.add("event", "picture").add("panel", panel).add("control", c.name);
  j.add("width", c.picture_width).add("height", c.picture_height);
  j.add("scale_left", c.scale_left).add("scale_top", c.scale_top);
  j.add("scale_width", c.scale_width).add("scale_height", c.scale_height);
  std::string shapes = "[";
  for (size_t i = 0; i < c.shapes.size(); ++i) {
    const DrawnShape& shape = c.shapes[i];
    shapes += std::string(i ? "," : "") + "{\"kind\":\"" + (shape.filled ? "polygon" : "polyline") + "\",\"points\":[";
    for (size_t k = 0; k < shape.points.size(); ++k)
      shapes += (k ? ",[" : "[") + std::to_string(shape.points[k].x) + "," + std::to_string(shape.points[k].y) + "]";
    shapes += "]}";
  }
  j.add_raw("shapes", shapes + "]");
  return j.str();
}

std::string dump_session(const SessionState& s) {
  JsonLine j;
  j.add("current_file", s.current_file).add("data_folder", s.data_folder).add("nb_traces", int64_t{s.nb_traces});
  j.add("file_in", s.file_in).add("file_out", s.file_out).add("nb_channels", int64_t{s.nb_channels});
  j.add("ns", int64_t{s.ns}).add("first_trace", int64_t{s.first_trace}).add("last_trace", int64_t{s.last_trace});
  j.add("dt", int64_t{s.dt}).add("i2_trace_size", static_cast<int64_t>(s.i2_trace.size()));
  j.add("i4_trace_size", static_cast<int64_t>(s.i4_trace.size()));
  j.add("header_bytes_size", static_cast<int64_t>(s.header_bytes.size()));
  j.add("r4_trace_size", static_cast<int64_t>(s.r4_trace.size())).add("trace_pos", int64_t{s.trace_pos});
  j.add("su_tools_folder", s.su_tools_folder).add("command_prefix", s.command_prefix).add("crlf", s.crlf);
  j.add("conversion_mode", s.conversion_mode).add("editor_file", s.editor_file).add("batch_file", s.batch_file);
  return j.str();
}

class Runner {
 public:
  Runner(const RunnerOptions& options, std::ostream& out) : platform_(options, out), app_(platform_) {}

  void start() { app_.panels.show("Utility"); }

  void execute(const std::vector<std::string>& w) {
    const std::string& cmd = w[0];
    auto need = [&](size_t n) {
      if (w.size() != n) throw ScriptError(cmd + " takes " + std::to_string(n - 1) + " argument(s)");
    };
    if (cmd == "show") {
      need(2);
      app_.panels.show(w[1]);
    } else if (cmd == "close") {
      need(2);
      app_.panels.unload(w[1]);
    } else if (cmd == "click" || cmd == "dblclick" || cmd == "hover") {
      need(2);
      auto [panel, control] = target(w[1]);
      if (cmd == "click") panel->click(control);
      else if (cmd == "dblclick") panel->dblclick(control);
      else panel->hover(control);
    } else if (cmd == "click-cell") {
      need(4);
      auto [panel, control] = target(w[1]);
      panel->click_cell(control, std::stoi(w[2]), std::stoi(w[3]));
    } else if (cmd == "set") {
      need(3);
      auto [panel, control] = target(w[1]);
      panel->set_text(control, w[2]);
    } else if (cmd == "type") {
      need(3);
      auto [panel, control] = target(w[1]);
      for (char key : w[2]) panel->press_key(control, key);
    } else if (cmd == "check") {
      need(3);
      if (w[2] != "on" && w[2] != "off") throw ScriptError("check takes on or off");
      auto [panel, control] = target(w[1]);
      panel->set_value(control, w[2] == "on" ? 1 : 0);
    } else if (cmd == "select") {
      need(3);
      auto [panel, control] = target(w[1]);
      panel->select_item(control, std::stoi(w[2]));
    } else if (cmd == "tab") {
      need(3);
      auto [panel, control] = target(w[1]);
      panel->select_tab(control, std::stoi(w[2]));
    } else if (cmd == "click-picture" || cmd == "move-picture") {
      if (w.size() != 4 && !(cmd == "click-picture" && w.size() == 5)) throw ScriptError(cmd + " takes PANEL.CONTROL X Y");
      auto [panel, control] = target(w[1]);
      const double x = leading_number(w[2]), y = leading_number(w[3]);
      if (cmd == "move-picture") {
        panel->mouse_move(control, x, y);
      } else {
        const std::string button = w.size() == 5 ? w[4] : "left";
        if (button != "left" && button != "right" && button != "middle")
          throw ScriptError("click-picture takes left, right or middle");
        panel->mouse_down(control, button == "left" ? MouseButton::left
                                   : button == "right" ? MouseButton::right
                                                        : MouseButton::middle, x, y);
      }
    } else if (cmd == "move") {
      need(4);
      auto [panel, control] = target(w[1]);
      panel->mouse_move(control, leading_number(w[2]), leading_number(w[3]));
    } else if (cmd == "picture-size") {
      need(4);
      auto [panel, control] = target(w[1]);
      Control& c = (*panel)[control];
      c.picture_width = std::stoi(w[2]);
      c.picture_height = std::stoi(w[3]);
    } else if (cmd == "dump-picture") {
      need(2);
      auto [panel, control] = target(w[1]);
      platform_.emit(dump_picture(panel->name(), (*panel)[control]));
    } else if (cmd == "save-picture") {
      need(3);
      auto [panel, control] = target(w[1]);
      const bool saved = save_picture_png((*panel)[control], w[2]);
      platform_.emit(JsonLine().add("event", "save-picture").add("file", w[2]).add("saved", saved).str());
    } else if (cmd == "press") {
      need(3);
      auto [panel, control] = target(w[1]);
      panel->press_button(control, w[2]);
    } else if (cmd == "select-text") {
      need(4);
      auto [panel, control] = target(w[1]);
      panel->set_selection(control, std::stoi(w[2]), std::stoi(w[3]));
    } else if (cmd == "font") {
      if (w.size() < 3) throw ScriptError("font takes NAME SIZE [bold] [italic]");
      FontChoice f;
      f.name = w[1];
      f.size = leading_number(w[2]);
      for (size_t i = 3; i < w.size(); ++i) {
        if (w[i] == "bold") f.bold = true;
        else if (w[i] == "italic") f.italic = true;
        else throw ScriptError("font takes bold or italic, got " + w[i]);
      }
      platform_.font_answers.push_back(f);
    } else if (cmd == "font-cancel") {
      need(1);
      platform_.font_answers.push_back(std::nullopt);
    } else if (cmd == "color") {
      need(2);
      platform_.color_answers.push_back(to_i32(leading_number(w[1])));
    } else if (cmd == "color-cancel") {
      need(1);
      platform_.color_answers.push_back(std::nullopt);
    } else if (cmd == "session") {
      need(3);
      set_session(w[1], w[2]);
    } else if (cmd == "dump") {
      need(2);
      dump(w[1]);
    } else if (cmd == "dialog") {
      need(2);
      platform_.dialog_answers.push_back(w[1]);
    } else if (cmd == "dialog-cancel") {
      need(1);
      platform_.dialog_answers.push_back(std::nullopt);
    } else if (cmd == "input") {
      need(2);
      platform_.input_answers.push_back(w[1]);
    } else if (cmd == "input-cancel") {
      need(1);
      platform_.input_answers.push_back(std::nullopt);
    } else if (cmd == "reply") {
      need(2);
      auto answer = answer_by_name(w[1]);
      if (!answer) throw ScriptError("unknown reply " + w[1]);
      platform_.replies.push_back(*answer);
    } else {
      throw ScriptError("unknown command " + cmd);
    }
    app_.panels.collect();
  }

  ScriptPlatform& platform() { return platform_; }

 private:
  std::pair<Panel*, std::string> target(const std::string& dotted) {
    size_t dot = dotted.find('.');
    if (dot == std::string::npos) throw ScriptError("expected PANEL.CONTROL, got " + dotted);
    std::string panel_name = dotted.substr(0, dot), control = dotted.substr(dot + 1);
    Panel* panel = app_.panels.loaded(panel_name);
    if (!panel) throw ScriptError("panel " + panel_name + " is not shown");
    if (!panel->find(control)) throw ScriptError("panel " + panel_name + " has no control " + control);
    return {panel, control};
  }

  void set_session(const std::string& field, const std::string& value) {
    auto& s = app_.state;
    std::map<std::string, std::string*> texts{
        {"current_file", &s.current_file},       {"data_folder", &s.data_folder},
        {"file_in", &s.file_in},                 {"file_out", &s.file_out},
        {"su_tools_folder", &s.su_tools_folder}, {"command_prefix", &s.command_prefix},
        {"crlf", &s.crlf},                       {"conversion_mode", &s.conversion_mode},
        {"editor_file", &s.editor_file},         {"batch_file", &s.batch_file}};
    if (auto it = texts.find(field); it != texts.end()) {
      *it->second = value;
      return;
    }
    double v = leading_number(value);
    if (field == "nb_traces") s.nb_traces = to_i32(v);
    else if (field == "nb_channels") s.nb_channels = to_i16(v);
    else if (field == "ns") s.ns = to_i32(v);
    else if (field == "first_trace") s.first_trace = to_i32(v);
    else if (field == "last_trace") s.last_trace = to_i32(v);
    else if (field == "dt") s.dt = to_i16(v);
    else if (field == "trace_pos") s.trace_pos = to_i32(v);
    else throw ScriptError("unknown session field " + field);
  }

  void dump(const std::string& what) {
    JsonLine line;
    line.add("event", "dump");
    if (what == "session") {
      line.add_raw("session", dump_session(app_.state));
    } else {
      Panel* panel = app_.panels.loaded(what);
      if (!panel) throw ScriptError("panel " + what + " is not shown");
      JsonLine controls;
      for (const auto& c : panel->controls()) controls.add_raw(c->name, dump_control(*c));
      line.add("panel", what).add("caption", panel->caption()).add_raw("controls", controls.str());
    }
    platform_.emit(line.str());
  }

  ScriptPlatform platform_;
  App app_;
};

// The time limit as a thread of its own: past it, the transcript gets its
// `aborted` line and the process ends, in a loop without boxes as in a
// slow read.
class Watchdog {
 public:
  Watchdog(const RunnerOptions& options, std::ostream& out, const std::atomic<int>& line) {
    if (!options.hard_time_limit) return;
    thread_ = std::thread([this, seconds = options.max_seconds, &out, &line] {
      std::unique_lock lock(mutex_);
      if (cv_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return done_; })) return;
      std::lock_guard transcript(transcript_mutex());
      out << JsonLine().add("event", "aborted").add("message", time_limit_message).add("line", line.load()).str() << "\n";
      out.flush();
      std::_Exit(exit_run_aborted);
    });
  }
  ~Watchdog() {
    if (!thread_.joinable()) return;
    {
      std::lock_guard lock(mutex_);
      done_ = true;
    }
    cv_.notify_all();
    thread_.join();
  }

 private:
  std::mutex mutex_;
  std::condition_variable cv_;
  bool done_ = false;
  std::thread thread_;
};

}  // namespace

int run_script(const std::string& script, const RunnerOptions& options, std::ostream& out) {
  std::atomic<int> number = 0;
  Watchdog watchdog(options, out, number);
  Runner runner(options, out);
  std::istringstream lines(script);
  std::string line;
  try {
    runner.start();
    while (std::getline(lines, line)) {
      ++number;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      auto words = tokens(line);
      if (words.empty() || words[0].starts_with("#")) continue;
      try {
        runner.execute(words);
      } catch (const RunTimeError& e) {
        // An error no handler took: the platform would stop with this number.
        runner.platform().emit(JsonLine().add("event", "runtime-error").add("number", e.number).add("line", number.load()).str());
      }
      if (runner.platform().quit_requested()) break;
    }
  } catch (const ScriptError& e) {
    runner.platform().emit(JsonLine().add("event", "error").add("message", e.what()).add("line", number.load()).str());
    return exit_script_error;
  } catch (const RunAborted& e) {
    runner.platform().emit(JsonLine().add("event", "aborted").add("message", e.what()).add("line", number.load()).str());
    return exit_run_aborted;
  } catch (const std::exception& e) {
    runner.platform().emit(JsonLine().add("event", "error").add("message", e.what()).add("line", number.load()).str());
    return exit_script_error;
  }
  return exit_ok;
}

}  // namespace tf
