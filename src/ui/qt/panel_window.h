// One window per open panel, drawn from the panel's model by one set of
// layout rules: no panel has layout code of its own.
//
// Rules, for the panel itself, each frame and each page of a tab control,
// with the controls in their declaration order:
// - text fields and combos form a form, the control's caption as the label
//   beside it; a field without a caption takes the button that follows it
//   on its row; plain labels are rows of their own;
// - a run of buttons is a row, or a grid of columns of at most 12 buttons;
// - a run of options and check boxes is a column, two past 10 entries;
// - a run of frames is a grid of two columns, each frame a group box whose
//   options form one group of their own;
// - lists, multi-line texts, rich texts, grids and pictures stand in a
//   column to the right of the rest, or fill the container alone;
// - progress bars span the bottom.
#pragma once

#include <QWidget>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "frame/panel.h"

class QAction;
class QLabel;
class QLayout;
class QMenuBar;

namespace tf {

class PictureView;
class QtPlatform;

class PanelWindow : public QWidget {
  Q_OBJECT

 public:
  PanelWindow(QtPlatform& platform, Panel& panel);
  ~PanelWindow() override;

  const std::string& panel_name() const { return name_; }
  Panel* panel() const { return panel_; }  // nullptr once the panel is unloaded
  QWidget* widget(const std::string& control) const;
  QLabel* label(const std::string& control) const;  // the label beside a field
  QAction* action(const std::string& control) const;  // a menu or its entry
  PictureView* picture(const std::string& control) const;
  // The model was unloaded: the window stops listening and goes.
  void detach();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QWidget* make(Control& c);
  void wire(Control& c, QWidget* w);
  QLayout* lay_out(const std::vector<Control*>& children);
  QMenuBar* make_menu_bar();
  std::vector<Control*> children_of(const std::string& parent, int tab);
  void update(Control& c);
  // A user action on the model; nothing once the panel is unloaded.
  void act(const std::function<void(Panel&)>& action);
  Control* control_of(QObject* object) const;

  QtPlatform& platform_;
  Panel* panel_;
  std::string name_;
  std::map<std::string, QWidget*> widgets_;
  std::map<std::string, QLabel*> labels_;
  std::map<std::string, QAction*> actions_;
  std::map<std::string, PictureView*> pictures_;
  std::map<QObject*, std::string> control_names_;
};

}  // namespace tf
