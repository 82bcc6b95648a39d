// A picture control with a user coordinate system: the picture file, the
// lines drawn on it, and the pointer reported in user units.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <string>

#include "frame/panel.h"

namespace tf {

class PictureView : public QWidget {
 public:
  explicit PictureView(QWidget* parent = nullptr);
  // The picture, its scale and its lines as the model holds them.
  void show_model(const Control& c);
  QPointF to_user(QPointF pixel) const;
  QPointF to_pixel(double x, double y) const;
  QSize sizeHint() const override;

  std::function<void(MouseButton, double, double)> on_press;
  std::function<void(double, double)> on_move;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QString caption_;
  std::string file_;
  QPixmap pixmap_;
  double left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  std::vector<DrawnLine> lines_;
  std::vector<DrawnShape> shapes_;
  QSize fixed_;  // the size the model gives a drawn picture
};

}  // namespace tf
