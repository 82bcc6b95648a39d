// The desktop front end through its real widgets, on the offscreen platform:
// every panel drawn with each control visible, labelled and apart from its
// neighbours (a screenshot of each goes to the build folder), the boxes and
// dialogs as the panels ask for them, and the ES-1225 conversion run by
// clicks giving the very bytes of the headless runner.
#include "gui_support.h"
#include "frame/helpers.h"

namespace {

using namespace gui;

// An installed program in bin has the application folder above it.
TEST(ApplicationFolder, IsAboveBin) {
  EXPECT_EQ(tf::application_folder_of("/opt/tracefold/bin"), "/opt/tracefold");
  EXPECT_EQ(tf::application_folder_of("/home/me/build"), "/home/me/build");
}

// The third tab shows manual/utility.rtf of the application folder as text.
TEST_F(Desktop, MainPanelShowsEveryControlOnEachOfItsTabs) {
  tf::test::write_text(app_dir.file("manual/utility.rtf"),
                       "{\\rtf1\\ansi{\\fonttbl{\\f0\\fswiss Arial;}}{\\colortbl;\\red0\\green0\\blue0;}\n"
                       "\\f0\\fs20 {\\b Tracefold} utility\\par Select the type of file and press on CONVERT\\par "
                       "Caf\\'e9\\tab end\\par}");
  tf::PanelWindow& main = window("Utility");
  tf::Panel& utility = *app->panels.loaded("Utility");
  EXPECT_EQ(main.windowTitle(), "Tracefold 1.2");
  EXPECT_TRUE(main.isVisible());
  EXPECT_EQ(widget<QTabWidget>("Utility", "SSTab1")->currentIndex(), 1);  // it opens on the second tab
  const char* const shots[] = {"Utility_tab0_general_modules", "Utility_tab1_field_record_conversion",
                               "Utility_tab2_info"};
  for (int tab : {0, 1, 2}) {
    open_tab("Utility", "SSTab1", tab);
    EXPECT_EQ(utility["SSTab1"].value, tab);
    check_layout(main, utility, "tab " + std::to_string(tab));
    screenshot(&main, shots[tab]);
  }
  EXPECT_EQ(widget<QTextEdit>("Utility", "RichTextBox1")->toPlainText(),
            QString::fromUtf8("Tracefold utility\nSelect the type of file and press on CONVERT\nCaf\xC3\xA9\tend\n"));
  // Each frame is its own group: options of two frames stay set together.
  open_tab("Utility", "SSTab1", 1);
  auto* seg2_viewer = widget<QRadioButton>("Utility", "Option34");
  auto* binpatch = widget<QRadioButton>("Utility", "Option30");
  auto* ascii = widget<QRadioButton>("Utility", "Option24");
  for (auto* option : {ascii, binpatch, seg2_viewer, seg2_viewer}) click(option);
  EXPECT_FALSE(binpatch->isChecked());
  EXPECT_TRUE(seg2_viewer->isChecked());
  EXPECT_TRUE(ascii->isChecked());
}

TEST_F(Desktop, EveryRegisteredPanelIsDrawnFromItsModel) {
  for (const std::string& name : app->panels.names()) {
    if (name == "Utility") continue;
    SCOPED_TRACE(name);
    platform->run([&] { app->panels.show(name); });
    settle();
    tf::Panel* panel = app->panels.loaded(name);
    ASSERT_NE(panel, nullptr);
    tf::PanelWindow& w = window(name);
    EXPECT_EQ(w.windowTitle(), q(panel->caption()));
    std::vector<std::pair<std::string, int>> pages;
    for (auto& c : panel->controls())
      if (c->kind == Kind::tabs)
        for (int page = 0; page < static_cast<int>(c->items.size()); ++page) pages.push_back({c->name, page});
    if (pages.empty()) {
      check_layout(w, *panel, name);
      screenshot(&w, name);
    }
    for (const auto& [tabs, page] : pages) {
      open_tab(name, tabs, page);
      check_layout(w, *panel, name + " tab " + std::to_string(page));
      screenshot(&w, name + "_" + tabs + "_" + std::to_string(page));
    }
    // Closing the window unloads the panel.
    w.close();
    settle();
    EXPECT_EQ(app->panels.loaded(name), nullptr);
    EXPECT_EQ(platform->window(name), nullptr);
  }
}

// The pointer over a button sets its bold and hover caption for good and
// its help in Text1; over the tab itself the bold goes from the tab's list
// (which has no Command8). An option is bold until the pointer is over its frame.
TEST_F(Desktop, HoverSetsBoldAndCaptionForGoodAndFillsTheHelpBox) {
  open_tab("Utility", "SSTab1", 0);
  auto* reverse = widget<QPushButton>("Utility", "Commandp12");
  auto* fbp = widget<QPushButton>("Utility", "Command8");
  EXPECT_EQ(reverse->text(), "Reverse channel order in selected SU file");
  hover(reverse);
  EXPECT_TRUE(reverse->font().bold());
  hover(fbp);
  EXPECT_EQ(widget<QPlainTextEdit>("Utility", "Text1")->toPlainText(),
            "This module can remove all or time limited FBP values from SU header\n");
  hover(widget<QTabWidget>("Utility", "SSTab1")->tabBar());
  EXPECT_FALSE(reverse->font().bold());
  EXPECT_TRUE(fbp->font().bold());
  EXPECT_EQ(reverse->text(), "Reverse channel in selected SU file");
  check_layout(window("Utility"), *app->panels.loaded("Utility"), "after hovers");
  screenshot(&window("Utility"), "Utility_tab0_after_hover");

  open_tab("Utility", "SSTab1", 1);
  auto* es1225 = widget<QRadioButton>("Utility", "Option4");
  hover(es1225);
  EXPECT_TRUE(es1225->font().bold());
  auto* frame = widget<QGroupBox>("Utility", "Frame1");
  hover(frame, QPoint(frame->width() - 4, frame->height() - 4));
  EXPECT_FALSE(es1225->font().bold());
}

TEST_F(Desktop, BoxesShowTheIconButtonsAndTitleOfEachCall) {
  using B = QMessageBox;
  const struct {
    tf::Icon icon;
    tf::Buttons buttons;
    std::string title;  // "" for the default
    B::Icon shown_icon;
    QList<B::StandardButton> shown_buttons;  // the default first, which is also the order of their values
    B::StandardButton reply;
    tf::Answer answer;
  } cases[] = {
      {tf::Icon::stop, tf::Buttons::ok, "", B::Critical, {B::Ok}, B::Ok, tf::Answer::ok},
      {tf::Icon::question, tf::Buttons::yes_no, "Cleavit", B::Question, {B::Yes, B::No}, B::No, tf::Answer::no},
      {tf::Icon::exclamation, tf::Buttons::ok_cancel, "", B::Warning, {B::Ok, B::Cancel}, B::Cancel, tf::Answer::cancel},
      {tf::Icon::information, tf::Buttons::abort_retry_ignore, "", B::Information, {B::Abort, B::Retry, B::Ignore},
       B::Ignore, tf::Answer::ignore},
  };
  for (const auto& c : cases) {
    answerer.boxes.clear();
    answerer.replies = {c.reply};
    tf::MessageBoxRequest request;
    request.text = "Wrong file length";
    request.icon = c.icon;
    request.buttons = c.buttons;
    if (!c.title.empty()) request.title = c.title;
    EXPECT_EQ(platform->message_box(request), c.answer);
    ASSERT_EQ(answerer.boxes.size(), 1u);
    const auto& box = answerer.boxes[0];
    EXPECT_EQ(box.text, "Wrong file length");
    EXPECT_EQ(box.title, q(c.title.empty() ? "Tracefold 1.0" : c.title));
    EXPECT_EQ(box.icon, c.shown_icon);
    EXPECT_EQ(box.default_button, c.shown_buttons.front());
    EXPECT_EQ(box.buttons, c.shown_buttons);
  }
  // Input boxes give the text typed; a cancel gives "".
  answerer.inputs = {QString("3"), std::nullopt};
  EXPECT_EQ(platform->input_box({}), "3");
  EXPECT_EQ(platform->input_box({}), "");

  // The success box goes by itself when its timer runs out.
  answerer.enabled = false;
  bool rescued = false;
  QTimer::singleShot(15000, [&] {
    rescued = true;
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) box->defaultButton()->click();
  });
  tf::MessageBoxRequest done;
  done.text = "Conversion done";
  done.autoclose_ms = 3000;
  QElapsedTimer clock;
  clock.start();
  EXPECT_EQ(platform->message_box(done), tf::Answer::ok);
  EXPECT_FALSE(rescued);
  EXPECT_GE(clock.elapsed(), 2900);
}

// The real dialog: the filters of the text form, multiple selection with
// flags 512, the start name given back on a cancel, a typed name otherwise.
TEST_F(Desktop, FileDialogsShowTheFiltersAndGiveTheTextOfTheSelection) {
  tf::test::TempDir data;
  const std::string first = tf::gen::write_es1225(data.str(), 1, {});
  QString title;
  QStringList filters;
  QFileDialog::FileMode file_mode = QFileDialog::AnyFile;
  answerer.on_file_dialog = [&](QFileDialog& d) {
    title = d.windowTitle(), filters = d.nameFilters(), file_mode = d.fileMode();
    d.reject();
  };
  tf::FileDialogRequest open;
  open.title = "ES1225 file selection";
  open.filter = "Record |*.dat|All files|*.*|";
  open.file_name = "*.dat";
  open.initial_dir = data.str();
  open.flags = 512;
  EXPECT_EQ(platform->file_dialog(open), "*.dat");
  EXPECT_EQ(title, "ES1225 file selection");
  EXPECT_EQ(filters, QStringList({"Record (*.dat)", "All files (*.*)"}));
  EXPECT_EQ(file_mode, QFileDialog::ExistingFiles);
  answerer.on_file_dialog = [&](QFileDialog& d) {
    file_mode = d.fileMode();
    if (auto* name = d.findChild<QLineEdit*>("fileNameEdit")) name->setText(q(first));
    static_cast<QDialog&>(d).accept();
  };
  open.flags = 0;
  EXPECT_EQ(platform->file_dialog(open), first);
  EXPECT_NE(file_mode, QFileDialog::ExistingFiles);
}

// Records selected, a dropped key, the output name typed and Convert
// clicked, all through the widgets: the bytes are the headless runner's.
TEST_F(Desktop, Es1225ConversionThroughTheWidgetsGivesTheBytesOfTheHeadlessRunner) {
  tf::test::TempDir data;
  const std::string rec1 = tf::gen::write_es1225(data.str(), 1, {}), rec2 = tf::gen::write_es1225(data.str(), 2, {});
  const std::string gui_out = data.file("through_widgets.su"), headless_out = data.file("headless.su");
  std::vector<tf::FileDialogRequest> dialogs;
  platform->file_chooser = [&](const tf::FileDialogRequest& r) -> std::optional<QStringList> {
    dialogs.push_back(r);
    return QStringList{q(rec1), q(rec2)};
  };
  click(widget<QRadioButton>("Utility", "Option4"));
  click(widget<QPushButton>("es1225", "Command3"));
  ASSERT_EQ(dialogs.size(), 1u);
  EXPECT_EQ(dialogs[0].flags, 512);
  const std::string selection = data.str() + "/ rec001.dat rec002.dat";
  EXPECT_EQ(app->state.file_in, selection);
  EXPECT_EQ(widget<QListWidget>("es1225", "List1")->count(), 2);
  EXPECT_EQ(widget<QLineEdit>("es1225", "Text3")->text(), "2");
  QTest::keyClicks(widget<QLineEdit>("es1225", "Text5"), "x");  // a number field drops it with a beep
  EXPECT_EQ(platform->beeps, 1);
  auto* out = widget<QLineEdit>("es1225", "Text2");
  EXPECT_EQ(out->text(), q(data.file("es1225.su")));
  out->selectAll();
  QTest::keyClicks(out, q(gui_out));
  EXPECT_EQ(app->panels.loaded("es1225")->text("Text2"), gui_out);
  screenshot(&window("es1225"), "es1225_records_selected");

  int progress = -1, progress_max = -1;
  answerer.while_box_is_up = [&] {
    tf::PanelWindow* w = platform->window("es1225");
    auto* bar = w ? qobject_cast<QProgressBar*>(w->widget("ProgressBar1")) : nullptr;
    if (bar) progress = bar->value(), progress_max = bar->maximum();
  };
  click(widget<QPushButton>("es1225", "Command1"));
  ASSERT_EQ(answerer.boxes.size(), 1u);
  EXPECT_EQ(answerer.boxes[0].text, "Conversion done");
  EXPECT_EQ(answerer.boxes[0].title, "Tracefold 1.0");
  EXPECT_EQ(answerer.boxes[0].icon, QMessageBox::NoIcon);
  EXPECT_EQ(std::pair(progress, progress_max), std::pair(2, 2));
  // The panel unloads at the end and its window goes with it.
  EXPECT_EQ(platform->window("es1225"), nullptr);
  EXPECT_EQ(app->panels.loaded("es1225"), nullptr);

  auto headless = tf::test::run("click Utility.Option4\ndialog \"" + selection + "\"\nclick es1225.Command3\n"
                                "set es1225.Text2 \"" + headless_out + "\"\nclick es1225.Command1\n");
  ASSERT_TRUE(headless.has({"\"event\":\"msgbox\"", "Conversion done"}));
  EXPECT_EQ(tf::test::read_bytes(gui_out).size(), 24u * (240 + 4000) + 4);
  EXPECT_TRUE(tf::test::read_bytes(gui_out) == tf::test::read_bytes(headless_out));
}

// The Info tab shows the program's own manual.
TEST_F(Desktop, InfoTabShowsTheManual) {
  std::filesystem::create_directories(app_dir.file("manual"));
  std::filesystem::copy_file(std::string(TRACEFOLD_MANUALS) + "/utility.rtf", app_dir.file("manual/utility.rtf"));
  open_tab("Utility", "SSTab1", 2);
  const QString text = widget<QTextEdit>("Utility", "RichTextBox1")->toPlainText();
  EXPECT_TRUE(text.startsWith("Tracefold - the field record utility\n")) << text.left(80).toStdString();
  for (const char* part : {"1. The main panel", "4. The batch road and the Seismic Unix tools", "6. Working without a screen",
                           "Larvex32.INI", "File conversion error N\u00b0"})
    EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << part;
  screenshot(&window("Utility"), "Utility_tab2_info_manual");
}

// What a newcomer meets first: boxes that show their whole title, panels
// beside the main panel, and the two idle options drawn small.
TEST_F(Desktop, BoxesShowTheirTitlePanelsOpenBesideTheMainPanel) {
  int box_width = 0, title_width = 0;
  answerer.while_box_is_up = [&] {
    QWidget* box = QApplication::activeModalWidget();
    box_width = box->width();
    title_width = QFontMetrics(QApplication::font("QMdiSubWindowTitleBar")).horizontalAdvance(box->windowTitle());
  };
  platform->run([&] { tf::message(*platform, "OK"); });
  EXPECT_GE(box_width, title_width + 100);

  click(widget<QRadioButton>("Utility", "Option5"));
  const QRect main = window("Utility").frameGeometry(), panel = window("abem").frameGeometry();
  const QRect room = window("Utility").screen()->availableGeometry();
  if (room.width() >= main.width() + panel.width() + 12) EXPECT_FALSE(main.intersects(panel));
  EXPECT_GT(panel.left(), main.left());

  open_tab("Utility", "SSTab1", 1);
  for (const char* idle : {"Option21", "Option22"}) {
    auto* tiny = widget<QRadioButton>("Utility", idle);
    EXPECT_TRUE(tiny->isVisible());
    EXPECT_LT(tiny->font().pointSizeF(), widget<QRadioButton>("Utility", "Option4")->font().pointSizeF() * 0.7);
  }
}

// A cancelled selection and Convert bring the retry box back after every OK.
// The box blocks its own panel only: the main panel's Quit ends the program
// from under the loop at once.
TEST_F(Desktop, QuitEndsARepeatingBoxLoop) {
  click(widget<QRadioButton>("Utility", "Option5"));
  click(widget<QPushButton>("abem", "Command4"));  // the dialog is cancelled
  QPushButton* quit = widget<QPushButton>("Utility", "Command2");
  std::chrono::steady_clock::time_point quit_at;
  answerer.while_box_is_up = [&] {
    QWidget* box = QApplication::activeModalWidget();
    if (answerer.boxes.size() != 3 || !box) return;
    EXPECT_EQ(box->windowModality(), Qt::WindowModal);
    EXPECT_EQ(box->parentWidget(), &window("abem"));
    EXPECT_TRUE(quit->isEnabled());
    quit_at = std::chrono::steady_clock::now();
    click(quit);
  };
  QTimer::singleShot(0, [&] { click(widget<QPushButton>("abem", "Command1")); });
  QTimer::singleShot(20000, [] { QCoreApplication::exit(1); });  // a loop that Quit did not end
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - quit_at, std::chrono::seconds(1));
  ASSERT_GE(answerer.boxes.size(), 3u);
  EXPECT_TRUE(answerer.boxes[0].text.startsWith(QString::fromUtf8("File conversion error N\u00b0 ")));
  EXPECT_EQ(answerer.boxes[0].text, answerer.boxes[2].text);
  EXPECT_TRUE(platform->quit_requested());
  EXPECT_EQ(app->panels.loaded("Utility"), nullptr);
}

// Last: the end of the program.
TEST_F(Desktop, QuitEndsTheProgramWhateverPanelsAreOpen) {
  click(widget<QRadioButton>("Utility", "Option4"));
  ASSERT_NE(platform->window("es1225"), nullptr);
  QPushButton* quit = widget<QPushButton>("Utility", "Command2");
  QTimer::singleShot(0, [&] { click(quit); });
  QTimer::singleShot(20000, [] { QCoreApplication::exit(1); });  // a quit that did not end the loop
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(platform->quit_requested());
  EXPECT_EQ(app->panels.loaded("Utility"), nullptr);
  for (tf::PanelWindow* w : platform->windows()) EXPECT_FALSE(w->isVisible()) << w->panel_name();
}

}  // namespace

int main(int argc, char** argv) {
  // No display needed: the offscreen platform unless one is asked for.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
