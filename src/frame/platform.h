// Everything a panel asks of the desktop goes through here. The Qt front end
// answers with real widgets, the headless runner from its script.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace tf {

enum class Icon { none = 0, stop = 16, question = 32, exclamation = 48, information = 64 };
enum class Buttons { ok = 0, ok_cancel = 1, abort_retry_ignore = 2, yes_no_cancel = 3, yes_no = 4, retry_cancel = 5 };
enum class Answer { ok = 1, cancel = 2, abort = 3, retry = 4, ignore = 5, yes = 6, no = 7 };
enum class Pointer { arrow = 1, cross = 2, hourglass = 11 };

// The title of every box whose caller names none.
inline constexpr const char* default_title = "Tracefold 1.0";

struct MessageBoxRequest {
  std::string text;
  std::string title = default_title;
  Icon icon = Icon::none;
  Buttons buttons = Buttons::ok;
  int autoclose_ms = 0;  // a timer that closes the box by its title
};

struct InputBoxRequest {
  std::string prompt;
  std::string title = default_title;
  std::string default_text;
};

// The common dialog: flags 512 asks for a multiple selection, which comes
// back as "folder<sep> name1 name2 ..."; a single choice is the whole path.
// A cancel gives back the start name.
struct FileDialogRequest {
  bool save = false;
  std::string title;
  std::string filter;  // "Record |*.dat|All files|*.*|"
  std::string file_name;
  std::string initial_dir;
  int flags = 0;
  int filter_index = 0;
};

// A font as the font dialog gives it and a text box wears it.
struct FontChoice {
  std::string name = "MS Sans Serif";
  double size = 8.25;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeout = false;
  bool operator==(const FontChoice&) const = default;
};

// The print dialog of the common dialog: its flags, and whether the text
// box has a selection to offer.
struct PrintDialogRequest {
  int flags = 0;
  bool selection = false;
};

struct ShellRequest {
  std::string verb = "open";
  std::string file;
  std::string params;
  std::string dir;
  int show = 1;  // 1: shown normally
  // The caller goes on only when what was started has ended (a batch whose
  // results the next step reads).
  bool wait_for_end = false;
};

class Platform {
 public:
  virtual ~Platform() = default;

  // Boxes and dialogs. What a job has gathered for its files is written
  // out first: the user sees the files as the word-by-word writes left them.
  Answer message_box(const MessageBoxRequest& request);
  std::string input_box(const InputBoxRequest& request);  // "" on cancel
  std::string file_dialog(const FileDialogRequest& request);
  virtual void beep() = 0;
  virtual void set_pointer(const std::string& panel, Pointer pointer) = 0;
  virtual void process_events() = 0;
  virtual void wait_ms(int ms) = 0;
  virtual double seconds_now() = 0;
  virtual void play_sound(const std::string& file) = 0;
  virtual void print_text(const std::string& text) = 0;
  // The print dialog; the printing that follows goes to the printer chosen
  // there. Returns false on a cancel.
  virtual bool print_dialog(const PrintDialogRequest& request) { (void)request; return true; }
  // The font dialog, starting from `font`; the choice is written back, a
  // cancel leaves it. Returns false on a cancel.
  virtual bool font_dialog(FontChoice& font) { (void)font; return false; }
  // The colour dialog with a title, starting from `color` (0x00BBGGRR); a
  // cancel gives back the start colour.
  virtual int32_t color_dialog(const std::string& title, int32_t color) { (void)title; return color; }
  // A picture file loaded into a picture control: its size in pixels, or
  // false when the platform cannot read it (the former picture stays).
  virtual bool load_picture(const std::string& panel, const std::string& control, const std::string& file,
                            int& width, int& height) {
    (void)panel, (void)control, (void)file, (void)width, (void)height;
    return false;
  }
  // Result below 32 is a failure, as the platform reports it.
  virtual int shell_execute(const ShellRequest& request) = 0;
  virtual std::string find_executable(const std::string& document) = 0;

  // A panel is shown or unloaded; the runner records it, the desktop draws it.
  virtual void panel_shown(const std::string& panel) = 0;
  virtual void panel_unloaded(const std::string& panel) = 0;
  // A routine of a part not built yet was asked for.
  virtual void routine_requested(const std::string& routine) = 0;
  virtual void quit() = 0;

  // Folders of the installation: the application folder (no closing
  // separator) and the system folder where the suite's INI lives.
  virtual std::string application_folder() = 0;
  virtual std::string system_folder() = 0;

  // Private profile (INI) files; a bare name lives in the system folder.
  // The value read is cut to buffer_size - 1 characters, as the call does.
  virtual std::string profile_string(const std::string& section, const std::string& key,
                                     const std::string& default_value, int buffer_size,
                                     const std::string& file);
  virtual void write_profile_string(const std::string& section, const std::string& key,
                                    const std::string& value, const std::string& file);

  // The folder for temporary files, with its closing separator; "" when the
  // platform gives none.
  virtual std::string temp_folder();
  // A new empty file in `folder`, named by the first three characters of
  // `prefix`, a hexadecimal number and ".tmp"; "" when none can be made.
  virtual std::string temp_file_name(const std::string& folder, const std::string& prefix);

 protected:
  virtual Answer show_message_box(const MessageBoxRequest& request) = 0;
  virtual std::string show_input_box(const InputBoxRequest& request) = 0;
  virtual std::string show_file_dialog(const FileDialogRequest& request) = 0;
  std::string profile_path(const std::string& file);
};

}  // namespace tf
