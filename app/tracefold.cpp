// The desktop program: the main panel and every panel drawn from its model.
// It takes no arguments; Quit on the main panel ends it.
#include <QApplication>
#include <QIcon>

#include "frame/panel.h"
#include "ui/qt/qt_platform.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("tracefold");
  QApplication::setWindowIcon(QIcon(":/tracefold.png"));
  // The program ends by the unload of the main panel, not by its last window.
  QApplication::setQuitOnLastWindowClosed(false);
  tf::QtPlatform platform;
  tf::App app(platform);
  platform.attach(app);
  platform.start("Utility");
  return QApplication::exec();
}
