#pragma once

#include <memory>

#include <QObject>

class QTimer;
class QWidget;

namespace kifo {

class ImageLoader;
class PopUpWindowView;
struct PopUpOptions;
struct PopupState;

/// The pictures of a popup: the single one, the carousel with the timer that turns its pages, and
/// the emojis' faces.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window, which owns the fields and
/// the view too.
class PopupPictures : public QObject {
  Q_OBJECT

 public:
  PopupPictures(PopupState& fields, PopUpWindowView& view, const PopUpOptions& options,
                QWidget* window);

  /// Asks for the pictures, and has the carousel turn its pages soon.
  void load();
  /// One page further; from the last one back to the first, without a movement.
  void turnPage();
  void stopTimer();
  /// Runs while the carousel advances by itself; null otherwise.
  [[nodiscard]] QTimer* timer() const { return timer_; }

 private:
  void loadCarousel();
  void loadSingle();
  void startTimer();

  PopupState& fields_;
  PopUpWindowView& view_;
  std::shared_ptr<ImageLoader> loader_;
  QTimer* timer_ = nullptr;
  bool stopped_ = false;
};

}  // namespace kifo
