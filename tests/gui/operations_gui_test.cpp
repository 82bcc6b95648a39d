// The grid extraction on the desktop: a real table with the marked rows in
// colour, cell clicks that toggle, and a step of 0 that Quit still ends.
#include "gui_support.h"
#include "operations/extract.h"
#include "tools/su_generators.h"

namespace {

using namespace gui;

class GridDesktop : public Desktop {
 protected:
  void SetUp() override {
    tf::gen::write_su(data.file("line.su"), {.traces = 12, .samples = 8, .channels = 6});
    Desktop::SetUp();
    app->state.current_file = data.file("line.su");
    click(widget<QPushButton>("Utility", "Command13"));
  }
  QTableWidget* grid() { return widget<QTableWidget>("Extract", "Grid"); }
  void type_into(const std::string& control, const QString& text) {
    QLineEdit* field = widget<QLineEdit>("Extract", control);
    field->selectAll();
    QTest::keyClicks(field, text);
    settle();
  }
  void click_cell(int row, int col) {
    QTableWidget* g = grid();
    g->scrollToItem(g->item(row, col));
    QTest::mouseClick(g->viewport(), Qt::LeftButton, {}, g->visualItemRect(g->item(row, col)).center());
    settle();
  }
  QColor back(int row) { return grid()->item(row, 1)->background().color(); }
  tf::test::TempDir data;
};

// Step 3 from trace 2 marks rows 2, 5, 8 and 11 in the mark's colour; a
// click on row 3 marks it; Extract writes the marked records.
TEST_F(GridDesktop, MarkedRowsShowInColourAndClicksToggle) {
  QTableWidget* g = grid();
  ASSERT_EQ(g->rowCount(), 13);
  EXPECT_EQ(g->item(0, 1)->text(), "Extract");
  type_into("Text3", "3");
  type_into("Text4", "2");
  const QColor mark = QColor::fromRgb(tf::Extract::mark_color);
  for (int row = 1; row <= 12; ++row) {
    const bool marked = row % 3 == 2;
    EXPECT_EQ(g->item(row, 1)->text(), marked ? "yes" : "no") << row;
    EXPECT_EQ(back(row) == mark, marked) << row;
  }
  click_cell(3, 0);
  EXPECT_EQ(g->item(3, 1)->text(), "yes");
  EXPECT_EQ(back(3), mark);
  screenshot(&window("Extract"), "Extract_marked_rows");
  click_cell(5, 1);
  EXPECT_EQ(g->item(5, 1)->text(), "no");
  click(widget<QPushButton>("Extract", "Command3"));
  EXPECT_EQ(tf::test::read_bytes(data.file("line_ext.su")).size(), 4u * (240 + 32));  // rows 2, 3, 8 and 11
  ASSERT_FALSE(answerer.boxes.empty());
  EXPECT_TRUE(answerer.boxes.back().text.endsWith(" has been created "));
}

// A step of 0 loops for ever, yet the window stays live and Quit ends the
// program.
TEST_F(GridDesktop, StepZeroLoopsButQuitEndsTheProgram) {
  QPushButton* quit = widget<QPushButton>("Utility", "Command2");
  QObject timers;  // the timers go with the test
  QTimer::singleShot(300, &timers, [&] { quit->click(); });
  QTimer::singleShot(20000, &timers, [] { QCoreApplication::exit(1); });  // a quit that did not end the loop
  QTimer::singleShot(0, &timers, [&] { type_into("Text4", "3"); });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(platform->quit_requested());
}

}  // namespace
