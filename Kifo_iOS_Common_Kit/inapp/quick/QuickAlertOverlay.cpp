#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertOverlay.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPainterPath>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <algorithm>
#include <cmath>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/AlertValues.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlert.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertAnimator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/DisposeLater.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

constexpr std::string_view LOG_TAG = "Kifo QuickAlert:";

constexpr int kWidestGap = 16;  // Between the card and the window's edge; less in a small window.

/// The engine of the scene; one of our own for a scene that was built without QML.
QQmlEngine* engineOf(QQuickWindow& window) {
  if (QQmlEngine* engine = qmlEngine(&window)) return engine;
  for (QQuickItem* child : window.contentItem()->childItems()) {
    if (QQmlEngine* engine = qmlEngine(child)) return engine;
  }
  static const QPointer<QQmlEngine> own = new QQmlEngine(QCoreApplication::instance());
  return own;
}

template <class Objects>
QVariantList modelOf(const Objects& objects) {
  QVariantList model;
  for (const auto& object : objects) model.append(QVariant::fromValue<QObject*>(object));
  return model;
}

}  // namespace

QuickAlertOverlay* QuickAlertOverlay::make(QuickAlert& alert, QQuickWindow& window) {
  QQmlComponent component(engineOf(window),
                          QUrl(QStringLiteral("qrc:/qt-project.org/imports/Kifo/Alert.qml")));
  auto* overlay = qobject_cast<QuickAlertOverlay*>(component.beginCreate(
      QQmlEngine::contextForObject(&window) != nullptr ? QQmlEngine::contextForObject(&window)
                                                       : engineOf(window)->rootContext()));
  if (overlay == nullptr) {
    Console::print(LOG_TAG, component.errorString().toStdString());
    return nullptr;
  }
  QQmlEngine::setObjectOwnership(overlay, QQmlEngine::CppOwnership);
  overlay->alert_ = &alert;
  component.completeCreate();
  overlay->cover(window);
  overlay->follow(alert);
  return overlay;
}

QuickAlertOverlay::~QuickAlertOverlay() {
  if (customPlace_ != nullptr && alert_ != nullptr && alert_->customSubview != nullptr) {
    alert_->customSubview->setParentItem(nullptr);
  }
  if (alert_ != nullptr) Q_EMIT windowClosed();
}

void QuickAlertOverlay::follow(QuickAlert& alert) {
  connect(&alert.animator(), &AlertAnimator::moved, this, &QuickAlertOverlay::moveCard);
  connect(window(), &QWindow::activeChanged, this, &QuickAlertOverlay::holdTimeout);
}

void QuickAlertOverlay::open() {
  showTexts();
  showParts();
  QQuickItem* first = firstFocus();
  takeFocus(first != nullptr ? first : this);
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void QuickAlertOverlay::returnFocus() {
  giveFocusBack();
}

void QuickAlertOverlay::dismantle() {
  giveFocusBack();
  if (alert_ != nullptr && alert_->customSubview != nullptr) {
    alert_->customSubview->setParentItem(nullptr);
  }
  alert_ = nullptr;
  setVisible(false);
  disposeLater(this);
}

// What there is.

QString QuickAlertOverlay::title() const {
  return alert_ == nullptr ? QString() : alert_->title();
}
QString QuickAlertOverlay::text() const {
  return alert_ == nullptr ? QString() : alert_->subTitle();
}
QString QuickAlertOverlay::heading() const {
  return alert_ == nullptr ? QString() : alert_->headerStr;
}
QVariantList QuickAlertOverlay::fields() const {
  return alert_ == nullptr ? QVariantList() : modelOf(alert_->fields_);
}
QVariantList QuickAlertOverlay::buttons() const {
  return alert_ == nullptr ? QVariantList() : modelOf(alert_->buttons_);
}
double QuickAlertOverlay::cornerRadius() const {
  return alert_ == nullptr ? 0 : alert_->appearance.contentViewCornerRadius;
}
QIcon QuickAlertOverlay::closeIcon() const {
  return alert_ == nullptr ? QIcon() : alert_->closeIcon;
}
double QuickAlertOverlay::cardOpacity() const {
  return alert_ == nullptr ? 0 : alert_->animator().opacity();
}

QVariantMap QuickAlertOverlay::colors() const {
  if (alert_ == nullptr) return {};
  return valuesOf(colors_, alert_->appearance, alert_->viewColor);
}

QVariantMap QuickAlertOverlay::looks() const {
  return alert_ == nullptr ? QVariantMap() : looksOf(alert_->appearance);
}

QVariantMap QuickAlertOverlay::places() const {
  return alert_ == nullptr ? QVariantMap() : valuesOf(places_, alert_->datas);
}

void QuickAlertOverlay::showTexts() {
  Q_EMIT textsChanged();
  place();
}

void QuickAlertOverlay::showParts() {
  if (alert_ == nullptr) return;
  colors_ = AlertColors::of(alert_->appearance, alert_->viewColor);
  icon_ = alert_->icon();
  place();
  Q_EMIT partsChanged();
  placeCustomView();
}

void QuickAlertOverlay::placeCustomView() {
  QQuickItem* view = alert_->customSubview;
  if (view == nullptr || customPlace_ == nullptr) return;
  connect(view, &QQuickItem::implicitWidthChanged, this, &QuickAlertOverlay::place,
          Qt::UniqueConnection);
  connect(view, &QQuickItem::implicitHeightChanged, this, &QuickAlertOverlay::place,
          Qt::UniqueConnection);
  view->setParentItem(customPlace_);
  view->setPosition({});
  view->setSize(places_.custom.size());
}

AlertContents::Custom QuickAlertOverlay::customView() const {
  const QQuickItem* view = alert_->customSubview;
  AlertContents::Custom custom;
  custom.leastWidth = static_cast<int>(std::ceil(view->implicitWidth()));
  custom.heightFor = [view](int) { return static_cast<int>(std::ceil(view->implicitHeight())); };
  return custom;
}

AlertContents QuickAlertOverlay::contents() const {
  AlertContents contents;
  contents.title = title();
  contents.text = text();
  contents.heading = heading();
  contents.rows = alert_->datas;
  for (const QuickAlertField* field : alert_->fields_) contents.fields.push_back(field->isLine());
  for (const QuickAlertButton* button : alert_->buttons_) {
    contents.buttons.push_back(button->title());
  }
  if (alert_->customSubview != nullptr) contents.custom = customView();
  contents.hasCircle = icon_.kind != AlertIcon::Kind::none;
  contents.hasCross = alert_->hasCross();
  contents.iconScale = icon_.scale;
  contents.direction = QGuiApplication::layoutDirection();
  return contents;
}

// Where it lies.

QRect QuickAlertOverlay::available() const {
  QRect available(QPoint(), size().toSize());
  const QRect covered = keyboard().toAlignedRect();
  if (!alert_->fields_.empty() && covered.intersects(available)) {
    available.setBottom(covered.top() - 1);
  }
  const int gap = std::min({kWidestGap, available.width() / 20, available.height() / 20});
  return available.adjusted(gap, gap, -gap, -gap);
}

void QuickAlertOverlay::place() {
  if (alert_ == nullptr || card_ == nullptr) return;
  const AlertContents contents = this->contents();
  places_ = AlertLayout(alert_->appearance, contents).place(available().size());
  Q_EMIT placed();
  placeCustomView();
  moveCard();
}

void QuickAlertOverlay::moveCard() {
  if (alert_ == nullptr) return;
  const QRect available = this->available();
  QRect place(QPoint(), places_.card);
  place.moveCenter(available.center());
  if (alert_->type == ScreenType::notification) place.moveTop(available.top());
  // What does not fit is cut off below: the title is read first.
  if (place.top() < available.top()) place.moveTop(available.top());
  const QRect window(QPoint(), size().toSize());
  cardPosition_ = place.topLeft() + alert_->animator().offset(place, window);
  setDimming(std::clamp(alert_->appearance.kDefaultShadowOpacity, 0.0, 1.0) * cardOpacity());
  Q_EMIT cardMoved();
}

// What the user does.

QQuickItem* QuickAlertOverlay::firstFocus() const {
  for (QQuickItem* stop : focusStops()) {
    if (stop->objectName() == "alertField" || stop->objectName() == "alertButton") return stop;
  }
  return nullptr;
}

/// Where the alert opens there is nothing to show: the message is read first.
void QuickAlertOverlay::focusArrived(QQuickItem* item, bool byUser) {
  if (!byUser) return;
  engage();
  Q_EMIT revealed(item);
}

void QuickAlertOverlay::setPointerInside(bool inside) {
  pointerInside_ = inside;
  holdTimeout();
}

void QuickAlertOverlay::engage() {
  engaged_ = true;
  holdTimeout();
}

void QuickAlertOverlay::holdTimeout() {
  if (alert_ == nullptr || window() == nullptr) return;
  alert_->holdTimeout(pointerInside_ || (engaged_ && window()->isActive()));
}

void QuickAlertOverlay::stepFocus(bool forwards) {
  isKeyboardUsed_ = true;
  Q_EMIT keyboardUsedChanged();
  QuickOverlay::stepFocus(forwards);
}

void QuickAlertOverlay::closeByCross() {
  if (alert_ != nullptr) alert_->hideView();
}

// Each is the last thing done: what follows may delete the window.
void QuickAlertOverlay::keyPressEvent(QKeyEvent* event) {
  event->accept();
  // A key that is held down since before the alert came may not answer it.
  if (event->isAutoRepeat() || alert_ == nullptr) return;
  if (event->key() == Qt::Key_Escape && alert_->mayClose()) return alert_->hideView();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) pressDefault();
}

/// A button that has the focus takes the key itself.
void QuickAlertOverlay::pressDefault() {
  if (!alert_->buttons_.empty()) return alert_->buttons_.front()->press();
  if (alert_->mayClose()) alert_->hideView();
}

bool QuickAlertOverlay::isOnCard(const QPointF& position) const {
  const QPointF inside = position - cardPosition_;
  QPainterPath outline;
  outline.addRoundedRect(places_.panel, cornerRadius(), cornerRadius());
  outline.addEllipse(places_.disc);
  outline.setFillRule(Qt::WindingFill);
  return outline.contains(inside);
}

void QuickAlertOverlay::pressed(QPointF position, QPoint global) {
  pointer_ = position;
  global_ = global;
  pressedBeside_ = !isOnCard(position);
}

void QuickAlertOverlay::moved(QPoint global) {
  pointer_ += global - global_;
  global_ = global;
}

void QuickAlertOverlay::released() {
  if (alert_ == nullptr || alert_->appearance.disableTapGesture) return;
  QGuiApplication::inputMethod()->hide();
  const QQuickItem* focused = window()->activeFocusItem();
  if (focused != nullptr && isInside(focused) &&
      focused->flags().testFlag(QQuickItem::ItemAcceptsInputMethod)) {
    forceActiveFocus(Qt::OtherFocusReason);
  }
  if (pressedBeside_ && !isOnCard(pointer_)) alert_->tappedBackground();
}

}  // namespace kifo
