// The radar panels in the desktop program: a public record chosen through
// the file dialog fills the fields and shows its header text in the pane.
#include "gui_support.h"

namespace gui {

namespace {
const std::string shared_data = TRACEFOLD_SHARED_DATA;
}

TEST_F(Desktop, RadarHeadersFillTheFieldsAndThePane) {
  if (!QFile::exists(q(shared_data + "/dt1")) || !QFile::exists(q(shared_data + "/rd3")))
    GTEST_SKIP() << "no public radar samples";
  const struct {
    const char* option;
    const char* panel;
    const char* open_button;
    std::string record;
    const char* field;
    const char* value;
    const char* header_line;
  } cases[] = {
      {"Option18", "DT1", "Command1", shared_data + "/dt1/gprpy_ComOffs/XLINE00.DT1", "Text8", "531",
       "NUMBER OF PTS/TRC  = 1500"},
      {"Option12", "Radar_F", "Command3", shared_data + "/rd3/ten_col.rd3", "Text4", ".1", "TIMEWINDOW:422.061312"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.panel);
    platform->file_chooser = [&](const tf::FileDialogRequest&) -> std::optional<QStringList> {
      return QStringList{q(c.record)};
    };
    click(widget<QRadioButton>("Utility", c.option));
    click(widget<QPushButton>(c.panel, c.open_button));
    EXPECT_EQ(widget<QLineEdit>(c.panel, c.field)->text(), c.value);
    EXPECT_TRUE(widget<QTextEdit>(c.panel, "RichTextBox1")->toPlainText().contains(c.header_line));
    check_layout(window(c.panel), *app->panels.loaded(c.panel), c.panel);
    screenshot(&window(c.panel), std::string(c.panel) + "_header_read");
  }
}

}  // namespace gui
