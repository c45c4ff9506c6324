#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertPaint.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTimerEvent>

namespace kifo {

// The text.

void QuickAlertText::setText(const QString& text) {
  text_ = text;
  update();
}
void QuickAlertText::setFont(const QFont& font) {
  font_ = font;
  update();
}
void QuickAlertText::setColor(const QColor& color) {
  color_ = color;
  update();
}
void QuickAlertText::setAlignment(int alignment) {
  alignment_ = alignment;
  update();
}

void QuickAlertText::paint(QPainter* painter) {
  wrapped_.setText(text_);
  wrapped_.setFont(font_);
  wrapped_.setAlignment(static_cast<WrappedText::Alignment>(alignment_),
                        QGuiApplication::layoutDirection());
  wrapped_.draw(*painter, boundingRect(), color_, boundingRect());
}

// The drawn parts.

void QuickAlertPainting::setPart(Part part) {
  part_ = part;
}

void QuickAlertPainting::setOverlay(QuickAlertOverlay* overlay) {
  overlay_ = overlay;
  follow();
}

void QuickAlertPainting::follow() {
  if (overlay_ == nullptr) return;
  connect(overlay_, &QuickAlertOverlay::placed, this, [this] { update(); });
  connect(overlay_, &QuickAlertOverlay::partsChanged, this, [this] {
    const bool turns = part_ == Icon && overlay_->icon().kind == AlertIcon::Kind::indicator;
    if (!turns || !isVisible()) {
      clock_.stop();
    } else if (!clock_.isActive()) {
      clock_.start(AlertIcon::kStepMilliseconds, this);
    }
    update();
  });
}

void QuickAlertPainting::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickPaintedItem::itemChange(change, data);
  if (change == ItemVisibleHasChanged && !data.boolValue) clock_.stop();
}

void QuickAlertPainting::timerEvent(QTimerEvent* event) {
  if (event->timerId() != clock_.timerId()) return QQuickPaintedItem::timerEvent(event);
  step_ = (step_ + 1) % AlertIcon::kSteps;
  update();
}

void QuickAlertPainting::paint(QPainter* painter) {
  if (overlay_ == nullptr) return;
  switch (part_) {
    case Shadow:
      painter->translate(kReach, kReach);
      return overlay_->cardPlaces().paintShadow(*painter, overlay_->cornerRadius());
    case Icon:
      return overlay_->icon().paint(*painter, boundingRect(), step_);
    case Cross:
      return overlay_->closeIcon().paint(painter, boundingRect().toRect());
  }
}

}  // namespace kifo
