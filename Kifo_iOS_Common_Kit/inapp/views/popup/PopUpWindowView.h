#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QVariantAnimation>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupGeometry.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupElements.h"

class QDataStream;
class QTimer;

namespace kifo {

/// Draws one campaign: the panel and everything in it, in the middle of the window. It writes what
/// is typed and the score into the popup's state, and says through its pieces what was pressed.
/// Every piece bears its name in `PopupElements` as its object name.
///
/// The panel has the campaign's `totalHeight`; while the free-text block is closed, as it is from
/// the start for campaigns that ask for none, `fieldViewHeight` less unless the options keep that
/// space; and more where the content needs it. A panel that is taller than the window scrolls below
/// the close button.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window, which owns the state too.
class PopUpWindowView : public QWidget {
  Q_OBJECT

 public:
  static constexpr int freeTextMaksCount = FreeTextRule::freeTextMaksCount;

  PopUpWindowView(PopupState& state, const PopUpOptions& options, QWidget* parent);
  /// Popups are not archived: fatal.
  explicit PopUpWindowView(QDataStream& archive);
  ~PopUpWindowView() override;

  [[nodiscard]] const PopupElements& elements() const { return elements_; }
  [[nodiscard]] const PopupState& state() const { return *state_; }
  [[nodiscard]] const PopupTheme& theme() const { return theme_; }
  [[nodiscard]] const PopupContent& content() const { return content_; }
  [[nodiscard]] float sliderValue() const { return state_->sliderValue; }
  [[nodiscard]] const std::string& freeText() const { return state_->freeText; }
  [[nodiscard]] bool isEnableTimer() const { return isEnableTimer_; }
  /// Runs while the list's scroll indicator flashes; null before and after.
  [[nodiscard]] QTimer* timerForShowScrollIndicator() const { return timerForShowScrollIndicator_; }

  /// Lays out anew for another size of the screen. An on-screen keyboard leaves of the view only
  /// what lies from `visibleTop` down to `visibleBottom`.
  void setPlace(const QRect& geometry, int visibleTop, int visibleBottom);
  /// 0 (nothing of it is seen) to 1.
  void setOpacity(double opacity);
  /// Does now what the first frame of a fade would have to.
  void prepareOpacity();
  /// Scrolls the panel and the list so that a piece of them can be seen.
  void reveal(QWidget* piece);

  void sliderValueDidChange(float value);
  void textFieldDidChange();
  /// Copies the coupon's code; the button then shows that it did.
  void copyButtonPressed();
  /// Shows what the state says is chosen, and what follows from it.
  void showChoice();
  /// Makes the submit button look as it does once there is an answer.
  void enableSubmitButton();
  void showFreeTextField();
  /// Closes the free-text block and forgets what was typed.
  void hideFreeTextField();
  /// Starts the flashing of the list's scroll indicator, or ends it once `isEnableTimer` is false.
  void showScrollIndicator();
  /// Ends the flashing as soon as something has been scrolled by more than one logical pixel.
  void scrollViewDidScroll(double offset);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void wire();
  void arrange();
  void show(const PanelPlace& place);
  void putSubmitInto(QWidget* parent);
  void showThatPanelScrolls();
  void growScore(bool grows);
  void setOpenness(double openness);
  void moveOpennessTo(double openness);
  void startFlashing();

  PopupState* state_;
  PopupTheme theme_;
  PopupContent content_;
  PopupElements elements_;
  QVariantAnimation opening_;
  QTimer* timerForShowScrollIndicator_ = nullptr;
  std::optional<std::pair<int, int>> visibleBand_;
  double openness_ = 0;
  double opacity_ = 1;
  bool isEnableTimer_ = true;
  bool flashesPanel_ = false;
};

}  // namespace kifo
