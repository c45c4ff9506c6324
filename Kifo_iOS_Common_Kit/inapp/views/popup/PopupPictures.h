#pragma once

#include <memory>

#include <QObject>

class QTimer;
class QWidget;

namespace kifo {

class ImageLoader;
class PopUpWindowView;
struct PopUpOptions;

/// The pictures of a popup: the single one, the carousel with its timer, and the emojis.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window, which owns the view too.
class PopupPictures : public QObject {
  Q_OBJECT

 public:
  PopupPictures(PopUpWindowView& view, const PopUpOptions& options, QWidget* window);

  /// Asks for the pictures, and starts the carousel's timer soon.
  void load();
  /// Shows a page of the carousel.
  void scrollTo(int page, bool animated);
  void stopTimer();
  /// Runs while the carousel advances by itself; null otherwise.
  [[nodiscard]] QTimer* timer() const { return timer_; }

 Q_SIGNALS:
  /// It is time for the next page.
  void due();
  /// The user turned to another page.
  void pageTurned(int page);

 private:
  void loadCarousel();
  void loadSingle();
  void startTimer();

  PopUpWindowView& view_;
  std::shared_ptr<ImageLoader> loader_;
  QTimer* timer_ = nullptr;
  bool stopped_ = false;
};

}  // namespace kifo
