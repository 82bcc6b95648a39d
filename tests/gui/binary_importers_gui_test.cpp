// The generic binary and Dolang panels on the desktop: the grid of the
// selection as a table, and conversions through the widgets that give the
// bytes of the headless runner.
#include "gui_support.h"
#include "tools/binary_record_generators.h"

namespace gui {

namespace {
// Selects all the text of a field and types over it.
void retype(QLineEdit* field, const std::string& text) {
  field->selectAll();
  QTest::keyClicks(field, q(text));
}
}  // namespace

TEST_F(Desktop, GenericBinaryGridShowsTheSelectionAndConvertsLikeTheRunner) {
  tf::test::TempDir data;
  tf::gen::BinaryLayout layout;
  layout.samples = 100;
  const std::string rec1 = tf::gen::write_binary(data.str(), 1, layout), rec2 = tf::gen::write_binary(data.str(), 2, layout);
  platform->file_chooser = [&](const tf::FileDialogRequest&) -> std::optional<QStringList> {
    return QStringList{q(rec1), q(rec2)};
  };
  click(widget<QRadioButton>("Utility", "Option7"));
  click(widget<QPushButton>("sisforme", "Command5"));
  auto* grid = widget<QTableWidget>("sisforme", "Grid1");
  ASSERT_EQ(grid->rowCount(), 1);
  ASSERT_EQ(grid->columnCount(), 3);
  EXPECT_EQ(grid->item(0, 0)->text(), q(data.str() + "/"));
  EXPECT_EQ(grid->item(0, 1)->text(), "rec001.bin");
  EXPECT_EQ(grid->item(0, 2)->text(), "rec002.bin");
  EXPECT_EQ(widget<QLineEdit>("sisforme", "Text6")->text(), "2");
  const std::string gui_out = data.file("through_widgets.su"), headless_out = data.file("headless.su");
  retype(widget<QLineEdit>("sisforme", "Text3"), "3");
  retype(widget<QLineEdit>("sisforme", "Text4"), "100");
  retype(widget<QLineEdit>("sisforme", "Text7"), "512");
  retype(widget<QLineEdit>("sisforme", "Text8"), "64");
  retype(widget<QLineEdit>("sisforme", "Text2"), gui_out);
  click(widget<QPushButton>("sisforme", "Command6"));
  // (4 x 100 + 64) x 3 + 512; file_in is a bare name, whose length is not
  // read, so the header size stays.
  EXPECT_EQ(widget<QLineEdit>("sisforme", "Text9")->text(), "1904");
  EXPECT_EQ(widget<QLineEdit>("sisforme", "Text7")->text(), "512");
  screenshot(&window("sisforme"), "sisforme_files_selected");

  bool bar_shown = false;
  answerer.while_box_is_up = [&] {
    tf::PanelWindow* w = platform->window("sisforme");
    if (w) bar_shown = w->widget("ProgressBar1")->isVisible();
  };
  click(widget<QPushButton>("sisforme", "Command1"));
  ASSERT_EQ(answerer.boxes.size(), 1u);
  EXPECT_EQ(answerer.boxes[0].text, "OK, Conversion done");
  EXPECT_FALSE(bar_shown);  // hidden again before the box
  ASSERT_NE(platform->window("sisforme"), nullptr);  // the panel stays open

  auto headless = tf::test::run("click Utility.Option7\ndialog \"" + data.str() + "/ rec001.bin rec002.bin\"\n"
                                "click sisforme.Command5\nset sisforme.Text3 \"3\"\nset sisforme.Text4 \"100\"\n"
                                "set sisforme.Text7 \"512\"\nset sisforme.Text8 \"64\"\n"
                                "set sisforme.Text2 \"" + headless_out + "\"\nclick sisforme.Command1\n");
  ASSERT_TRUE(headless.has({"\"event\":\"msgbox\"", "OK, Conversion done"}));
  EXPECT_EQ(tf::test::read_bytes(gui_out).size(), 6u * (240 + 400));
  EXPECT_TRUE(tf::test::read_bytes(gui_out) == tf::test::read_bytes(headless_out));
}

TEST_F(Desktop, DolangListsTheChannelFilesAndReadsTheInfoFile) {
  tf::test::TempDir data;
  tf::gen::DolangLayout layout;
  layout.channels = 6, layout.samples = 40;
  const std::string adt = tf::gen::write_dolang(data.str(), 1, layout);
  int dialogs = 0;
  platform->file_chooser = [&](const tf::FileDialogRequest&) -> std::optional<QStringList> {
    if (dialogs++) return QStringList{q(adt)};
    QStringList all{q(adt)};
    for (int c = 1; c <= layout.channels; ++c) all << q(data.file(tf::gen::dolang_channel_name(1, c)));
    return all;
  };
  click(widget<QRadioButton>("Utility", "Option6"));
  click(widget<QPushButton>("DOLANG", "Command6"));
  EXPECT_EQ(dialogs, 2);
  EXPECT_EQ(widget<QListWidget>("DOLANG", "List1")->count(), 6);
  EXPECT_EQ(widget<QLineEdit>("DOLANG", "Text4")->text(), "500");
  EXPECT_EQ(widget<QLineEdit>("DOLANG", "Text6")->text(), "40");
  screenshot(&window("DOLANG"), "DOLANG_channels_selected");
  click(widget<QPushButton>("DOLANG", "Command1"));
  ASSERT_EQ(answerer.boxes.size(), 1u);
  EXPECT_EQ(answerer.boxes[0].text, "OK Conversion done");
  EXPECT_EQ(answerer.boxes[0].icon, QMessageBox::Information);
  EXPECT_EQ(tf::test::read_bytes(data.file("shot001.SU")).size(), 6u * (240 + 160));
}

}  // namespace gui
