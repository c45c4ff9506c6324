#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"

#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertAnimator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/DisposeLater.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/WidgetOpacity.h"

namespace kifo {
namespace {

constexpr int kWidestGap = 16;  // Between the card and the window's edge; less in a small window.

QRect placeOfFocusedWindow() {
  if (const QWindow* window = QGuiApplication::focusWindow()) return window->geometry();
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? QRect(0, 0, 640, 480) : screen->availableGeometry();
}

// Menus, tooltips, splash screens and our own windows come and go too quickly to be shown over.
bool canHost(const QWidget* window) {
  const Qt::WindowType type = window->windowType();
  return window->isVisible() && (type == Qt::Window || type == Qt::Dialog || type == Qt::Sheet) &&
         qobject_cast<const Overlay*>(window) == nullptr;
}

QWidget* lastVisibleWindow() {
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (canHost(*window)) return *window;
  }
  return nullptr;
}

}  // namespace

QWidget* AlertOverlay::hostFor(QWidget* wished) {
  if (wished != nullptr) return wished->window();
  for (QWidget* window : {QApplication::activeModalWidget(), QApplication::activeWindow()}) {
    if (window != nullptr && canHost(window)) return window;
  }
  return lastVisibleWindow();
}

AlertOverlay::AlertOverlay(QWidget* host, AlertCard* card, AlertAnimator* animator)
    : Overlay(host, Qt::Dialog), card_(card), animator_(animator) {
  setFocusPolicy(Qt::StrongFocus);
  card->setParent(this);
  connect(animator, &AlertAnimator::moved, this, &AlertOverlay::moveCard);
  connect(animator, &AlertAnimator::began, this, [this] {
    if (card_ != nullptr) preparePaintedOpacity(*card_);
  });
  connect(card, &AlertCard::outgrown, this, &AlertOverlay::place);
  if (host == nullptr) setWindowModality(Qt::ApplicationModal);
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
  fullDimming_ = std::clamp(dimming, 0.0, 1.0);
  type_ = type;
  coverWindow();
  raise();
  card_->setVisible(true);
  setVisible(true);
  place();
  takeFocus(firstFocus != nullptr ? firstFocus : this);
}

void AlertOverlay::returnFocus() {
  giveFocusBack();
}

void AlertOverlay::dismantle() {
  giveFocusBack();
  setVisible(false);
  if (card_ != nullptr) releaseCard();
  disposeLater(this);
}

void AlertOverlay::coverWindow() {
  if (isWindow()) return setGeometry(placeOfFocusedWindow());
  coverHost();
}

void AlertOverlay::engage() {
  engaged_ = true;
  Q_EMIT engagementChanged();
}

/// Where the alert opens there is nothing to show: the message is read first.
void AlertOverlay::focusArrived(QWidget* widget, bool byUser) {
  if (!byUser || card_ == nullptr) return;
  engage();
  card_->reveal(widget);
}

/// Parts follow each other as they are seen, whatever the order in which they were added; inside a
/// custom view the window's focus chain decides.
QList<QWidget*> AlertOverlay::focusStops() const {
  QList<QWidget*> stops;
  if (card_ == nullptr) return stops;
  for (QWidget* widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain()) {
    if (isAncestorOf(widget) && isFocusStop(widget)) stops.append(widget);
  }
  std::stable_sort(stops.begin(), stops.end(),
                   [this](const QWidget* former, const QWidget* latter) {
                     return card_->readsBefore(former, latter);
                   });
  return stops;
}

QRect AlertOverlay::available() const {
  QRect available = rect();
  if (keyboard_.intersects(available)) available.setBottom(keyboard_.top() - 1);
  const int gap = std::min({kWidestGap, available.width() / 20, available.height() / 20});
  return available.adjusted(gap, gap, -gap, -gap);
}

void AlertOverlay::place() {
  if (card_ == nullptr || placing_) return;
  const QScopedValueRollback rollback(placing_, true);
  card_->arrange(available().size());
  moveCard();
}

void AlertOverlay::moveCard() {
  if (card_ == nullptr) return;
  const QRect available = this->available();
  QRect place = card_->rect();
  place.moveCenter(available.center());
  if (type_ == ScreenType::notification) place.moveTop(available.top());
  // What does not fit is cut off below: the title is read first.
  if (place.top() < available.top()) place.moveTop(available.top());
  card_->move(place.topLeft() + animator_->offset(place, rect()));
  setPaintedOpacity(*card_, animator_->opacity());
  setDimming(fullDimming_ * animator_->opacity());
}

void AlertOverlay::setKeyboard(const QRect& keyboard) {
  keyboard_ = keyboard;
  place();
  if (card_ != nullptr && QApplication::focusWidget() != nullptr) {
    card_->reveal(QApplication::focusWidget());
  }
}

bool AlertOverlay::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate) {
    Q_EMIT engagementChanged();
  }
  return Overlay::event(event);
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

void AlertOverlay::paintEvent(QPaintEvent* event) {
  Overlay::paintEvent(event);
  if (card_ == nullptr) return;
  QPainter painter(this);
  painter.setOpacity(animator_->opacity());
  painter.translate(card_->pos());
  card_->places().paintShadow(painter, card_->cornerRadius());
}

}  // namespace kifo
