#include "ui/qt/qt_platform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QScreen>
#include <QSpacerItem>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QtDebug>

#include <QColorDialog>
#include <QFontDialog>
#include <QImageReader>

#ifdef TRACEFOLD_PRINTING
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>
#endif

#include "frame/conventions.h"
#include "frame/paths.h"
#include "frame/shell_start.h"
#include "ui/qt/panel_window.h"

namespace tf {

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }

// The buttons of each set, the first one the default.
struct ButtonSet {
  Buttons buttons;
  std::vector<std::pair<QMessageBox::StandardButton, Answer>> keys;
};
const ButtonSet button_sets[] = {
    {Buttons::ok, {{QMessageBox::Ok, Answer::ok}}},
    {Buttons::ok_cancel, {{QMessageBox::Ok, Answer::ok}, {QMessageBox::Cancel, Answer::cancel}}},
    {Buttons::abort_retry_ignore,
     {{QMessageBox::Abort, Answer::abort}, {QMessageBox::Retry, Answer::retry}, {QMessageBox::Ignore, Answer::ignore}}},
    {Buttons::yes_no_cancel,
     {{QMessageBox::Yes, Answer::yes}, {QMessageBox::No, Answer::no}, {QMessageBox::Cancel, Answer::cancel}}},
    {Buttons::yes_no, {{QMessageBox::Yes, Answer::yes}, {QMessageBox::No, Answer::no}}},
    {Buttons::retry_cancel, {{QMessageBox::Retry, Answer::retry}, {QMessageBox::Cancel, Answer::cancel}}},
};

QMessageBox::Icon box_icon(Icon icon) {
  switch (icon) {
    case Icon::stop: return QMessageBox::Critical;
    case Icon::question: return QMessageBox::Question;
    case Icon::exclamation: return QMessageBox::Warning;
    case Icon::information: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
  }
}

}  // namespace

Qt::CursorShape cursor_shape(Pointer pointer) {
  switch (pointer) {
    case Pointer::hourglass: return Qt::WaitCursor;
    case Pointer::cross: return Qt::CrossCursor;
    default: return Qt::ArrowCursor;
  }
}

// After Quit, whatever a panel's handler still asks of the desktop ends the
// handler: a retry loop, an input loop or a polling wait goes no further.
void QtPlatform::end_if_quitting() const {
  if (quit_requested_) throw RunAborted("the program has ended");
}

// A box belongs to the panel whose handler shows it and blocks that panel
// only: the main panel's Quit stays at hand.
QWidget* QtPlatform::box_parent() const {
  if (app_ && app_->panels.active)
    if (PanelWindow* w = window(app_->panels.active->name())) return w;
  return QApplication::activeWindow();
}

void QtPlatform::run_modal(QDialog& dialog) {
  end_if_quitting();
  if (dialog.parentWidget()) dialog.setWindowModality(Qt::WindowModal);
  dialog.exec();
  end_if_quitting();
}

QStringList dialog_filters(const std::string& filter) {
  QStringList parts = q(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString patterns = parts[i + 1].trimmed();
    if (patterns.isEmpty()) continue;
    patterns.replace(';', ' ');
    filters << parts[i].trimmed() + " (" + patterns + ")";
  }
  return filters;
}

std::string selection_text(const QStringList& paths) {
  if (paths.size() == 1) return QDir::toNativeSeparators(paths.front()).toStdString();
  std::string text = QDir::toNativeSeparators(QFileInfo(paths.front()).absolutePath()).toStdString();
  if (text.empty() || text.back() != sep_char) text += sep;
  for (const QString& path : paths) text += " " + QFileInfo(path).fileName().toStdString();
  return text;
}

std::string application_folder_of(const std::string& program_folder) {
  const QString folder = QDir::cleanPath(q(program_folder));
  const QFileInfo info(folder);
  return QDir::toNativeSeparators(info.fileName() == "bin" ? info.path() : folder).toStdString();
}

QtPlatform::QtPlatform() : start_(std::chrono::steady_clock::now()) {}

QtPlatform::~QtPlatform() {
  for (auto& [name, w] : windows_) delete w.data();
  for (auto& w : retired_) delete w.data();
}

void QtPlatform::attach(App& app) { app_ = &app; }

void QtPlatform::start(const std::string& main_panel) {
  main_panel_ = main_panel;
  run([&] { app_->panels.show(main_panel); });
}

void QtPlatform::run(const std::function<void()>& handler) {
  ++depth_;
  try {
    handler();
  } catch (const RunTimeError& e) {
    // An error that no handler of the panel took.
    QMessageBox::critical(box_parent(), default_title, QString("Run-time error '%1'").arg(e.number));
  } catch (const RunAborted&) {
    // The program ended under the handler.
  } catch (const std::exception& e) {
    qWarning() << "tracefold:" << e.what();
  }
  --depth_;
  if (depth_ > 0 || !app_) return;
  app_->panels.collect();
  for (auto& w : retired_)
    if (w) w->deleteLater();
  retired_.clear();
}

PanelWindow* QtPlatform::window(const std::string& panel) const {
  auto it = windows_.find(panel);
  return it == windows_.end() ? nullptr : it->second.data();
}

std::vector<PanelWindow*> QtPlatform::windows() const {
  std::vector<PanelWindow*> open;
  for (const auto& [name, w] : windows_)
    if (w) open.push_back(w.data());
  return open;
}

Answer QtPlatform::show_message_box(const MessageBoxRequest& request) {
  const ButtonSet* set = &button_sets[0];
  for (const auto& s : button_sets)
    if (s.buttons == request.buttons) set = &s;
  QMessageBox box(box_icon(request.icon), q(request.title), q(request.text).replace("\r\n", "\n"),
                  QMessageBox::NoButton, box_parent());
  box.setTextFormat(Qt::PlainText);
  // Wide enough for its title, which the window frame would cut otherwise.
  if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
    const int title_width = QFontMetrics(QApplication::font("QMdiSubWindowTitleBar")).horizontalAdvance(box.windowTitle());
    grid->addItem(new QSpacerItem(title_width + 120, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid->rowCount(), 0, 1,
                  grid->columnCount());
  }
  for (const auto& [key, answer] : set->keys) box.addButton(key);
  box.setDefaultButton(set->keys.front().first);
  // The success box that a timer closes, as a user's click would.
  if (request.autoclose_ms > 0) QTimer::singleShot(request.autoclose_ms, Qt::PreciseTimer, &box, [&box] { box.close(); });
  run_modal(box);
  if (QAbstractButton* clicked = box.clickedButton()) {
    const auto key = box.standardButton(clicked);
    for (const auto& [k, answer] : set->keys)
      if (k == key) return answer;
  }
  return set->keys.front().second;
}

std::string QtPlatform::show_input_box(const InputBoxRequest& request) {
  QInputDialog dialog(box_parent());
  dialog.setWindowTitle(q(request.title));
  dialog.setLabelText(q(request.prompt));
  dialog.setTextValue(q(request.default_text));
  run_modal(dialog);
  if (dialog.result() != QDialog::Accepted) return "";
  return dialog.textValue().toStdString();
}

std::string QtPlatform::show_file_dialog(const FileDialogRequest& request) {
  constexpr int overwrite_prompt = 2;
  constexpr int multiple_selection = 512;
  constexpr int file_must_exist = 4096;
  std::optional<QStringList> chosen;
  if (file_chooser) {
    end_if_quitting();
    chosen = file_chooser(request);
  } else {
    QString folder = request.initial_dir.empty() ? QDir::currentPath() : q(request.initial_dir);
    QFileDialog dialog(box_parent(), q(request.title), folder);
    const QStringList filters = dialog_filters(request.filter);
    if (!filters.isEmpty()) {
      dialog.setNameFilters(filters);
      dialog.selectNameFilter(filters.value(std::max(request.filter_index, 1) - 1, filters.front()));
    }
    if (request.save) {
      dialog.setAcceptMode(QFileDialog::AcceptSave);
      dialog.setFileMode(QFileDialog::AnyFile);
      if (!(request.flags & overwrite_prompt)) dialog.setOption(QFileDialog::DontConfirmOverwrite);
    } else if (request.flags & multiple_selection) {
      dialog.setFileMode(QFileDialog::ExistingFiles);
    } else {
      dialog.setFileMode(request.flags & file_must_exist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    }
    // A start name of wildcards is the filter already, not a name to pick.
    if (!request.file_name.empty() && request.file_name.find_first_of("*?") == std::string::npos)
      dialog.selectFile(q(request.file_name));
    run_modal(dialog);
    if (dialog.result() == QDialog::Accepted) chosen = dialog.selectedFiles();
  }
  if (!chosen || chosen->isEmpty()) return request.file_name;  // a cancel gives back the start name
  return selection_text(*chosen);
}

void QtPlatform::beep() {
  ++beeps;
  QApplication::beep();
}

void QtPlatform::set_pointer(const std::string& panel, Pointer pointer) {
  if (PanelWindow* w = window(panel)) w->setCursor(cursor_shape(pointer));
}

void QtPlatform::process_events() {
  end_if_quitting();
  QCoreApplication::processEvents();
  end_if_quitting();
}

void QtPlatform::wait_ms(int ms) {
  end_if_quitting();
  if (ms > 0) QThread::msleep(static_cast<unsigned long>(ms));
}

double QtPlatform::seconds_now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

// The sound plays to its end before the caller goes on (its box follows).
// Qt has no audio of its own without its multimedia module, so the wave
// goes to the desktop's sound player; with none, the bell rings. A missing
// file plays nothing.
void QtPlatform::play_sound(const std::string& file) {
  if (!QFileInfo(q(file)).isFile()) return;
  for (const char* player : {"paplay", "aplay", "pw-play"}) {
    if (QStandardPaths::findExecutable(player).isEmpty()) continue;
    QProcess play;
    play.start(player, {q(file)});
    if (play.waitForStarted(3000)) {
      while (!play.waitForFinished(50)) {
        if (play.state() == QProcess::NotRunning) break;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
      }
      return;
    }
  }
  QApplication::beep();
}

void QtPlatform::print_text(const std::string& text) {
#ifdef TRACEFOLD_PRINTING
  // To the printer of the last print dialog, or straight to the default
  // printer, as the text box's own print does.
  if (!printer_) printer_ = std::make_shared<QPrinter>();
  QTextDocument document;
  document.setPlainText(q(text).replace("\r\n", "\n"));
  document.print(static_cast<QPrinter*>(printer_.get()));
#else
  (void)text;
  QApplication::beep();
#endif
}

bool QtPlatform::print_dialog(const PrintDialogRequest& request) {
#ifdef TRACEFOLD_PRINTING
  constexpr int selection_flag = 0x1;
  if (!printer_) printer_ = std::make_shared<QPrinter>();
  auto* printer = static_cast<QPrinter*>(printer_.get());
  QPrintDialog dialog(printer, box_parent());
  if (request.selection) dialog.setOption(QAbstractPrintDialog::PrintSelection);
  dialog.setPrintRange(request.flags & selection_flag ? QAbstractPrintDialog::Selection : QAbstractPrintDialog::AllPages);
  return dialog.exec() == QDialog::Accepted;
#else
  (void)request;
  return false;
#endif
}

bool QtPlatform::font_dialog(FontChoice& font) {
  QFont start(q(font.name));
  if (font.size > 0) start.setPointSizeF(font.size);
  start.setBold(font.bold);
  start.setItalic(font.italic);
  start.setUnderline(font.underline);
  start.setStrikeOut(font.strikeout);
  bool chosen = false;
  const QFont f = QFontDialog::getFont(&chosen, start, box_parent(), "Font");
  if (!chosen) return false;
  font.name = f.family().toStdString();
  font.size = f.pointSizeF();
  font.bold = f.bold();
  font.italic = f.italic();
  font.underline = f.underline();
  font.strikeout = f.strikeOut();
  return true;
}

int32_t QtPlatform::color_dialog(const std::string& title, int32_t color) {
  const QColor start(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
  const QColor chosen = QColorDialog::getColor(start, box_parent(), q(title));
  if (!chosen.isValid()) return color;  // a cancel keeps the start colour
  return chosen.red() | (chosen.green() << 8) | (chosen.blue() << 16);
}

// BMP and JPG through Qt's image readers. Qt reads no Windows metafile: a
// WMF is refused like a garbled file, and the former picture stays.
bool QtPlatform::load_picture(const std::string&, const std::string&, const std::string& file, int& width,
                              int& height) {
  QImageReader reader(q(file));
  const QImage image = reader.read();
  if (image.isNull()) return false;
  width = image.width();
  height = image.height();
  return true;
}

int QtPlatform::shell_execute(const ShellRequest& request) { return shell_start(request); }

std::string QtPlatform::find_executable(const std::string& document) { return tf::find_executable(document); }

void QtPlatform::panel_shown(const std::string& panel) {
  if (!app_) return;
  Panel* model = app_->panels.loaded(panel);
  if (!model) return;  // a panel not built yet: nothing to draw
  PanelWindow* w = window(panel);
  if (!w) {
    w = new PanelWindow(*this, *model);
    windows_[panel] = w;
  }
  if (!w->isVisible()) place_beside_main(*w);
  w->show();
  w->raise();
  w->activateWindow();
}

// A panel opens to the right of the main panel, each further one a step
// lower, so that the main panel stays in sight.
void QtPlatform::place_beside_main(PanelWindow& w) {
  PanelWindow* main = window(main_panel_);
  if (!main || main == &w) return;
  const int others = static_cast<int>(windows().size()) - 2;
  QPoint at = main->frameGeometry().topRight() + QPoint(12, 0) + QPoint(0, 32) * std::max(others, 0);
  if (QScreen* screen = main->screen()) {
    const QRect room = screen->availableGeometry();
    w.adjustSize();
    if (at.x() + w.width() > room.right()) at.setX(std::max(room.right() - w.width(), room.left()));
    if (at.y() + w.height() > room.bottom()) at.setY(std::max(room.bottom() - w.height(), room.top()));
  }
  w.move(at);
}

void QtPlatform::panel_unloaded(const std::string& panel) {
  auto it = windows_.find(panel);
  if (it != windows_.end()) {
    if (PanelWindow* w = it->second) {
      w->detach();
      w->hide();
      retired_.push_back(w);
    }
    windows_.erase(it);
  }
}

void QtPlatform::routine_requested(const std::string& routine) {
  qInfo() << "tracefold: no routine" << q(routine) << "in this build";
}

void QtPlatform::quit() {
  // The end of the program, whatever panels are open.
  quit_requested_ = true;
  for (auto& [name, w] : windows_)
    if (w) w->hide();
  QCoreApplication::exit(0);
}

std::string QtPlatform::application_folder() {
  if (application_folder_override) return *application_folder_override;
  return application_folder_of(QCoreApplication::applicationDirPath().toStdString());
}

std::string QtPlatform::system_folder() { return application_folder(); }

}  // namespace tf
