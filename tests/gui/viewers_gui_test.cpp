// The viewers in the desktop app: the explorer reading a word through its
// widgets, the editor on a batch file with its menus and toolbar, and the
// digitiser with a picture and clicked points drawn on it.
#include "gui_support.h"
#include "ui/qt/picture_view.h"

using namespace gui;

namespace {

// An SU file of two traces of 10 samples, ns and dt in the first header.
std::string write_su(const tf::test::TempDir& dir) {
  std::vector<uint8_t> file(2 * (240 + 40), 0);
  tf::test::put_at<int16_t>(file, 114, 10);
  tf::test::put_at<int16_t>(file, 116, 250);
  tf::test::write_bytes(dir.file("line.su"), file);
  return dir.file("line.su");
}

QPoint on_picture(tf::PictureView* view, double x, double y) { return view->to_pixel(x, y).toPoint(); }

}  // namespace

TEST_F(Desktop, ExplorerReadsTheWordOfTheFileThroughItsWidgets) {
  tf::test::TempDir data;
  app->state.current_file = write_su(data);
  click(widget<QPushButton>("Utility", "Command4"));
  EXPECT_EQ(widget<QLineEdit>("pick", "Text4")->text(), "560");
  EXPECT_EQ(widget<QComboBox>("pick", "Combo1")->count(), 79);
  click(widget<QPushButton>("pick", "Command2"));
  EXPECT_EQ(widget<QLineEdit>("pick", "Text3")->text(), "10");
  EXPECT_EQ(widget<QLineEdit>("pick", "Text2")->text(), "115");
  EXPECT_TRUE(widget<QLineEdit>("pick", "Text2")->isReadOnly());
  click(widget<QRadioButton>("pick", "Option3"));
  EXPECT_FALSE(widget<QLineEdit>("pick", "Text2")->isReadOnly());
  EXPECT_FALSE(widget<QComboBox>("pick", "Combo1")->isEnabled());
  click(widget<QRadioButton>("pick", "Option1"));
  check_layout(window("pick"), *app->panels.loaded("pick"), "pick");
  screenshot(&window("pick"), "viewers_pick_read");
}

TEST_F(Desktop, EditorShowsABatchFileWithItsMenusAndToolbar) {
  tf::test::TempDir data;
  const std::string batch = data.file("run.bat");
  tf::test::write_text(batch, "segyread tape=line.sgy > line.su\r\nsuwind < line.su > part.su key=tracf min=1 max=24\r\n");
  app->state.current_file = batch;
  click(widget<QPushButton>("Utility", "Command4"));
  click(widget<QPushButton>("pick", "Command4"));
  tf::PanelWindow& w = window("editor");
  EXPECT_EQ(w.windowTitle(), q("Brenholt text editor: " + batch));
  auto* text = widget<QTextEdit>("editor", "RichTextBox1");
  EXPECT_EQ(text->toPlainText(), "segyread tape=line.sgy > line.su\nsuwind < line.su > part.su key=tracf min=1 max=24\n");
  EXPECT_EQ(widget<QLabel>("editor", "Label3")->text(), "Lines: 3");
  auto* bar = widget<QToolBar>("editor", "Toolbar1");
  ASSERT_EQ(bar->actions().size(), 5);
  EXPECT_EQ(bar->actions()[2]->toolTip(), "Record the history file");
  // Find by the menu: the selection in the widget is the match.
  answerer.inputs.push_back(QString("line.su"));
  w.action("Find")->trigger();
  settle();
  EXPECT_EQ(text->textCursor().selectedText(), "line.su");
  EXPECT_EQ(text->textCursor().selectionStart(), 25);
  // Typing in the box reaches the model.
  w.activateWindow();
  text->setFocus();
  text->moveCursor(QTextCursor::End);
  QTest::keyClicks(text, "exit");
  EXPECT_EQ(app->panels.loaded("editor")->text("RichTextBox1").substr(0, 10), "segyread t");
  EXPECT_TRUE(app->panels.loaded("editor")->text("RichTextBox1").ends_with("\r\nexit"));
  check_layout(w, *app->panels.loaded("editor"), "editor");
  screenshot(&w, "viewers_editor_batch");
}

TEST_F(Desktop, DigitiserShowsAPictureAndTheLinesBetweenClickedPoints) {
  tf::test::TempDir data;
  QImage map(300, 200, QImage::Format_RGB32);
  map.fill(QColor(230, 240, 220));
  QPainter painter(&map);
  painter.setPen(QPen(QColor(60, 90, 160), 3));
  for (int y = 20; y < 200; y += 40) painter.drawLine(0, y, 300, y + 30);  // contour lines
  painter.end();
  const std::string bmp = data.file("map.bmp"), jpg = data.file("photo.jpg"), wmf = data.file("plan.wmf");
  ASSERT_TRUE(map.save(q(bmp), "BMP"));
  const bool jpeg = map.scaled(120, 80).save(q(jpg), "JPG");
  tf::test::write_bytes(wmf, {0xD7, 0xCD, 0xC6, 0x9A, 0, 0});
  std::string chosen;
  platform->file_chooser = [&](const tf::FileDialogRequest&) -> std::optional<QStringList> { return QStringList{q(chosen)}; };

  click(widget<QPushButton>("Utility", "Command22"));
  tf::PanelWindow& w = window("digit");
  tf::PictureView* view = w.picture("Image2");
  ASSERT_NE(view, nullptr);
  if (jpeg) {
    chosen = jpg;
    click(widget<QPushButton>("digit", "Commandx1"));
    EXPECT_EQ(view->size(), QSize(120, 80));
  }
  chosen = bmp;
  click(widget<QPushButton>("digit", "Commandx1"));
  EXPECT_EQ(view->size(), QSize(300, 200));
  // A metafile is refused: the bitmap stays.
  chosen = wmf;
  click(widget<QPushButton>("digit", "Commandx1"));
  EXPECT_EQ(view->size(), QSize(300, 200));
  EXPECT_EQ(app->panels.loaded("digit")->find("Image2")->text, bmp);

  // Scale 0..1000 by 0..500: the first click starts the session at Z 100.
  auto set_field = [&](const char* name, const char* value) {
    auto* field = widget<QLineEdit>("digit", name);
    field->selectAll();
    QTest::keyClicks(field, value);
  };
  set_field("TextX4", "1000");
  set_field("TextX5", "500");
  answerer.inputs.push_back(QString("100"));
  QTest::mouseClick(view, Qt::LeftButton, {}, on_picture(view, 100, 400));
  settle();
  for (auto [x, y] : {std::pair{100.0, 400.0}, {400.0, 250.0}, {700.0, 350.0}, {900.0, 100.0}}) {
    QTest::mouseClick(view, Qt::LeftButton, {}, on_picture(view, x, y));
    settle();
  }
  QMouseEvent move(QEvent::MouseMove, QPointF(on_picture(view, 500, 250)), view->mapToGlobal(QPointF(on_picture(view, 500, 250))),
                   Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(view, &move);
  settle();
  EXPECT_EQ(widget<QLineEdit>("digit", "TextX6")->text(), "X= 500  Y= 250");
  EXPECT_EQ(app->panels.loaded("digit")->find("Image2")->lines.size(), 3u);
  EXPECT_EQ(tf::test::split_lines(tf::test::text_of(data.file("100.dat"))).size(), 4u);
  check_layout(w, *app->panels.loaded("digit"), "digit");
  screenshot(&w, "viewers_digit_points");
}
