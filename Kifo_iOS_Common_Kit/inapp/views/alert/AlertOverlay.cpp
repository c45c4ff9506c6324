#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"

#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertAnimator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertFocus.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/DisposeLater.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PanelShadow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/WidgetOpacity.h"

namespace kifo {
namespace {

constexpr int kWidestGap = 16;  // Between the card and the window's edge; less in a small window.

QRect placeOfFocusedWindow() {
  if (const QWindow* window = QGuiApplication::focusWindow()) return window->geometry();
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? QRect(0, 0, 640, 480) : screen->availableGeometry();
}

}  // namespace

AlertOverlay::AlertOverlay(QWidget* host, AlertCard* card, AlertAnimator* animator)
    : QWidget(host), card_(card), animator_(animator), focus_(new AlertFocus(this, card)) {
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::ArrowCursor);
  setAcceptDrops(true);  // And refuses them, so that the window behind gets none.
  card->setParent(this);
  connect(animator, &AlertAnimator::moved, this, &AlertOverlay::moveCard);
  connect(animator, &AlertAnimator::began, this, [this] {
    if (card_ != nullptr) preparePaintedOpacity(*card_);
  });
  connect(card, &AlertCard::outgrown, this, &AlertOverlay::place);
  connect(focus_, &AlertFocus::moved, card, &AlertCard::reveal);
  if (host != nullptr) {
    host->installEventFilter(this);
  } else {
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowModality(Qt::ApplicationModal);
  }
}

AlertOverlay::~AlertOverlay() {
  if (card_ == nullptr || card_->parentWidget() != this) return;
  releaseCard();
  Q_EMIT windowGone();
}

void AlertOverlay::releaseCard() {
  card_->setGraphicsEffect(nullptr);
  card_->setParent(nullptr);
  card_ = nullptr;
}

void AlertOverlay::open(double dimming, ScreenType type, QWidget* firstFocus) {
  dimming_ = std::clamp(dimming, 0.0, 1.0);
  type_ = type;
  coverWindow();
  raise();
  card_->setVisible(true);
  setVisible(true);
  place();
  focus_->take(firstFocus != nullptr ? firstFocus : this);
}

void AlertOverlay::dismantle() {
  focus_->giveBack();
  setVisible(false);
  if (card_ != nullptr) releaseCard();
  disposeLater(this);
}

void AlertOverlay::coverWindow() {
  setGeometry(isWindow() ? placeOfFocusedWindow() : parentWidget()->rect());
}

QRect AlertOverlay::room() const {
  QRect room = rect();
  if (keyboard_.intersects(room)) room.setBottom(keyboard_.top() - 1);
  const int gap = std::min({kWidestGap, room.width() / 20, room.height() / 20});
  return room.adjusted(gap, gap, -gap, -gap);
}

void AlertOverlay::place() {
  if (card_ == nullptr || placing_) return;
  const QScopedValueRollback rollback(placing_, true);
  card_->arrange(room().size());
  moveCard();
}

void AlertOverlay::moveCard() {
  if (card_ == nullptr) return;
  const QRect room = this->room();
  QRect place = card_->rect();
  place.moveCenter(room.center());
  if (type_ == ScreenType::notification) place.moveTop(room.top());
  // Above the room rather than below it: the title is read first.
  if (place.top() < room.top()) place.moveTop(room.top());
  card_->move(place.topLeft() + animator_->offset(place, rect()));
  setPaintedOpacity(*card_, animator_->opacity());
  update();
}

void AlertOverlay::setKeyboard(const QRect& keyboard) {
  keyboard_ = keyboard;
  place();
  if (card_ != nullptr && QApplication::focusWidget() != nullptr) {
    card_->reveal(QApplication::focusWidget());
  }
}

bool AlertOverlay::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      // The window's shortcuts rest while the alert is open.
      event->accept();
      return true;
    case QEvent::Resize:
    case QEvent::LayoutDirectionChange:
      place();
      break;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
      Q_EMIT focus_->engagementChanged();
      break;
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::MouseMove:
    case QEvent::MouseButtonDblClick:
      event->accept();
      return true;
    default:
      break;
  }
  return QWidget::event(event);
}

bool AlertOverlay::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && event->type() == QEvent::Resize) coverWindow();
  return QWidget::eventFilter(watched, event);
}

bool AlertOverlay::focusNextPrevChild(bool next) {
  return focus_->step(next);
}

void AlertOverlay::keyPressEvent(QKeyEvent* event) {
  event->accept();
  // A key that is held down since before the alert came may not answer it.
  if (event->isAutoRepeat()) return;
  // Each is the last thing done: who listens may delete the window.
  if (event->key() == Qt::Key_Escape) return Q_EMIT escapePressed();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) Q_EMIT enterPressed();
}

bool AlertOverlay::isOnCard(const QPointF& position) const {
  return card_ != nullptr && card_->outline().contains(position - card_->pos());
}

void AlertOverlay::mousePressEvent(QMouseEvent* event) {
  event->accept();
  pressedBeside_ = !isOnCard(event->position());
}

void AlertOverlay::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  Q_EMIT tapped(pressedBeside_ && !isOnCard(event->position()));
}

void AlertOverlay::paintEvent(QPaintEvent* /*event*/) {
  if (card_ == nullptr) return;
  const double opacity = animator_->opacity();
  QPainter painter(this);
  QColor dim(Qt::black);
  dim.setAlphaF(static_cast<float>(dimming_ * opacity));
  painter.fillRect(rect(), dim);
  painter.setOpacity(opacity);
  paintShadow(painter);
}

void AlertOverlay::paintShadow(QPainter& painter) const {
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.translate(card_->pos());
  const QRect panel = card_->panel();
  PanelShadow::paint(painter, panel, card_->cornerRadius());
  const QRect disc = card_->disc();
  if (disc.isEmpty()) return;
  // The disc's own shadow is seen only where the disc stands out of the panel.
  painter.setClipRect(0, -PanelShadow::reach, card_->width(), panel.top() + PanelShadow::reach);
  PanelShadow::paint(painter, disc, disc.width() / 2.0);
}

}  // namespace kifo
