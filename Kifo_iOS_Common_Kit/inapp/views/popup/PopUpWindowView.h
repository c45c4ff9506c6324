#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QVariantAnimation>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupElements.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupTheme.h"

class QTimer;

namespace kifo {

/// Draws one campaign: the panel and everything in it, in the middle of the window. It keeps what
/// was typed and the score, and says through its pieces what was pressed. Every piece bears its
/// name in `PopupElements` as its object name.
///
/// The panel has the campaign's `totalHeight`; while the free-text block is closed, as it is from
/// the start for campaigns that ask for none, `fieldViewHeight` less unless the options keep that
/// room; and more where the content needs it. A panel that is taller than the window scrolls below
/// the close button.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window.
class KIFO_EXPORT PopUpWindowView : public QWidget {
  Q_OBJECT

 public:
  static constexpr int freeTextMaksCount = FreeTextRule::freeTextMaksCount;

  PopUpWindowView(const PopupHeights& heights, PopupPreferences preferences,
                  const PopUpOptions& options, QWidget* parent);
  ~PopUpWindowView() override;

  [[nodiscard]] const PopupElements& elements() const { return elements_; }
  [[nodiscard]] const PopupHeights& heights() const { return heights_; }
  [[nodiscard]] const PopupTheme& theme() const { return theme_; }
  [[nodiscard]] const PopupPreferences& popupPreferences() const { return popupPreferences_; }
  [[nodiscard]] float sliderValue() const { return sliderValue_; }
  [[nodiscard]] const std::string& freeText() const { return freeText_; }
  [[nodiscard]] bool isEnableTimer() const { return isEnableTimer_; }
  /// Runs while the list's scroll indicator flashes; null before and after.
  [[nodiscard]] QTimer* timerForShowScrollIndicator() const { return timerForShowScrollIndicator_; }

  /// Lays out anew for another size of the screen. An on-screen keyboard leaves of the view only
  /// what lies from `visibleTop` down to `visibleBottom`.
  void setPlace(const QRect& geometry, const PopupHeights& heights, int visibleTop,
                int visibleBottom);
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
  void placePanel(int width, int contentHeight);
  void setOpenness(double openness);
  void moveOpennessTo(double openness);
  void startFlashing();

  PopupHeights heights_;
  PopupPreferences popupPreferences_;
  PopupTheme theme_;
  PopupElements elements_;
  QVariantAnimation opening_;
  QTimer* timerForShowScrollIndicator_ = nullptr;
  std::optional<std::pair<int, int>> visibleBand_;
  std::string freeText_;
  double openness_ = 0;
  double opacity_ = 1;
  float sliderValue_ = 0;
  bool isEnableTimer_ = true;
};

}  // namespace kifo
