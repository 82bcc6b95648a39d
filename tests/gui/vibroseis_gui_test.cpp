// The vibrator panel in the desktop: the write runs from its button, the
// progress bar shows only while it runs, the window is gone when the final
// box comes, and an edit of a field reaches the file.
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

#include "gui_support.h"

namespace {

using namespace gui;

TEST_F(Desktop, VibratorWordsWrittenFromTheWindowThenItClosesBeforeTheBox) {
  tf::test::TempDir data;
  const std::string su = data.file("vib.su");
  std::vector<uint8_t> file(3 * (240 + 8), 0);
  for (size_t t = 0; t < 3; ++t) tf::test::put_at<int16_t>(file, t * 248 + 114, 2);
  tf::test::write_bytes(su, file);
  app->state.current_file = su;
  platform->run([&] { app->panels.show("vibro"); });
  settle();
  EXPECT_FALSE(widget<QProgressBar>("vibro", "ProgressBar1")->isVisible());
  auto* sweep_length = widget<QLineEdit>("vibro", "Text5");
  sweep_length->selectAll();
  QTest::keyClicks(sweep_length, "7x000");  // the x is dropped with a beep
  settle();
  bool window_open_at_box = true;
  answerer.while_box_is_up = [&] { window_open_at_box = platform->window("vibro") && platform->window("vibro")->isVisible(); };
  click(widget<QPushButton>("vibro", "Command1"));
  for (int i = 0; i < 50 && answerer.boxes.empty(); ++i) QTest::qWait(20);
  ASSERT_EQ(answerer.boxes.size(), 1u);
  EXPECT_EQ(answerer.boxes[0].text, "Header update done done !");
  EXPECT_EQ(answerer.boxes[0].icon, QMessageBox::Information);
  EXPECT_FALSE(window_open_at_box);
  auto bytes = tf::test::read_bytes(su);
  for (size_t t = 0; t < 3; ++t) EXPECT_EQ(tf::test::value_at<int16_t>(bytes, t * 248 + 130), 7000);
}

}  // namespace
