#include "bench/popups/PlainOverlay.h"

#include <QFrame>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>

namespace kifo::bench {
namespace {

QWidget* mirrorOf(const QWidget* piece) {
  if (const auto* label = qobject_cast<const QLabel*>(piece)) {
    auto* copy = new QLabel(label->text());
    copy->setWordWrap(true);
    return copy;
  }
  if (const auto* button = qobject_cast<const QRadioButton*>(piece)) {
    return new QRadioButton(button->accessibleName());
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(piece)) {
    return new QPushButton(button->text());
  }
  if (qobject_cast<const QLineEdit*>(piece)) return new QLineEdit;
  if (piece->objectName() == QLatin1String("slider")) return new QSlider(Qt::Horizontal);
  return nullptr;
}

}  // namespace

PlainOverlay::PlainOverlay(const QWidget* popup, QWidget* host) : QWidget(host) {
  setObjectName(name);
  setGeometry(host->rect());
  auto* panel = new QFrame;
  panel_ = panel;
  connect(&fade_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setOpacity(value.toDouble()); });
  panel->setAutoFillBackground(true);
  panel->setFixedWidth(480);
  auto* column = new QVBoxLayout(panel);
  for (const QWidget* piece : popup->findChildren<QWidget*>()) {
    if (!piece->isVisibleTo(popup)) continue;
    if (QWidget* mirror = mirrorOf(piece)) column->addWidget(mirror);
  }
  auto* middle = new QVBoxLayout(this);
  middle->addWidget(panel, 0, Qt::AlignCenter);
}

void PlainOverlay::fade(double from, double to, std::chrono::milliseconds duration) {
  fade_.stop();
  fade_.setStartValue(from);
  fade_.setEndValue(to);
  fade_.setDuration(static_cast<int>(duration.count()));
  fade_.start();
}

void PlainOverlay::setOpacity(double opacity) {
  opacity_ = opacity;
  auto* effect = qobject_cast<QGraphicsOpacityEffect*>(panel_->graphicsEffect());
  if (opacity < 1 && effect == nullptr) {
    panel_->setGraphicsEffect(effect = new QGraphicsOpacityEffect);
  }
  if (opacity >= 1) {
    panel_->setGraphicsEffect(nullptr);
  } else {
    effect->setOpacity(opacity);
  }
  update();
}

void PlainOverlay::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), QColor(0, 0, 0, static_cast<int>(76 * opacity_)));
}

}  // namespace kifo::bench
