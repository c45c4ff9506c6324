#pragma once

#include <QButtonGroup>
#include <QMainWindow>
#include <QStackedWidget>
#include <vector>

#include "apps/demo/shop/ActivityPanel.h"
#include "apps/demo/shop/Basket.h"

namespace kifo::shop {

class NavigationBar;
class NavigationButton;
class ProductScreen;
class ShopScreen;

/// The shop: its pages one at a time, the bar that leads to them, and the panel that shows what the
/// server receives.
class ShopWindow : public QMainWindow {
  Q_OBJECT

 public:
  ShopWindow();

  /// Adds a page, with a button in the bar.
  NavigationButton* addPage(const QString& name, QWidget* page);
  /// Adds a page of the shop, whose campaigns' links are followed.
  NavigationButton* addScreen(const QString& name, ShopScreen* screen);

  /// Adds a page of the shop that has a button in the bar only while there is space for it.
  void addExtra(const QString& name, ShopScreen* screen);

  void showPage(QWidget* page);
  /// Goes where a campaign leads: "shop://basket" or "shop://product/<id>"; other links are
  /// ignored.
  void followLink(const QString& link);

  [[nodiscard]] ActivityPanel* activity() const { return activity_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showProduct(const Product& product);
  void showActivityWhereThereIsRoom();

  Basket basket_;
  NavigationBar* bar_;
  NavigationButton* activitySwitch_;
  std::vector<NavigationButton*> extraButtons_;
  QStackedWidget* pages_;
  ActivityPanel* activity_;
  QButtonGroup pageButtons_;
  ProductScreen* product_;
  QWidget* basketPage_;
};

}  // namespace kifo::shop
