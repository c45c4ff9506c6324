#include "apps/demo/shop/screens/ProductScreen.h"

#include <QHBoxLayout>

#include "apps/demo/shop/widgets/AdaptiveRow.h"
#include "apps/demo/shop/widgets/Picture.h"
#include "apps/demo/shop/widgets/PillButton.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {

ProductScreen::ProductScreen(QWidget* parent)
    : ShopScreen(parent),
      product_(&catalogue().front()),
      picture_(new Picture(*product_)),
      stars_(new StarRow(*product_)),
      maker_(label({}, theme::text(15, QFont::Medium), theme::kGreen)),
      name_(label({}, theme::display(42), theme::kInk)),
      description_(label({}, theme::text(16), theme::kMuted)),
      price_(label({}, theme::text(26, QFont::DemiBold), theme::kInk)) {
  auto* back = new PillButton(tr("‹ Back to the shelf"), PillButton::Look::quiet);
  auto* add = new PillButton(tr("Add to basket"));
  auto* rate = new PillButton(tr("Rate it"), PillButton::Look::outlined);
  auto* row = new AdaptiveRow(560, 40);
  row->box()->setContentsMargins(12, 0, 12, 12);
  picture_->setMinimumSize(220, 300);
  picture_->setMaximumHeight(560);
  row->box()->addWidget(picture_, 5);
  auto* words = new QVBoxLayout;
  words->setSpacing(10);
  words->addStretch(1);
  words->addWidget(maker_);
  words->addWidget(name_);
  words->addWidget(stars_);
  words->addSpacing(6);
  words->addWidget(description_);
  words->addSpacing(10);
  words->addWidget(price_);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(12);
  buttons->addWidget(add);
  buttons->addWidget(rate);
  buttons->addStretch();
  words->addLayout(buttons);
  words->addStretch(2);
  row->box()->addLayout(words, 6);
  auto* backRow = new QHBoxLayout;
  backRow->setContentsMargins(12, 0, 0, 0);
  backRow->addWidget(back);
  backRow->addStretch();
  column()->addLayout(backRow);
  column()->addWidget(row, 1);

  connect(back, &QPushButton::clicked, this, &ProductScreen::backWanted);
  connect(add, &QPushButton::clicked, this, &ProductScreen::addToBasket);
  connect(rate, &QPushButton::clicked, this, [this] {
    send("rating_wanted", {{"product", product_->id.toStdString()}});
  });
  setProduct(*product_);
}

void ProductScreen::setProduct(const Product& product) {
  product_ = &product;
  picture_->setProduct(product);
  stars_->setProduct(product);
  maker_->setText(product.maker);
  name_->setText(product.name);
  description_->setText(product.description);
  price_->setText(priceText(product.price));
}

void ProductScreen::addToBasket() {
  Q_EMIT addWanted(*product_);
  send("basket_add", {{"product", product_->id.toStdString()}, {"price", product_->price}});
}

}  // namespace kifo::shop
