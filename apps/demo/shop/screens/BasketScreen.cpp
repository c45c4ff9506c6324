#include "apps/demo/shop/screens/BasketScreen.h"

#include <QHBoxLayout>
#include <QTimer>

#include "apps/demo/shop/widgets/AdaptiveRow.h"
#include "apps/demo/shop/widgets/Picture.h"
#include "apps/demo/shop/widgets/PillButton.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {
namespace {

constexpr int kRowHeight = 76;  // of a thumbnail and two lines beside it
constexpr int kPayment = 2000;  // milliseconds

}  // namespace

BasketScreen::BasketScreen(Basket& basket, QWidget* parent)
    : ShopScreen(parent),
      basket_(basket),
      card_(new CardFrame),
      rows_(new QVBoxLayout),
      total_(label({}, theme::text(22, QFont::DemiBold), theme::kInk, /*wraps=*/false)),
      order_(new PillButton(tr("Place the order"))) {
  auto* coupon = new PillButton(tr("Get a coupon"), PillButton::Look::outlined);
  auto* foot = new AdaptiveRow(480, 12);
  foot->box()->addWidget(total_, 1);
  foot->box()->addWidget(coupon);
  foot->box()->addWidget(order_);
  rows_->setSpacing(14);
  card_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  card_->column()->addLayout(rows_);
  card_->column()->addSpacing(8);
  card_->column()->addWidget(foot);
  column()->addWidget(headline(tr("Your basket")));
  column()->addWidget(card_);
  column()->addStretch();

  connect(coupon, &QPushButton::clicked, this, [this] { send("coupon_wanted"); });
  connect(order_, &QPushButton::clicked, this, &BasketScreen::order);
  connect(&basket_, &Basket::changed, this, &BasketScreen::refresh);
  refresh();
}

void BasketScreen::refresh() {
  while (QLayoutItem* item = rows_->takeAt(0)) {
    item->widget()->deleteLater();
    delete item;
  }
  for (const Basket::Entry& entry : basket_.entries()) rows_->addWidget(rowFor(entry));
  if (basket_.entries().empty()) {
    rows_->addWidget(label(tr("Nothing here yet. The shelf is one click away."), theme::text(16),
                           theme::kMuted));
  }
  total_->setText(tr("Total  %1").arg(priceText(basket_.total())));
  order_->setEnabled(basket_.count() > 0);
}

QWidget* BasketScreen::rowFor(const Basket::Entry& entry) const {
  auto* row = new QWidget;
  row->setFixedHeight(kRowHeight);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(18);
  auto* picture = new Picture(*entry.product);
  picture->setFixedSize(kRowHeight, kRowHeight);
  layout->addWidget(picture);
  auto* names = new QVBoxLayout;
  names->setSpacing(0);
  names->addStretch();
  names->addWidget(label(entry.product->name, theme::text(17, QFont::DemiBold), theme::kInk));
  names->addWidget(label(entry.product->maker, theme::text(14), theme::kMuted));
  names->addStretch();
  layout->addLayout(names, 1);
  layout->addWidget(
      label(tr("× %1").arg(entry.count), theme::text(16), theme::kMuted, /*wraps=*/false));
  auto* price = label(priceText(entry.product->price * entry.count),
                      theme::text(17, QFont::DemiBold), theme::kInk, /*wraps=*/false);
  price->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  price->setMinimumWidth(64);
  layout->addWidget(price);
  return row;
}

void BasketScreen::order() {
  send("order_placed", {{"total", basket_.total()}, {"items", basket_.count()}});
  popups_.setPopupsPaused(true);
  order_->setText(tr("Paying …"));
  order_->setEnabled(false);
  QTimer::singleShot(kPayment, this, &BasketScreen::paid);
}

void BasketScreen::paid() {
  order_->setText(tr("Place the order"));
  basket_.clear();
  popups_.setPopupsPaused(false);
}

}  // namespace kifo::shop
