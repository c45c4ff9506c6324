#pragma once

#include <memory>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#include "apps/demo/shop/screens/ShopScreen.h"

namespace kifo::shop {

class AlertsScreenTile;
class Shelf;

/// Shows what the SDK's alert can do: a tile for each style, for each thing that a card can hold,
/// and for each way that it can come. What was answered last stands below the headline.
class AlertsScreen : public ShopScreen {
  Q_OBJECT

 public:
  explicit AlertsScreen(QWidget* parent = nullptr);

 private:
  using Alert = std::shared_ptr<KifoPopup>;
  /// What a tile shows.
  using Show = void (AlertsScreen::*)();

  void addStyles();
  void addContents();
  void addWays();
  Shelf* addSection(const QString& title);
  void addTile(Shelf* shelf, KifoPopupStyle style, const QString& text, Show shown);
  void addWay(Shelf* shelf, const QString& text, KifoAnimationStyle way, bool springs = false);

  Alert make(const KifoAppearance& appearance = KifoAppearance::likePopups());
  /// Adds a button that only says what was answered.
  KifoButton* addAnswer(const Alert& alert, const QString& title, const QColor& color = {});
  void say(const QString& answer);
  void setDark(bool dark);

  void showSuccess();
  void showError();
  void showNotice();
  void showWarning();
  void showInfo();
  void showEdit();
  void showWait();
  void showQuestion();
  void showFields();
  void showCountdown();
  void showList();
  void showOwnView();
  void showOwnColours();
  void showLongText();
  void showStaying();
  void showTwo();
  void showNotification();

  QLabel* answer_;
  std::vector<QLabel*> titles_;
  std::vector<AlertsScreenTile*> tiles_;
  bool dark_ = false;
};

}  // namespace kifo::shop
