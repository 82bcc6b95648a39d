// What the desktop tests share: boxes answered as a user at the screen
// would, screenshots, the layout check of a panel window, and the fixture
// that starts the program on its main panel.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>
#include <algorithm>
#include <deque>
#include <optional>

#include "../test_support.h"
#include "tools/record_generators.h"
#include "ui/qt/panel_window.h"
#include "ui/qt/qt_platform.h"

namespace gui {

using tf::Kind;

inline void settle() {
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

inline QString q(const std::string& s) { return QString::fromStdString(s); }

// Answers the boxes that a handler opens, as a user at the screen would,
// and keeps what each box showed.
class BoxAnswerer : public QObject {
 public:
  struct Box {
    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QList<QMessageBox::StandardButton> buttons;  // in the order of their values
    QMessageBox::StandardButton default_button = QMessageBox::NoButton;
  };
  std::vector<Box> boxes;
  std::deque<QMessageBox::StandardButton> replies;  // else the default button
  std::deque<std::optional<QString>> inputs;        // nullopt: cancel
  std::function<void(QFileDialog&)> on_file_dialog;
  std::function<void()> while_box_is_up;
  bool enabled = true;

  BoxAnswerer() {
    connect(&timer_, &QTimer::timeout, this, [this] { answer(); });
    timer_.start(20);
  }

 private:
  void answer() {
    if (!enabled) return;
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* box = qobject_cast<QMessageBox*>(modal)) {
      Box seen{box->windowTitle(), box->text(), box->icon(), {}, box->standardButton(box->defaultButton())};
      for (QAbstractButton* b : box->buttons()) seen.buttons << box->standardButton(b);
      std::sort(seen.buttons.begin(), seen.buttons.end());
      boxes.push_back(seen);
      if (while_box_is_up) while_box_is_up();
      QAbstractButton* pick = box->defaultButton();
      if (!replies.empty()) pick = box->button(replies.front()), replies.pop_front();
      if (pick) pick->click();
    } else if (auto* input = qobject_cast<QInputDialog*>(modal)) {
      std::optional<QString> reply = inputs.empty() ? std::nullopt : inputs.front();
      if (!inputs.empty()) inputs.pop_front();
      if (reply) input->setTextValue(*reply);
      reply ? input->accept() : input->reject();
    } else if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
      if (on_file_dialog) on_file_dialog(*dialog);
      else dialog->reject();
    }
  }
  QTimer timer_;
};

inline void screenshot(QWidget* window, const std::string& name) {
  settle();
  QDir().mkpath(TRACEFOLD_SCREENSHOTS);
  const QString path = q(std::string(TRACEFOLD_SCREENSHOTS) + "/" + name + ".png");
  EXPECT_TRUE(window->grab().save(path)) << path.toStdString();
}

// Whether a control of the model should be on screen now: it and every
// frame and tab page that holds it shown.
inline bool should_show(tf::Panel& panel, const tf::Control& c) {
  if (!c.visible) return false;
  const tf::Control* child = &c;
  for (int guard = 0; guard < 16 && !child->parent.empty(); ++guard) {
    const tf::Control* holder = panel.find(child->parent);
    if (!holder || holder == child) return true;
    if (holder->kind == Kind::tabs && holder->value != std::max(child->tab, 0)) return false;
    if (!holder->visible) return false;
    child = holder;
  }
  return true;
}

// Every control that should show has a widget on screen, inside the window,
// with its caption uncut; fields have their caption as the label beside
// them; no two widgets of one container overlap.
inline void check_layout(tf::PanelWindow& window, tf::Panel& panel, const std::string& where) {
  SCOPED_TRACE(where);
  std::vector<QWidget*> shown;
  for (auto& c : panel.controls()) {
    if (!should_show(panel, *c)) continue;
    if (c->kind == Kind::menu || c->kind == Kind::menu_item) continue;  // actions of the menu bar
    SCOPED_TRACE(c->name);
    QWidget* w = window.widget(c->name);
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(w->isVisible());
    EXPECT_FALSE(w->geometry().isEmpty());
    const QRect on_window(w->mapTo(&window, QPoint(0, 0)), w->size());
    EXPECT_TRUE(window.rect().contains(on_window)) << "outside the window";
    shown.push_back(w);
    if (c->kind == Kind::button || c->kind == Kind::option || c->kind == Kind::check) {
      auto* b = static_cast<QAbstractButton*>(w);
      EXPECT_EQ(b->text(), q(c->caption));
      EXPECT_GE(b->width(), b->minimumSizeHint().width()) << "caption cut";
    }
    if (c->kind == Kind::frame) EXPECT_EQ(static_cast<QGroupBox*>(w)->title(), q(c->caption));
    if ((c->kind == Kind::text || c->kind == Kind::combo) && !c->caption.empty()) {
      QLabel* label = window.label(c->name);
      ASSERT_NE(label, nullptr);
      EXPECT_TRUE(label->isVisible());
      EXPECT_EQ(label->text(), q(c->caption));
      EXPECT_EQ(label->parentWidget(), w->parentWidget());
      EXPECT_GE(label->width(), label->minimumSizeHint().width()) << "label cut";
      shown.push_back(label);
    }
  }
  for (size_t i = 0; i < shown.size(); ++i)
    for (size_t j = i + 1; j < shown.size(); ++j)
      if (shown[i]->parentWidget() == shown[j]->parentWidget())
        EXPECT_FALSE(shown[i]->geometry().intersects(shown[j]->geometry()))
            << shown[i]->objectName().toStdString() << " overlaps " << shown[j]->objectName().toStdString();
}

class Desktop : public ::testing::Test {
 protected:
  void SetUp() override {
    platform = std::make_unique<tf::QtPlatform>();
    platform->application_folder_override = app_dir.str();
    app = std::make_unique<tf::App>(*platform);
    platform->attach(*app);
    platform->start("Utility");
    settle();
  }
  void TearDown() override {
    app.reset();
    platform.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  tf::PanelWindow& window(const std::string& panel) {
    tf::PanelWindow* w = platform->window(panel);
    if (!w) throw std::runtime_error("no window for " + panel);
    return *w;
  }
  template <typename W>
  W* widget(const std::string& panel, const std::string& control) {
    auto* w = qobject_cast<W*>(window(panel).widget(control));
    if (!w) throw std::runtime_error("no widget " + panel + "." + control);
    return w;
  }
  void click(QWidget* w) {
    // Options and check boxes take clicks on their mark and caption only.
    const bool marked = qobject_cast<QRadioButton*>(w) || qobject_cast<QCheckBox*>(w);
    QTest::mouseClick(w, Qt::LeftButton, {}, marked ? QPoint(8, w->height() / 2) : w->rect().center());
    settle();
  }
  void open_tab(const std::string& panel, const std::string& tabs, int tab) {
    QTabBar* bar = widget<QTabWidget>(panel, tabs)->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center());
    settle();
  }
  // The pointer over a widget, as the window system reports it.
  void hover(QWidget* w, std::optional<QPoint> at = std::nullopt) {
    QTest::mouseMove(w, at.value_or(w->rect().center()));
    settle();
  }

  tf::test::TempDir app_dir;
  BoxAnswerer answerer;
  std::unique_ptr<tf::QtPlatform> platform;
  std::unique_ptr<tf::App> app;
};

}  // namespace gui
