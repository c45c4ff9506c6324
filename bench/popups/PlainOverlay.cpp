#include "bench/popups/PlainOverlay.h"

#include <QFrame>
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

void PlainOverlay::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), QColor(0, 0, 0, 76));
}

}  // namespace kifo::bench
