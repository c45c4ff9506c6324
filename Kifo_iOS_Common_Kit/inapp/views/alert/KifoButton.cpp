#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"

#include <QFontMetrics>
#include <QKeySequence>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/popup/ShownText.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {
namespace {

constexpr int kSidePadding = 12;
constexpr int kUpperPadding = 6;
constexpr int kTextFlags = Qt::AlignCenter | Qt::TextWordWrap;

}  // namespace

KifoButton::KifoButton(const QString& title, QWidget* parent)
    : QPushButton(parent), initialTitle(title) {
  setTitle(title);
  setAccessibleName(title);
  setAutoDefault(false);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_Hover);
}

void KifoButton::showSeconds(std::optional<int> seconds) {
  if (!showTimeout || !seconds) {
    setAccessibleDescription({});
    return setTitle(initialTitle);
  }
  const QString countdown = showTimeout->prefix + locale().toString(*seconds) + showTimeout->suffix;
  // The name stays: a screen reader would otherwise speak the button anew every second.
  setAccessibleDescription(countdown);
  setTitle(initialTitle.isEmpty() ? countdown : initialTitle + QLatin1Char(' ') + countdown);
}

void KifoButton::setTitle(const QString& title) {
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
  const QFontMetrics metrics(look_.font);
  // One pixel more than measured: text of exactly the measured width may still be wrapped.
  const int width = metrics.boundingRect(QRect(), Qt::AlignCenter, text()).width() + 1;
  return {width + 2 * kSidePadding, look_.leastHeight};
}

QSize KifoButton::minimumSizeHint() const {
  return {2 * kSidePadding, look_.leastHeight};
}

int KifoButton::heightForWidth(int width) const {
  const QRect room(0, 0, std::max(1, width - 2 * kSidePadding), 1 << 16);
  const int text = QFontMetrics(look_.font).boundingRect(room, kTextFlags, this->text()).height();
  return std::max(look_.leastHeight, text + 2 * kUpperPadding);
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
  painter.drawText(rect().adjusted(kSidePadding, 0, -kSidePadding, 0), kTextFlags, text());
}

}  // namespace kifo
