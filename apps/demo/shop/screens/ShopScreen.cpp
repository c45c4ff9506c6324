#include "apps/demo/shop/screens/ShopScreen.h"

#include <QPainter>
#include <QPointer>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {

ShopScreen::ShopScreen(QWidget* parent) : QtScreen(parent), scroll_(new ScrollPage) {
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(scroll_);
}

void ShopScreen::send(const std::string& eventName, EventParameters parameters) {
  const auto chosen = [page = QPointer(this)](std::shared_ptr<AppCommunicationItemButton> button) {
    if (!page || !button || !button->action || !button->action->link) return;
    Q_EMIT page->linkFollowed(QString::fromStdString(*button->action->link));
  };
  KifoEventManager::sendEvent(viewController(), eventName, std::nullopt, std::move(parameters),
                              chosen);
}

QLabel* ShopScreen::label(const QString& text, const QFont& font, const QColor& color, bool wraps) {
  auto* made = new QLabel(text);
  made->setFont(font);
  made->setWordWrap(wraps);
  QPalette palette;
  palette.setColor(QPalette::WindowText, color);
  made->setPalette(palette);
  return made;
}

QLabel* ShopScreen::headline(const QString& text) {
  auto* made = label(text, theme::display(30), theme::kInk);
  made->setContentsMargins(static_cast<int>(theme::kShadow), 0, 0, 0);
  return made;
}

void ShopScreen::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), theme::kPaper);
}

CardFrame::CardFrame(QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
  const int inset = static_cast<int>(theme::kShadow) + 20;
  column_->setContentsMargins(inset, inset, inset, inset);
  column_->setSpacing(10);
}

void CardFrame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  theme::paintCard(painter, rect(), theme::kCard);
}

}  // namespace kifo::shop
