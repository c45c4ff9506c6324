#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"

#include <QKeySequence>
#include <QPainter>
#include <QStyleOption>

#include "Kifo_iOS_Common_Kit/inapp/popup/ShownText.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertLayout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {
KifoButton::KifoButton(const QString& title, QWidget* parent) : QPushButton(parent) {
  initialTitle = title;
  showSeconds(std::nullopt);
  setAccessibleName(title);
  setAutoDefault(false);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_Hover);
}

/// The name stays: a screen reader would otherwise speak the button anew every second.
void KifoButton::setTitle(const QString& title, const QString& countdown) {
  setAccessibleDescription(countdown);
  setText(QString::fromStdString(shownText(title.toStdString())));
  // An ampersand in the title would otherwise make a shortcut.
  setShortcut(QKeySequence());
}

void KifoButton::setLook(const Look& look) {
  look_ = look;
  updateGeometry();
  update();
}

void KifoButton::setDimmed(bool dimmed) {
  dimmed_ = dimmed;
  update();
}

QSize KifoButton::sizeHint() const {
  return {AlertLayout::buttonWidth(text(), look_.font), look_.leastHeight};
}

QSize KifoButton::minimumSizeHint() const {
  return {2 * AlertLayout::kButtonPadding, look_.leastHeight};
}

int KifoButton::heightForWidth(int width) const {
  return AlertLayout::buttonHeight(text(), look_.font, width, look_.leastHeight);
}

QColor KifoButton::paintedBackground() const {
  if (dimmed_) return look_.background.darker(125);
  if (underMouse()) return look_.background.darker(108);
  return look_.background;
}

void KifoButton::paintEvent(QPaintEvent* /*event*/) {
  QStyleOption option;
  option.initFrom(this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(look_.border.isValid() ? QPen(look_.border, 1) : QPen(Qt::NoPen));
  painter.setBrush(paintedBackground());
  const double inset = look_.border.isValid() ? 0.5 : 0;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), look_.cornerRadius,
                          look_.cornerRadius);
  if ((option.state & QStyle::State_HasFocus) &&
      (option.state & QStyle::State_KeyboardFocusChange)) {
    paintFocusRing(painter, rect(), look_.cornerRadius, paintedBackground(), look_.text);
  }
  painter.setPen(look_.text);
  painter.setFont(look_.font);
  painter.drawText(rect().adjusted(AlertLayout::kButtonPadding, 0, -AlertLayout::kButtonPadding, 0),
                   AlertLayout::kButtonText, text());
}

}  // namespace kifo
