// The SEG-Y import panel on the desktop: the trace display painted on its
// picture with grey lobes, and the main panel's Quit during the marker wait.
#include <QImage>
#include <QPushButton>
#include <QTimer>
#include <cmath>
#include <filesystem>

#include "gui_support.h"
#include "ui/qt/picture_view.h"

using namespace gui;

namespace {

// conv_test.su of 24 traces of 1000 samples in the program's folder.
void write_record(const std::string& folder) {
  const size_t size = 240 + 4 * 1000;
  std::vector<uint8_t> su(size * 24, 0);
  for (int i = 0; i < 24; ++i) {
    tf::test::put_trace_words(su, size * i, 1, i + 1, 1000, 500);
    for (int k = 0; k < 1000; ++k)
      tf::test::put_at<float>(su, size * i + 240 + 4 * static_cast<size_t>(k),
                              static_cast<float>(std::sin(k * 0.04 + i * 0.3) * std::exp(-k * 0.002)));
  }
  tf::test::write_bytes(folder + "/conv_test.su", su);
}

void shell_tool(const std::string& path, const std::string& body) {
  tf::test::write_text(path, "#!/bin/sh\n" + body);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all, std::filesystem::perm_options::add);
}

}  // namespace

TEST_F(Desktop, SegyTraceDisplayPaintsWigglesWithGreyLobes) {
  write_record(app_dir.str());
  tf::Panel* segy = app->panels.show("SEGY");
  settle();
  segy->set_text("Text5", "24");
  segy->set_text("Text13", "3");
  settle();
  auto* view = window("SEGY").picture("ecran");
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(view->size(), QSize(480, 360));
  const QImage image = view->grab().toImage();
  int grey = 0, black = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      const QRgb p = image.pixel(x, y);
      grey += p == qRgb(0x80, 0x80, 0x80);
      black += p == qRgb(0, 0, 0);
    }
  EXPECT_GT(grey, 1000);
  EXPECT_GT(black, 1000);
  screenshot(&window("SEGY"), "SEGY_display");
}

// A SEGYREAD that hangs: the marker never comes, and Quit ends the wait.
TEST_F(Desktop, QuitEndsTheSegyMarkerWait) {
  shell_tool(app_dir.file("SEGYREAD"), "exec sleep 20\n");
  shell_tool(app_dir.file("SEGYCLEAN"), "exec cat\n");
  tf::Panel* segy = app->panels.show("SEGY");
  settle();
  const std::string data = "/work/shared/data/segy/";
  segy->add_item("List1", data + "Format1lsb.sgy");
  segy->add_item("List1", data + "Format5lsb.sgy");
  segy->set_text("Text11", "2");
  segy->set_text("Text2", app_dir.file("o.su"));
  std::chrono::steady_clock::time_point quit_at;
  QTimer::singleShot(0, [&] { click(widget<QPushButton>("SEGY", "Command2")); });
  QTimer::singleShot(1500, [&] {
    quit_at = std::chrono::steady_clock::now();
    click(widget<QPushButton>("Utility", "Command2"));
  });
  QTimer::singleShot(20000, [] { QCoreApplication::exit(1); });  // a wait that Quit did not end
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - quit_at, std::chrono::seconds(1));
  EXPECT_TRUE(platform->quit_requested());
  EXPECT_FALSE(std::filesystem::exists(app_dir.file("1.tmp")));
}
