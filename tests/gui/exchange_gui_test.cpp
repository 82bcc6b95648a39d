// The exchange panels on the desktop: the Convert panel in each of its six
// modes (its caption, the byte-order frame only for SEG-Y to SU), and the
// SU to SEG-Y route through the widgets, whose success box goes by itself.
#include "gui_support.h"

using namespace gui;

namespace {
struct ModeShot {
  const char* mode;
  const char* caption;
};
constexpr ModeShot mode_shots[] = {
    {"SEGY2SU", " Conversion SEG-Y to SU"},      {"SU2SEGY", " Conversion SU to SEG-Y"},
    {"SEGD2SU", " Conversion SEG-D to SU "},     {"KGS2SU", " Conversion KGS-FPT to SU"},
    {"KGSI2SU", " Conversion KGS Integers to SU "}, {"SU2KGS", " Conversion SU to KGS_FPT"},
};
}  // namespace

TEST_F(Desktop, ConvertPanelTakesTheCaptionOfEachModeAndShowsTheFrameOnlyForSegyToSu) {
  for (const auto& m : mode_shots) {
    SCOPED_TRACE(m.mode);
    app->state.conversion_mode = m.mode;
    platform->run([&] { app->panels.show("Convert"); });
    settle();
    tf::Panel* panel = app->panels.loaded("Convert");
    ASSERT_NE(panel, nullptr);
    tf::PanelWindow& w = window("Convert");
    EXPECT_EQ(w.windowTitle(), q(m.caption));
    EXPECT_EQ(w.widget("Frame1")->isVisible(), std::string(m.mode) == "SEGY2SU");
    check_layout(w, *panel, m.mode);
    screenshot(&w, std::string("Convert_") + m.mode);
    w.close();
    settle();
  }
}

// The composed lines in a plain box answered by the user, then the success
// box that nobody answers: its timer closes it after three seconds and the
// panel unloads.
TEST_F(Desktop, SuToSegySuccessBoxClosesByItsTimer) {
  tf::test::TempDir data;
  std::vector<uint8_t> su(240 + 4 * 1024, 0);
  tf::test::put_trace_words(su, 0, 1, 1, 1024, 500);
  tf::test::write_bytes(data.file("line.su"), su);
  app->state.data_folder = data.str() + "/";
  app->state.conversion_mode = "SU2SEGY";
  platform->run([&] { app->panels.show("Convert"); });
  settle();
  QTest::keyClicks(widget<QLineEdit>("Convert", "Text1"), q(data.file("line.su")));
  QTest::keyClicks(widget<QLineEdit>("Convert", "Text2"), q(data.file("line.sgy")));
  screenshot(&window("Convert"), "Convert_SU2SEGY_filled");

  // Only the plain box is answered; the converter's box is left to its timer.
  answerer.enabled = false;
  std::vector<QString> titles;
  QPointer<QMessageBox> seen;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box || box == seen) return;
    seen = box;
    titles.push_back(box->windowTitle());
    if (box->windowTitle() != "Brenholt File converter") box->defaultButton()->click();
  });
  user.start(20);
  QElapsedTimer clock;
  clock.start();
  click(widget<QPushButton>("Convert", "Command2"));
  EXPECT_GE(clock.elapsed(), 2900);
  // The plain box of the lines; the start failure's box where no batch
  // interpreter sits beside this test; the converter's box.
  ASSERT_GE(titles.size(), 2u);
  EXPECT_EQ(titles.front(), "Tracefold 1.0");
  EXPECT_EQ(titles.back(), "Brenholt File converter");
  EXPECT_EQ(platform->window("Convert"), nullptr);
  EXPECT_EQ(app->panels.loaded("Convert"), nullptr);
}
