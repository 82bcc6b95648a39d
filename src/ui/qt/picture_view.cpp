#include "ui/qt/picture_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPolygon>

namespace tf {

namespace {
// The model's colours are 0x00BBGGRR.
QColor qt_color(int32_t color) { return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF); }
}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
}

void PictureView::show_model(const Control& c) {
  if (c.text != file_) {
    QPixmap loaded(QString::fromStdString(c.text));
    if (!loaded.isNull()) {
      pixmap_ = loaded;
      file_ = c.text;
      resize(pixmap_.size());
      updateGeometry();
    }
  }
  caption_ = QString::fromStdString(c.caption);
  left_ = c.scale_left, top_ = c.scale_top, width_ = c.scale_width, height_ = c.scale_height;
  lines_ = c.lines;
  shapes_ = c.shapes;
  // A picture drawn in pixels keeps the size its model gives it.
  if (pixmap_.isNull() && c.picture_width > 0 && c.picture_height > 0 &&
      fixed_ != QSize(c.picture_width, c.picture_height)) {
    fixed_ = QSize(c.picture_width, c.picture_height);
    setFixedSize(fixed_);
    updateGeometry();
  }
  update();
}

QSize PictureView::sizeHint() const {
  if (!pixmap_.isNull()) return pixmap_.size();
  return fixed_.isValid() ? fixed_ : QSize(320, 240);
}

QPointF PictureView::to_user(QPointF p) const {
  if (width_ == 0 || height_ == 0 || width() == 0 || height() == 0) return p;
  return {left_ + p.x() * width_ / width(), top_ + p.y() * height_ / height()};
}

QPointF PictureView::to_pixel(double x, double y) const {
  if (width_ == 0 || height_ == 0) return {x, y};
  return {(x - left_) * width() / width_, (y - top_) * height() / height_};
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  if (!pixmap_.isNull()) painter.drawPixmap(0, 0, pixmap_);
  // Until a drawing is loaded the box shows its caption.
  if (pixmap_.isNull() && lines_.empty() && shapes_.empty() && !caption_.isEmpty())
    painter.drawText(rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, caption_);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const auto& l : lines_) {
    painter.setPen(QPen(qt_color(l.color), std::max(1, l.width)));
    painter.drawLine(to_pixel(l.x1, l.y1), to_pixel(l.x2, l.y2));
  }
  // Shapes go in pixels, as drawn, without smoothing.
  painter.setRenderHint(QPainter::Antialiasing, false);
  QPolygon polygon;
  for (const auto& shape : shapes_) {
    polygon.clear();
    for (const auto& p : shape.points) polygon << QPoint(p.x, p.y);
    painter.setPen(QPen(qt_color(shape.pen), 1));
    if (shape.filled) {
      painter.setBrush(qt_color(shape.fill));
      painter.drawPolygon(polygon);
    } else {
      painter.drawPolyline(polygon);
    }
  }
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  const QPointF user = to_user(event->position());
  const MouseButton button = event->button() == Qt::LeftButton    ? MouseButton::left
                             : event->button() == Qt::RightButton ? MouseButton::right
                                                                  : MouseButton::middle;
  if (on_press) on_press(button, user.x(), user.y());
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
  const QPointF user = to_user(event->position());
  if (on_move) on_move(user.x(), user.y());
}

}  // namespace tf
