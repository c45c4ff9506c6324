#include "apps/kifo/ui/WidgetHand.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTextBoundaryFinder>
#include <QWidget>

namespace kifo::tool {
namespace {

void send(QWidget& widget, QEvent::Type type, QPoint place, Qt::MouseButtons held) {
  QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton, held, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

void send(QWidget& widget, QEvent::Type type, const QString& text) {
  QKeyEvent event(type, Qt::Key_unknown, Qt::NoModifier, text);
  QApplication::sendEvent(&widget, &event);
}

}  // namespace

void WidgetHand::click(QWidget& widget, QPoint place) {
  const QPointer<QWidget> target(&widget);
  if (widget.focusPolicy() & Qt::ClickFocus) widget.setFocus(Qt::MouseFocusReason);
  send(widget, QEvent::MouseButtonPress, place, Qt::LeftButton);
  if (target) send(widget, QEvent::MouseButtonRelease, place, Qt::NoButton);
}

void WidgetHand::click(QWidget& widget) {
  click(widget, widget.rect().center());
}

void WidgetHand::type(QWidget& widget, const QString& text) {
  click(widget);
  // A key gives what the user sees as one character, which may be several code units.
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  for (qsizetype from = 0; finder.toNextBoundary() > 0; from = finder.position()) {
    const QString character = text.mid(from, finder.position() - from);
    send(widget, QEvent::KeyPress, character);
    send(widget, QEvent::KeyRelease, character);
  }
}

void WidgetHand::slide(QAbstractSlider& slider, int value) {
  // Between two neighbouring scores there may be less than a pixel, so the thumb is dragged by
  // value.
  slider.setSliderDown(true);
  slider.setSliderPosition(value);
  slider.setSliderDown(false);
}

}  // namespace kifo::tool
