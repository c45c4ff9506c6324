#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <limits>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertDisc.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertIconView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertList.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertStyleSheet.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertIcon.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupScrollArea.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr int kBorder = 1;
static_assert(AlertLayout::kScrollBar == ScrollIndicator::thickness);

}  // namespace

AlertCard::AlertCard() : scroll_(new PopupScrollArea(false, this)) {
  scroll_->setObjectName(QLatin1String(AlertStyleSheet::kScrollName));
  scroll_->viewport()->setObjectName(QLatin1String(AlertStyleSheet::kViewportName));
  contentView = new QWidget;
  contentView->setObjectName(QLatin1String(AlertStyleSheet::kContentName));
  contentView->installEventFilter(this);
  scroll_->setWidget(contentView);
  // After setWidget, which turns it on.
  contentView->setAutoFillBackground(false);
  labelTitle = new TextLabel(contentView);
  viewText = new TextLabel(contentView);
  list = new AlertList(contentView);
  circleBG = new AlertDisc(this);
  circleView = new AlertDisc(circleBG);
  circleIconView = new AlertIconView(circleView);
  closeImage = new CloseButton(this);
  closeImage->setAccessibleName(tr("Close"));
  closeImage->setFixedSize(AlertLayout::kCloseButton, AlertLayout::kCloseButton);
  closeImage->setVisible(false);
}

void AlertCard::addField(QWidget* field) {
  field->setObjectName(QLatin1String(AlertStyleSheet::kFieldName));
  fields.push_back(field);
  field->setVisible(true);
  Q_EMIT outgrown();
}

QLineEdit* AlertCard::addTextField(const QString& title) {
  auto* field = new QLineEdit(contentView);
  field->setPlaceholderText(title);
  field->setAccessibleName(title);
  connect(field, &QLineEdit::textEdited, this, &AlertCard::edited);
  inputs.push_back(field);
  addField(field);
  return field;
}

QPlainTextEdit* AlertCard::addTextView() {
  auto* field = new QPlainTextEdit(contentView);
  field->setFrameShape(QFrame::NoFrame);
  field->setTabChangesFocus(true);
  connect(field, &QPlainTextEdit::textChanged, this, &AlertCard::edited);
  input.push_back(field);
  addField(field);
  return field;
}

KifoButton* AlertCard::addButton(const QString& title) {
  auto* button = new KifoButton(title, contentView);
  buttons.push_back(button);
  button->setVisible(true);
  Q_EMIT outgrown();
  return button;
}

void AlertCard::removeButton(KifoButton* button) {
  std::erase(buttons, button);
  button->setVisible(false);
  button->deleteLater();
}

void AlertCard::setCustomSubview(QWidget* view) {
  if (view == customSubview_) return;
  if (customSubview_ != nullptr) customSubview_->setParent(nullptr);
  customSubview_ = view;
  if (view == nullptr) return;
  customSize_ = view->testAttribute(Qt::WA_Resized) ? view->size() : QSize(0, 0);
  view->setParent(contentView);
  view->setVisible(true);
}

void AlertCard::dress(const KifoAppearance& appearance, const QColor& color,
                      const QColor& buttonText) {
  appearance_ = appearance;
  colors_ = AlertColors::of(appearance, color);
  setStyleSheet(AlertStyleSheet::forCard(appearance, colors_));
  scroll_->setColors(colors_.card, colors_.text);
  labelTitle->setFace(appearance.kTitleFont, colors_.title);
  viewText->setFace(appearance.kTextFont, colors_.text,
                    AlertLayout::alignmentOf(appearance.textViewAlignment));
  circleBG->setColor(appearance.circleBackgroundColor);
  circleView->setColor(color);
  list->setContents(heading_, rows_, appearance, colors_);
  for (KifoButton* button : buttons) {
    const bool standsBack = button->onlyCloses && buttons.size() > 1;
    button->setLook(lookOf(*button, standsBack, appearance, color, buttonText));
  }
  update();
}

void AlertCard::setIcon(const AlertIcon& icon) {
  hasCircle_ = icon.kind != AlertIcon::Kind::none;
  iconScale_ = icon.scale;
  circleIconView->setIcon(icon);
}

void AlertCard::setList(const QString& heading, const std::vector<TypeData>& rows) {
  heading_ = heading;
  rows_ = rows;
}

AlertContents AlertCard::contents() const {
  AlertContents contents;
  contents.title = labelTitle->text();
  contents.text = viewText->text();
  contents.heading = heading_;
  contents.rows = rows_;
  for (QWidget* field : fields) {
    contents.fields.push_back(qobject_cast<QLineEdit*>(field) != nullptr);
  }
  for (const KifoButton* button : buttons) contents.buttons.push_back(button->text());
  if (customSubview_ != nullptr) contents.custom = customView();
  contents.hasCircle = hasCircle_;
  contents.hasCross = !closeImage->isHidden();
  contents.iconScale = iconScale_;
  contents.direction = layoutDirection();
  return contents;
}

AlertContents::Custom AlertCard::customView() const {
  const QWidget* view = customSubview_;
  const QSize hint = view->sizeHint();
  AlertContents::Custom custom;
  custom.leastWidth = std::max(view->minimumWidth(), view->minimumSizeHint().width());
  if (!hint.isValid()) custom.leastWidth = std::max(custom.leastWidth, customSize_.width());
  custom.heightFor = [view, hint, given = customSize_.height()](int width) {
    int height = hint.isValid() ? hint.height() : given;
    if (view->sizePolicy().hasHeightForWidth()) height = view->heightForWidth(width);
    return std::clamp(height, view->minimumHeight(), view->maximumHeight());
  };
  return custom;
}

void AlertCard::arrange(const QSize& available) {
  const AlertContents contents = this->contents();
  places_ = AlertLayout(appearance_, contents).place(available);
  resize(places_.card);
  scroll_->setGeometry(places_.viewport);
  contentView->resize(places_.contents);
  placeContents();
  placeCircle();
  closeImage->move(places_.cross.topLeft());
  outline_ = makeOutline();
  update();
}

void AlertCard::placeContents() {
  labelTitle->setFace(places_.titleFont, colors_.title);
  labelTitle->setGeometry(places_.title);
  viewText->setGeometry(places_.text);
  list->place(places_);
  for (std::size_t i = 0; i < fields.size(); ++i) fields[i]->setGeometry(places_.fields[i]);
  if (customSubview_ != nullptr) customSubview_->setGeometry(places_.custom);
  for (std::size_t i = 0; i < buttons.size(); ++i) buttons[i]->setGeometry(places_.buttons[i]);
}

void AlertCard::placeCircle() {
  circleBG->setVisible(!places_.disc.isEmpty());
  circleBG->setGeometry(places_.disc);
  circleBG->setRim(appearance_.contentViewBorderColor, places_.panel.top() - places_.disc.top());
  circleView->setGeometry(places_.circle);
  circleIconView->setGeometry(places_.icon);
}

void AlertCard::reveal(QWidget* part) {
  if (places_.scrolls && contentView->isAncestorOf(part)) scroll_->reveal(part);
}

std::pair<int, int> AlertCard::placeInReading(const QWidget* widget) const {
  while (widget != nullptr && widget->parentWidget() != contentView)
    widget = widget->parentWidget();
  if (widget == nullptr) return {std::numeric_limits<int>::max(), 0};
  const QRect place = widget->geometry();
  return {place.top(), isRightToLeft() ? -place.right() : place.left()};
}

bool AlertCard::readsBefore(const QWidget* former, const QWidget* latter) const {
  return placeInReading(former) < placeInReading(latter);
}

QPainterPath AlertCard::makeOutline() const {
  QPainterPath path;
  const double radius = appearance_.contentViewCornerRadius;
  path.addRoundedRect(places_.panel, radius, radius);
  if (places_.disc.isEmpty()) return path;
  QPainterPath disc;
  disc.addEllipse(places_.disc);
  return path.united(disc);
}

void AlertCard::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(appearance_.contentViewBorderColor, kBorder));
  painter.setBrush(appearance_.contentViewColor);
  const double radius = appearance_.contentViewCornerRadius;
  painter.drawRoundedRect(QRectF(places_.panel).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void AlertCard::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  Q_EMIT pointerInside(true);
}

void AlertCard::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT pointerInside(false);
}

void AlertCard::forget(const QObject* part) {
  std::erase(inputs, part);
  std::erase(input, part);
  std::erase(buttons, part);
  std::erase(fields, part);
}

bool AlertCard::eventFilter(QObject* watched, QEvent* event) {
  if (watched != contentView) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::LayoutRequest) Q_EMIT outgrown();
  if (event->type() == QEvent::ChildRemoved) forget(static_cast<QChildEvent*>(event)->child());
  return QWidget::eventFilter(watched, event);
}

}  // namespace kifo
