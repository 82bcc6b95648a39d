#include "ui/qt/panel_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QToolBar>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "frame/helpers.h"
#include "ui/qt/picture_view.h"
#include "ui/qt/qt_platform.h"
#include "ui/qt/rtf_text.h"

namespace tf {

namespace {

constexpr int buttons_in_a_row = 4;      // more go into a grid
constexpr int buttons_per_column = 12;
constexpr int choices_per_column = 10;   // past this, two columns
constexpr int frames_per_row = 2;

QString q(const std::string& s) { return QString::fromStdString(s); }

// The model's texts end their lines in CR LF, the widgets' in LF.
QString shown_text(const std::string& s) { return q(s).replace("\r\n", "\n"); }
std::string model_text(QString s) { return s.replace("\n", "\r\n").toStdString(); }

bool is_rich(const std::string& text) { return text.rfind("{\\rtf", 0) == 0; }

// Places in the model's text (CR LF two characters) and in the widget's
// (one line break).
int widget_place(const std::string& text, int place) {
  int shown = 0;
  for (int i = 0; i < place && i < static_cast<int>(text.size()); ++i)
    if (!(text[static_cast<size_t>(i)] == '\r' && i + 1 < static_cast<int>(text.size()) && text[static_cast<size_t>(i) + 1] == '\n'))
      ++shown;
  return shown;
}
int model_place(const std::string& text, int shown) {
  int i = 0;
  for (; i < static_cast<int>(text.size()) && shown > 0; ++i)
    if (!(text[static_cast<size_t>(i)] == '\r' && i + 1 < static_cast<int>(text.size()) && text[static_cast<size_t>(i) + 1] == '\n'))
      --shown;
  return i;
}

QFont qt_font(const FontChoice& f, QFont font) {
  font.setFamily(QString::fromStdString(f.name));
  if (f.size > 0) font.setPointSizeF(f.size);
  font.setBold(f.bold);
  font.setItalic(f.italic);
  font.setUnderline(f.underline);
  font.setStrikeOut(f.strikeout);
  return font;
}

enum class Block { form, buttons, choices, frames, tabs, side, bottom, bars };

Block block_of(const Control& c) {
  switch (c.kind) {
    case Kind::text: return c.multiline ? Block::side : Block::form;
    case Kind::combo:
    case Kind::label: return Block::form;
    case Kind::button: return Block::buttons;
    case Kind::check:
    case Kind::option: return Block::choices;
    case Kind::frame: return Block::frames;
    case Kind::tabs: return Block::tabs;
    case Kind::progress: return Block::bottom;
    case Kind::list:
    case Kind::rich_text:
    case Kind::grid:
    case Kind::picture: return Block::side;
    case Kind::menu:
    case Kind::menu_item:
    case Kind::toolbar: return Block::bars;
  }
  return Block::form;
}

bool is_field(const Control& c) { return (c.kind == Kind::text && !c.multiline) || c.kind == Kind::combo; }

struct Run {
  Block block;
  std::vector<Control*> controls;
};

// Consecutive controls of one block form a run; a field without a caption
// takes the button behind it into its run.
std::vector<Run> runs_of(const std::vector<Control*>& children) {
  std::vector<Run> runs;
  for (size_t i = 0; i < children.size(); ++i) {
    Control* c = children[i];
    Block b = block_of(*c);
    if (b == Block::bars) continue;  // above the panel, not in its layout
    if (runs.empty() || runs.back().block != b) runs.push_back({b, {}});
    runs.back().controls.push_back(c);
    if (is_field(*c) && c->caption.empty() && i + 1 < children.size() && children[i + 1]->kind == Kind::button)
      runs.back().controls.push_back(children[++i]);
  }
  return runs;
}

// Widgets in columns filled from the top, as a list reads.
QGridLayout* in_columns(const std::vector<QWidget*>& widgets, int columns) {
  auto* grid = new QGridLayout;
  const int n = static_cast<int>(widgets.size());
  const int rows = (n + columns - 1) / columns;
  for (int i = 0; i < n; ++i) grid->addWidget(widgets[static_cast<size_t>(i)], i % rows, i / rows);
  for (int column = 0; column < columns; ++column) grid->setColumnStretch(column, 1);
  return grid;
}

QGridLayout* in_rows(const std::vector<QWidget*>& widgets, int columns) {
  auto* grid = new QGridLayout;
  for (size_t i = 0; i < widgets.size(); ++i)
    grid->addWidget(widgets[i], static_cast<int>(i) / columns, static_cast<int>(i) % columns);
  return grid;
}

// A push button with room around its caption, so that a caption made bold
// by the pointer still reads at ease.
// A long caption (a whole instruction) wraps onto more lines within this
// width instead of stretching the window.
constexpr int widest_button = 480;

class RoomyButton : public QPushButton {
 public:
  using QPushButton::QPushButton;
  QSize sizeHint() const override {
    const QSize one_line = QPushButton::sizeHint() + QSize(16, 4);
    if (one_line.width() <= widest_button) return one_line;
    const QRect wrapped = fontMetrics().boundingRect(QRect(0, 0, widest_button - 24, 1000), Qt::TextWordWrap, text());
    return {widest_button, wrapped.height() + 14};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (QPushButton::sizeHint().width() + 16 <= widest_button) return QPushButton::paintEvent(event);
    // The frame as the style draws it, then the caption wrapped inside it.
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
    painter.setFont(font());
    painter.drawText(rect().adjusted(12, 4, -12, -4), Qt::AlignCenter | Qt::TextWordWrap, text());
  }
};

QStringList qt_items(const std::vector<std::string>& items) {
  QStringList list;
  for (const auto& item : items) list << q(item);
  return list;
}

}  // namespace

PanelWindow::PanelWindow(QtPlatform& platform, Panel& panel)
    : QWidget(nullptr, Qt::Window), platform_(platform), panel_(&panel), name_(panel.name()) {
  setObjectName(q(name_));
  setWindowTitle(q(panel.caption()));
  setAttribute(Qt::WA_DeleteOnClose, false);
  for (auto& c : panel.controls()) {
    if (c->kind == Kind::menu || c->kind == Kind::menu_item) continue;
    QWidget* w = make(*c);
    widgets_[c->name] = w;
    wire(*c, w);
  }
  setLayout(lay_out(children_of("", -1)));
  // Menus above everything, then the toolbars.
  if (QMenuBar* bar = make_menu_bar()) layout()->setMenuBar(bar);
  int toolbars = 0;
  for (auto& c : panel.controls())
    if (c->kind == Kind::toolbar) static_cast<QBoxLayout*>(layout())->insertWidget(toolbars++, widget(c->name));
  for (auto& c : panel.controls()) update(*c);
  panel.observer = [this](Control& c) { update(c); };
}

PanelWindow::~PanelWindow() {
  // The model may be gone already; children still signal while they go.
  panel_ = nullptr;
}

void PanelWindow::detach() {
  if (panel_) panel_->observer = nullptr;
  panel_ = nullptr;
}

QWidget* PanelWindow::widget(const std::string& control) const {
  auto it = widgets_.find(control);
  return it == widgets_.end() ? nullptr : it->second;
}

QAction* PanelWindow::action(const std::string& control) const {
  auto it = actions_.find(control);
  return it == actions_.end() ? nullptr : it->second;
}

PictureView* PanelWindow::picture(const std::string& control) const {
  auto it = pictures_.find(control);
  return it == pictures_.end() ? nullptr : it->second;
}

// A menu with entries drops down; a menu without entries is a command of
// the bar itself.
QMenuBar* PanelWindow::make_menu_bar() {
  QMenuBar* bar = nullptr;
  for (auto& c : panel_->controls()) {
    if (c->kind != Kind::menu) continue;
    if (!bar) bar = new QMenuBar(this);
    const std::string menu_name = c->name;
    QMenu* menu = nullptr;
    for (auto& entry : panel_->controls())
      if (entry->kind == Kind::menu_item && entry->parent == menu_name) {
        if (!menu) menu = bar->addMenu(q(c->caption));
        QAction* a = entry->caption == "-" ? menu->addSeparator() : menu->addAction(q(entry->caption));
        const std::string name = entry->name;
        connect(a, &QAction::triggered, this, [this, name] { act([&](Panel& p) { p.click(name); }); });
        actions_[name] = a;
      }
    QAction* a = menu ? menu->menuAction() : bar->addAction(q(c->caption));
    if (!menu) connect(a, &QAction::triggered, this, [this, menu_name] { act([&](Panel& p) { p.click(menu_name); }); });
    actions_[menu_name] = a;
  }
  return bar;
}

QLabel* PanelWindow::label(const std::string& control) const {
  auto it = labels_.find(control);
  return it == labels_.end() ? nullptr : it->second;
}

Control* PanelWindow::control_of(QObject* object) const {
  if (!panel_) return nullptr;
  auto it = control_names_.find(object);
  return it == control_names_.end() ? nullptr : panel_->find(it->second);
}

void PanelWindow::act(const std::function<void(Panel&)>& action) {
  if (!panel_) return;
  Panel* p = panel_;
  platform_.run([&] { action(*p); });
}

QWidget* PanelWindow::make(Control& c) {
  QWidget* w = nullptr;
  switch (c.kind) {
    case Kind::button: w = new RoomyButton(this); break;
    case Kind::check: w = new QCheckBox(this); break;
    case Kind::option: {
      // The model keeps each frame's options exclusive, and may clear them all.
      auto* r = new QRadioButton(this);
      r->setAutoExclusive(false);
      w = r;
      break;
    }
    case Kind::label: {
      auto* l = new QLabel(this);
      l->setWordWrap(true);
      w = l;
      break;
    }
    case Kind::text:
      if (c.multiline) {
        auto* t = new QPlainTextEdit(this);
        t->setMinimumSize(260, 160);
        w = t;
      } else {
        // Room for a path's end or a number with its sign blank, however
        // short the buttons of the panel are.
        auto* line = new QLineEdit(this);
        line->setMinimumWidth(120);
        w = line;
      }
      break;
    case Kind::combo: {
      auto* combo = new QComboBox(this);
      combo->setEditable(true);
      combo->setInsertPolicy(QComboBox::NoInsert);
      w = combo;
      break;
    }
    case Kind::list: {
      auto* l = new QListWidget(this);
      l->setMinimumSize(260, 160);
      w = l;
      break;
    }
    case Kind::frame: w = new QGroupBox(this); break;
    case Kind::tabs: {
      auto* tabs = new QTabWidget(this);
      for (const auto& caption : c.items) tabs->addTab(new QWidget(tabs), q(caption));
      w = tabs;
      break;
    }
    case Kind::progress: w = new QProgressBar(this); break;
    case Kind::rich_text: {
      auto* t = new QTextEdit(this);
      t->setAcceptRichText(false);
      t->setMinimumSize(420, 300);
      w = t;
      break;
    }
    case Kind::toolbar: w = new QToolBar(this); break;
    case Kind::menu:
    case Kind::menu_item: break;  // actions of the menu bar
    case Kind::grid: {
      auto* g = new QTableWidget(this);
      g->setMinimumSize(320, 200);
      // The model's rows are the whole table, its header row included.
      g->horizontalHeader()->hide();
      g->verticalHeader()->hide();
      w = g;
      break;
    }
    case Kind::picture: {
      // The viewport and its scroll bars, the picture inside.
      auto* area = new QScrollArea(this);
      auto* view = new PictureView(area);
      area->setWidget(view);
      area->setMinimumSize(420, 320);
      pictures_[c.name] = view;
      w = area;
      break;
    }
  }
  w->setObjectName(q(c.name));
  if (c.tiny) {
    QFont font = w->font();
    font.setPointSizeF(font.pointSizeF() * 0.55);
    w->setFont(font);
  }
  if (!c.caption.empty() && (is_field(c) || c.kind == Kind::list || c.kind == Kind::text)) {
    auto* l = new QLabel(this);
    l->setBuddy(w);
    labels_[c.name] = l;
  }
  return w;
}

void PanelWindow::wire(Control& c, QWidget* w) {
  const std::string name = c.name;
  control_names_[w] = name;
  w->installEventFilter(this);
  w->setMouseTracking(true);
  // Scrolled boxes take the pointer and the clicks on their viewport.
  if (auto* scrolled = qobject_cast<QAbstractScrollArea*>(w)) {
    scrolled->viewport()->installEventFilter(this);
    scrolled->viewport()->setMouseTracking(true);
    control_names_[scrolled->viewport()] = name;
  }
  switch (c.kind) {
    case Kind::button:
      connect(static_cast<QPushButton*>(w), &QPushButton::clicked, this, [this, name] {
        act([&](Panel& p) { p.click(name); });
      });
      break;
    case Kind::check:
    case Kind::option:
      connect(static_cast<QAbstractButton*>(w), &QAbstractButton::clicked, this, [this, name] {
        act([&](Panel& p) { p.click(name); });
        // A click on a set option changes nothing in the model: show it set.
        if (panel_) update((*panel_)[name]);
      });
      break;
    case Kind::text:
      if (c.multiline) {
        auto* t = static_cast<QPlainTextEdit*>(w);
        connect(t, &QPlainTextEdit::textChanged, this, [this, name, t] {
          act([&](Panel& p) { p.set_text(name, model_text(t->toPlainText())); });
        });
      } else {
        connect(static_cast<QLineEdit*>(w), &QLineEdit::textEdited, this, [this, name](const QString& text) {
          act([&](Panel& p) { p.set_text(name, model_text(text)); });
        });
      }
      break;
    case Kind::combo: {
      auto* combo = static_cast<QComboBox*>(w);
      connect(combo, &QComboBox::activated, this, [this, name](int index) {
        act([&](Panel& p) { p.select_item(name, index); });
      });
      connect(combo->lineEdit(), &QLineEdit::textEdited, this, [this, name](const QString& text) {
        act([&](Panel& p) { p.set_text(name, model_text(text)); });
      });
      combo->lineEdit()->installEventFilter(this);
      control_names_[combo->lineEdit()] = name;
      break;
    }
    case Kind::list: {
      auto* list = static_cast<QListWidget*>(w);
      connect(list, &QListWidget::currentRowChanged, this, [this, name](int row) {
        act([&](Panel& p) { p.select_item(name, row); });
      });
      connect(list, &QListWidget::itemDoubleClicked, this, [this, name] {
        act([&](Panel& p) { p.dblclick(name); });
      });
      break;
    }
    case Kind::tabs: {
      auto* tabs = static_cast<QTabWidget*>(w);
      connect(tabs, &QTabWidget::currentChanged, this, [this, name](int tab) {
        act([&](Panel& p) { p.select_tab(name, tab); });
      });
      tabs->tabBar()->installEventFilter(this);
      tabs->tabBar()->setMouseTracking(true);
      control_names_[tabs->tabBar()] = name;
      break;
    }
    case Kind::rich_text: {
      // A user's edit: the widget's text and cursor are the model's now.
      auto* t = static_cast<QTextEdit*>(w);
      auto edited = [this, name, t] {
        if (!panel_ || is_rich((*panel_)[name].text)) return;
        const std::string typed = model_text(t->toPlainText());
        const QTextCursor cursor = t->textCursor();
        const int start = model_place(typed, cursor.selectionStart());
        const int length = model_place(typed, cursor.selectionEnd()) - start;
        Control& c = (*panel_)[name];
        if (c.text == typed && c.sel_start == start && c.sel_length == length) return;
        c.sel_start = start, c.sel_length = length;  // already shown
        act([&](Panel& p) {
          p.set_text(name, typed);
          p.set_selection(name, start, length);
        });
      };
      connect(t, &QTextEdit::textChanged, this, edited);
      connect(t, &QTextEdit::selectionChanged, this, edited);
      connect(t, &QTextEdit::cursorPositionChanged, this, edited);
      break;
    }
    case Kind::picture: {
      PictureView* view = pictures_[name];
      view->on_press = [this, name](MouseButton b, double x, double y) { act([&](Panel& p) { p.mouse_down(name, b, x, y); }); };
      view->on_move = [this, name](double x, double y) { act([&](Panel& p) { p.mouse_move(name, x, y); }); };
      break;
    }
    case Kind::grid: {
      auto* grid = static_cast<QTableWidget*>(w);
      connect(grid, &QTableWidget::cellDoubleClicked, this, [this, name] {
        act([&](Panel& p) { p.dblclick(name); });
      });
      connect(grid, &QTableWidget::cellClicked, this, [this, name](int row, int col) {
        act([&](Panel& p) { p.click_cell(name, row, col); });
      });
      break;
    }
    default: break;
  }
}

std::vector<Control*> PanelWindow::children_of(const std::string& parent, int tab) {
  std::vector<Control*> children;
  for (auto& c : panel_->controls()) {
    const Control* holder = c->parent.empty() ? nullptr : panel_->find(c->parent);
    const bool container = holder && holder != c.get() && (holder->kind == Kind::frame || holder->kind == Kind::tabs);
    if (parent.empty()) {
      if (!container) children.push_back(c.get());
    } else if (container && c->parent == parent) {
      if (holder->kind == Kind::frame || std::max(c->tab, 0) == tab) children.push_back(c.get());
    }
  }
  return children;
}

QLayout* PanelWindow::lay_out(const std::vector<Control*>& children) {
  auto* main = new QVBoxLayout;
  auto* side = new QVBoxLayout;
  auto* bottom = new QVBoxLayout;
  bool has_main = false, has_side = false, main_grows = false;
  auto widgets_of = [this](const std::vector<Control*>& controls) {
    std::vector<QWidget*> ws;
    for (Control* c : controls) ws.push_back(widget(c->name));
    return ws;
  };

  for (const Run& run : runs_of(children)) {
    const int n = static_cast<int>(run.controls.size());
    switch (run.block) {
      case Block::form: {
        auto* form = new QFormLayout;
        form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        for (size_t i = 0; i < run.controls.size(); ++i) {
          Control* c = run.controls[i];
          QWidget* w = widget(c->name);
          if (c->kind == Kind::label) {
            form->addRow(w);
          } else if (!c->caption.empty()) {
            form->addRow(label(c->name), w);
          } else if (i + 1 < run.controls.size() && run.controls[i + 1]->kind == Kind::button) {
            auto* row = new QHBoxLayout;
            w->setMinimumWidth(std::max(w->minimumWidth(), 140));  // a name to read, beside its button
            row->addWidget(w, 1);
            row->addWidget(widget(run.controls[++i]->name));
            form->addRow(row);
          } else {
            form->addRow(w);
          }
        }
        main->addLayout(form);
        has_main = true;
        break;
      }
      case Block::buttons: {
        // Buttons with long captions stand one under the other.
        size_t captions = 0;
        for (Control* c : run.controls) captions += c->caption.size();
        if (captions > 100) {
          main->addLayout(in_columns(widgets_of(run.controls), 1));
        } else if (n <= buttons_in_a_row) {
          auto* row = new QHBoxLayout;
          for (QWidget* w : widgets_of(run.controls)) row->addWidget(w);
          main->addLayout(row);
        } else {
          main->addLayout(in_columns(widgets_of(run.controls), (n + buttons_per_column - 1) / buttons_per_column));
        }
        has_main = true;
        break;
      }
      case Block::choices:
        main->addLayout(in_columns(widgets_of(run.controls), n > choices_per_column ? 2 : 1));
        has_main = true;
        break;
      case Block::frames:
        for (Control* c : run.controls) {
          auto* frame = static_cast<QGroupBox*>(widget(c->name));
          frame->setLayout(lay_out(children_of(c->name, -1)));
        }
        main->addLayout(in_rows(widgets_of(run.controls), std::min(n, frames_per_row)));
        has_main = true;
        break;
      case Block::tabs:
        for (Control* c : run.controls) {
          auto* tabs = static_cast<QTabWidget*>(widget(c->name));
          for (int page = 0; page < tabs->count(); ++page) tabs->widget(page)->setLayout(lay_out(children_of(c->name, page)));
          main->addWidget(tabs, 1);
        }
        has_main = main_grows = true;
        break;
      case Block::side:
        for (Control* c : run.controls) {
          if (QLabel* l = label(c->name)) side->addWidget(l);
          side->addWidget(widget(c->name), 1);
        }
        has_side = true;
        break;
      case Block::bottom:
        for (QWidget* w : widgets_of(run.controls)) bottom->addWidget(w);
        break;
    }
  }
  if (has_main && !main_grows) main->addStretch(1);

  auto* outer = new QVBoxLayout;
  if (has_main && has_side) {
    auto* row = new QHBoxLayout;
    row->addLayout(main, 1);
    row->addLayout(side, 1);
    outer->addLayout(row, 1);
  } else {
    outer->addLayout(has_side ? side : main, 1);
    delete (has_side ? main : side);
  }
  outer->addLayout(bottom);
  return outer;
}

void PanelWindow::update(Control& c) {
  if (QAction* a = action(c.name)) {
    if (c.caption != "-") a->setText(q(c.caption));
    a->setEnabled(c.enabled);
    a->setVisible(c.visible);
    return;
  }
  QWidget* w = widget(c.name);
  if (!w) return;
  QSignalBlocker block(w);
  const QString caption = q(c.caption);
  switch (c.kind) {
    case Kind::button:
    case Kind::check:
    case Kind::option: {
      auto* b = static_cast<QAbstractButton*>(w);
      b->setText(caption);
      if (c.kind != Kind::button) b->setChecked(c.value != 0);
      break;
    }
    case Kind::label: static_cast<QLabel*>(w)->setText(caption); break;
    case Kind::frame: static_cast<QGroupBox*>(w)->setTitle(caption); break;
    case Kind::text:
      if (c.multiline) {
        auto* t = static_cast<QPlainTextEdit*>(w);
        if (t->toPlainText() != shown_text(c.text)) t->setPlainText(shown_text(c.text));
        t->setReadOnly(c.locked);
      } else {
        auto* t = static_cast<QLineEdit*>(w);
        if (t->text() != shown_text(c.text)) t->setText(shown_text(c.text));
        t->setReadOnly(c.locked);
      }
      break;
    case Kind::combo: {
      auto* combo = static_cast<QComboBox*>(w);
      QStringList items = qt_items(c.items);
      QStringList shown;
      for (int i = 0; i < combo->count(); ++i) shown << combo->itemText(i);
      if (shown != items) {
        combo->clear();
        combo->addItems(items);
      }
      if (combo->currentText() != q(c.text)) combo->setEditText(q(c.text));
      combo->lineEdit()->setReadOnly(c.locked);
      break;
    }
    case Kind::list: {
      auto* list = static_cast<QListWidget*>(w);
      QStringList items = qt_items(c.items);
      QStringList shown;
      for (int i = 0; i < list->count(); ++i) shown << list->item(i)->text();
      if (shown != items) {
        list->clear();
        list->addItems(items);
      }
      list->setCurrentRow(c.list_index);
      break;
    }
    case Kind::tabs: {
      auto* tabs = static_cast<QTabWidget*>(w);
      for (int i = 0; i < tabs->count() && i < static_cast<int>(c.items.size()); ++i)
        tabs->setTabText(i, q(c.items[static_cast<size_t>(i)]));
      tabs->setCurrentIndex(c.value);
      break;
    }
    case Kind::progress: {
      // The bar paints itself at once when its shown value moves, which is
      // what lets it run during a conversion that lets no events through.
      auto* bar = static_cast<QProgressBar*>(w);
      bar->setRange(c.min, std::max(c.min, c.max));
      bar->setValue(std::clamp(c.value, bar->minimum(), bar->maximum()));
      break;
    }
    case Kind::rich_text: {
      auto* t = static_cast<QTextEdit*>(w);
      if (!(c.font == FontChoice{})) t->setFont(qt_font(c.font, t->font()));  // a font the panel chose
      if (is_rich(c.text)) {  // a manual: shown formatted, read only
        t->setReadOnly(true);
        rtf_to_document(c.text, *t->document());
        break;
      }
      // Plain text, editable, with the model's selection.
      t->setReadOnly(c.locked);
      if (t->toPlainText() != shown_text(c.text)) t->setPlainText(shown_text(c.text));
      QTextCursor cursor = t->textCursor();
      cursor.setPosition(widget_place(c.text, c.sel_start));
      cursor.setPosition(widget_place(c.text, c.sel_start + c.sel_length), QTextCursor::KeepAnchor);
      t->setTextCursor(cursor);
      break;
    }
    case Kind::toolbar: {
      auto* bar = static_cast<QToolBar*>(w);
      if (bar->actions().size() == static_cast<qsizetype>(c.items.size())) break;
      bar->clear();
      for (size_t i = 0; i < c.items.size(); ++i) {
        const std::string key = c.items[i];
        QAction* a = bar->addAction(key.empty() ? " " : q(key));
        a->setObjectName(q(key));
        if (i < c.cells.size() && c.cells[i].size() > 1) a->setToolTip(q(c.cells[i][1]));
        if (key.empty()) a->setEnabled(false);  // the blank button in front
        const std::string name = c.name;
        connect(a, &QAction::triggered, this, [this, name, key] { act([&](Panel& p) { p.press_button(name, key); }); });
      }
      break;
    }
    case Kind::menu:
    case Kind::menu_item: break;
    case Kind::grid: {
      auto* grid = static_cast<QTableWidget*>(w);
      size_t columns = 0;
      for (const auto& row : c.cells) columns = std::max(columns, row.size());
      const bool reshaped = grid->rowCount() != static_cast<int>(c.cells.size()) || grid->columnCount() != static_cast<int>(columns);
      grid->setRowCount(static_cast<int>(c.cells.size()));
      grid->setColumnCount(static_cast<int>(columns));
      // Items are kept and only what differs is set: a click on a long grid
      // stays quick.
      for (size_t r = 0; r < c.cells.size(); ++r)
        for (size_t k = 0; k < c.cells[r].size(); ++k) {
          const int row = static_cast<int>(r), col = static_cast<int>(k);
          QTableWidgetItem* item = grid->item(row, col);
          if (!item) {
            item = new QTableWidgetItem;
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            grid->setItem(row, col, item);
          }
          const QString text = q(c.cells[r][k]);
          if (item->text() != text) item->setText(text);
          const int color = r < c.cell_colors.size() && k < c.cell_colors[r].size() ? c.cell_colors[r][k] : -1;
          const QBrush back = color >= 0 ? QBrush(QColor::fromRgb(static_cast<QRgb>(color))) : QBrush();
          if (item->background() != back) item->setBackground(back);
        }
      if (reshaped) grid->resizeColumnsToContents();  // a folder or a name reads whole
      break;
    }
    case Kind::picture: pictures_[c.name]->show_model(c); break;
  }
  if (QLabel* l = label(c.name)) {
    l->setText(caption);
    l->setVisible(c.visible);
  }
  if (c.kind != Kind::rich_text && w->font().bold() != c.bold) {
    QFont font = w->font();
    font.setBold(c.bold);
    w->setFont(font);
  }
  w->setToolTip(q(c.tooltip));
  if (c.pointer) w->setCursor(cursor_shape(*c.pointer));
  w->setEnabled(c.enabled);
  w->setVisible(c.visible);
}

bool PanelWindow::eventFilter(QObject* watched, QEvent* event) {
  Control* c = control_of(watched);
  if (!c) return QWidget::eventFilter(watched, event);
  const std::string name = c->name;
  switch (event->type()) {
    case QEvent::Enter:
      if (c->on_hover) act([&](Panel& p) { p.hover(name); });
      break;
    case QEvent::MouseMove:
      if (static_cast<QMouseEvent*>(event)->buttons() != Qt::NoButton) break;
      if (c->on_hover) act([&](Panel& p) { p.hover(name); });
      // The pointer over a control is not over the frame or tab behind it.
      return true;
    case QEvent::MouseButtonDblClick:
      if (c->on_dblclick && c->kind != Kind::list && c->kind != Kind::grid) act([&](Panel& p) { p.dblclick(name); });
      break;
    case QEvent::KeyPress: {
      if (c->key_filter.empty()) break;
      auto* key_event = static_cast<QKeyEvent*>(event);
      const int qt_key = key_event->key();
      if (qt_key == Qt::Key_Tab || qt_key == Qt::Key_Backtab || qt_key == Qt::Key_Delete) break;
      int key = qt_key == Qt::Key_Backspace ? 8 : key_event->text().isEmpty() ? 0 : key_event->text().at(0).unicode();
      if (key == 0) break;  // no character: arrows, function keys
      if (key > 127) key = 127;  // outside every set of allowed keys
      if (Filter_Key(platform_, key, c->key_filter, true) == 0) return true;
      break;
    }
    default: break;
  }
  return QWidget::eventFilter(watched, event);
}

void PanelWindow::closeEvent(QCloseEvent* event) {
  // Closing the window unloads the panel; the main panel's unload ends all.
  act([](Panel& p) { p.unload(); });
  event->accept();
}

}  // namespace tf
