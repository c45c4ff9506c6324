#include "apps/demo/shop/ShopWindow.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/demo/shop/screens/AccountScreen.h"
#include "apps/demo/shop/screens/AlertsScreen.h"
#include "apps/demo/shop/screens/BasketScreen.h"
#include "apps/demo/shop/screens/HomeScreen.h"
#include "apps/demo/shop/screens/ProductScreen.h"
#include "apps/demo/shop/widgets/NavigationBar.h"

namespace kifo::shop {
namespace {

constexpr int kWidthForActivity = 860;
constexpr int kRoomForExtras = 600;  // Below it the bar holds the shop's own pages only.

}  // namespace

ShopWindow::ShopWindow()
    : bar_(new NavigationBar),
      activitySwitch_(bar_->addSwitch(tr("Server"))),
      pages_(new QStackedWidget),
      activity_(new ActivityPanel),
      product_(new ProductScreen) {
  setWindowTitle(tr("Nook"));
  resize(1180, 800);
  setMinimumSize(360, 480);
  auto* centre = new QWidget;
  auto* column = new QVBoxLayout(centre);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(bar_);
  auto* row = new QHBoxLayout;
  row->setSpacing(0);
  row->addWidget(pages_, 1);
  row->addWidget(activity_);
  column->addLayout(row, 1);
  setCentralWidget(centre);

  auto* home = new HomeScreen;
  addScreen(tr("Shop"), home)->setChecked(true);
  pages_->addWidget(product_);
  basketPage_ = new BasketScreen(basket_);
  NavigationButton* basketButton = addScreen(tr("Basket"), static_cast<ShopScreen*>(basketPage_));
  addScreen(tr("Account"), new AccountScreen);
  addExtra(tr("Alerts"), new AlertsScreen);
  activitySwitch_->setChecked(true);
  centre->setFocus();

  connect(activitySwitch_, &QPushButton::toggled, this, &ShopWindow::showActivityWhereThereIsRoom);
  connect(home, &HomeScreen::productChosen, this, &ShopWindow::showProduct);
  connect(product_, &ProductScreen::addWanted, this,
          [this](const Product& product) { basket_.add(product); });
  connect(product_, &ProductScreen::backWanted, this, [this, home] { showPage(home); });
  connect(product_, &ShopScreen::linkFollowed, this, &ShopWindow::followLink);
  connect(&basket_, &Basket::changed, this,
          [this, basketButton] { basketButton->setBadge(basket_.count()); });
}

NavigationButton* ShopWindow::addPage(const QString& name, QWidget* page) {
  NavigationButton* button = bar_->add(name);
  pages_->addWidget(page);
  pageButtons_.addButton(button, pages_->indexOf(page));
  connect(button, &QPushButton::clicked, this, [this, page] { showPage(page); });
  return button;
}

NavigationButton* ShopWindow::addScreen(const QString& name, ShopScreen* screen) {
  connect(screen, &ShopScreen::linkFollowed, this, &ShopWindow::followLink);
  return addPage(name, screen);
}

void ShopWindow::addExtra(const QString& name, ShopScreen* screen) {
  extraButtons_.push_back(addScreen(name, screen));
}

void ShopWindow::showPage(QWidget* page) {
  pages_->setCurrentWidget(page);
  // A product has no button of its own; it stands on the shelf.
  const int index = page == product_ ? 0 : pages_->indexOf(page);
  if (auto* button = pageButtons_.button(index)) button->setChecked(true);
}

void ShopWindow::followLink(const QString& link) {
  if (link == QLatin1String("shop://basket")) return showPage(basketPage_);
  const auto& products = catalogue();
  const auto found = std::ranges::find_if(products, [&](const Product& product) {
    return link == QLatin1String("shop://product/") + product.id;
  });
  if (found != products.end()) showProduct(*found);
}

void ShopWindow::showActivityWhereThereIsRoom() {
  const bool hasSpace = width() >= kWidthForActivity;
  for (auto* button : extraButtons_) button->setVisible(width() >= kRoomForExtras);
  activitySwitch_->setVisible(hasSpace);
  activity_->setVisible(hasSpace && activitySwitch_->isChecked());
}

void ShopWindow::resizeEvent(QResizeEvent*) {
  showActivityWhereThereIsRoom();
}

void ShopWindow::showProduct(const Product& product) {
  product_->setProduct(product);
  showPage(product_);
}

}  // namespace kifo::shop
