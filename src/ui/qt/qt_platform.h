// The desktop platform: real boxes, dialogs, pointers and one window per
// open panel, drawn from the panel's model.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QStringList>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <Qt>

#include "frame/panel.h"
#include "frame/platform.h"

namespace tf {

class PanelWindow;

// The desktop's pointer for a panel or control pointer.
Qt::CursorShape cursor_shape(Pointer pointer);

// "Record |*.dat|All files|*.*|" as the dialog's filters: "Record (*.dat)",
// "All files (*.*)".
QStringList dialog_filters(const std::string& filter);

// What the shared dialog gives back for the chosen files: one file is its
// whole path; several are the folder with its closing separator, a blank,
// and the names separated by blanks.
std::string selection_text(const QStringList& paths);

// The application folder for a program folder: the folder above "bin" when
// the program sits in one, else the program folder itself.
std::string application_folder_of(const std::string& program_folder);

class QtPlatform : public Platform {
 public:
  QtPlatform();
  ~QtPlatform() override;

  // The model the windows are drawn from; set once, before the first show.
  void attach(App& app);
  // Shows the start panel; its unload ends the program.
  void start(const std::string& main_panel);

  // Every handler of the model runs through here: a run-time error that no
  // handler took is reported, and unloaded panels and their windows are
  // destroyed once no handler runs any more.
  void run(const std::function<void()>& handler);

  PanelWindow* window(const std::string& panel) const;
  std::vector<PanelWindow*> windows() const;
  bool quit_requested() const { return quit_requested_; }

  // Replaces the file dialog: the chosen files, or nullopt for a cancel.
  std::function<std::optional<QStringList>(const FileDialogRequest&)> file_chooser;
  // Folders of a test installation, in place of the program's own.
  std::optional<std::string> application_folder_override;
  int beeps = 0;

  Answer show_message_box(const MessageBoxRequest& request) override;
  std::string show_input_box(const InputBoxRequest& request) override;
  std::string show_file_dialog(const FileDialogRequest& request) override;
  void beep() override;
  void set_pointer(const std::string& panel, Pointer pointer) override;
  void process_events() override;
  void wait_ms(int ms) override;
  double seconds_now() override;
  void play_sound(const std::string& file) override;
  void print_text(const std::string& text) override;
  bool print_dialog(const PrintDialogRequest& request) override;
  bool font_dialog(FontChoice& font) override;
  int32_t color_dialog(const std::string& title, int32_t color) override;
  bool load_picture(const std::string& panel, const std::string& control, const std::string& file, int& width,
                    int& height) override;
  int shell_execute(const ShellRequest& request) override;
  std::string find_executable(const std::string& document) override;
  void panel_shown(const std::string& panel) override;
  void panel_unloaded(const std::string& panel) override;
  void routine_requested(const std::string& routine) override;
  void quit() override;
  std::string application_folder() override;
  std::string system_folder() override;

 private:
  App* app_ = nullptr;
  std::string main_panel_;
  std::map<std::string, QPointer<PanelWindow>> windows_;
  std::vector<QPointer<PanelWindow>> retired_;
  void end_if_quitting() const;
  void place_beside_main(PanelWindow& w);
  QWidget* box_parent() const;
  void run_modal(QDialog& dialog);
  int depth_ = 0;
  bool quit_requested_ = false;
  std::chrono::steady_clock::time_point start_;
  // The printer that the last print dialog chose; the default one before.
  std::shared_ptr<void> printer_;
};

}  // namespace tf
