#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QImage>
#include <QObject>
#include <QTimer>
#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupGeometry.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/PopupParts.h"

namespace kifo {

class ImageLoader;

/// The pictures of a popup in a scene: the single one, the carousel with its timer and its place,
/// and the emojis.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its popup, which owns the state too.
class QuickPictures : public QObject {
  Q_OBJECT

 public:
  QuickPictures(PopupState& state, const PopUpOptions& options, QObject* popup);

  /// Asks for the pictures and starts the carousel's timer. `scale` is the window's.
  void load(PopupParts& parts, double scale);

  /// The picture of a page, or the single one; null while there is none.
  [[nodiscard]] QImage picture(int page) const;
  [[nodiscard]] bool isLoading(int page) const;
  [[nodiscard]] bool isEmojiLoading(int row) const { return isLoading(-1 - row); }
  [[nodiscard]] int spinnerStep() const { return spinnerStep_; }
  [[nodiscard]] int pages() const { return static_cast<int>(state_.images.size()); }
  /// Which page is seen; a fraction while it slides.
  [[nodiscard]] double offset() const { return offset_; }
  /// Shows that place of the carousel at once.
  void slideTo(double offset);
  /// The user turned to a page.
  void turnTo(int page);
  /// To the next page, from the last one back to the first: what the timer does.
  void turnByItself();
  [[nodiscard]] bool turnsByItself() const { return pageTimer_.isActive(); }
  [[nodiscard]] bool isSliding() const { return slide_.state() == QAbstractAnimation::Running; }
  void stopTimer() { pageTimer_.stop(); }

 Q_SIGNALS:
  void pieceChanged(kifo::PopupPiece piece);
  /// An emoji's picture has come; null when it cannot be had.
  void emojiCame(int row, const QImage& image);

 private:
  void fetch(const std::string& url, int page);
  void fetchEmojis(PopupParts& parts);
  void showPage(int page, bool animated);

  PopupState& state_;
  const PopUpOptions& options_;
  std::shared_ptr<ImageLoader> loader_;
  std::vector<int> loading_;  ///< Pages; the emoji of a row is -1 - row.
  QTimer pageTimer_;
  QTimer spinner_;
  QVariantAnimation slide_;
  double offset_ = 0;
  int lastChecked_ = -1;  ///< Up to this page, texts that are no URL have been printed.
  int spinnerStep_ = 0;
};

}  // namespace kifo
