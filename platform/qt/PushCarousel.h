#pragma once

#include <QString>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "Kifo_iOS_Common_Kit/ports/CollectionView.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QAbstractButton;

namespace kifo {

class PageIndicator;
class PopupCarousel;

/// A push's images as a carousel, for a host's own notification panel:
///
///     auto* carousel = new kifo::PushCarousel;
///     carousel->setNotification(notification);   // isEmpty() when the push carries no images
///     layout->addWidget(carousel);
///
/// Its two buttons, the arrow keys and swiping change the page; buttons and keys go from the last
/// page to the first and back. A page is 20 logical pixels less high than it is wide.
///
/// **Threading:** UI thread only.
/// **Ownership:** belongs to its parent. The last one that was given images is
/// `NotificationManager::collectionView()` as long as it exists.
class KIFO_EXPORT PushCarousel : public QWidget {
  Q_OBJECT

 public:
  struct Texts {
    QString previous = QStringLiteral("Previous image");
    QString next = QStringLiteral("Next image");
  };

  explicit PushCarousel(QWidget* parent = nullptr, const PopUpOptions& options = {});
  PushCarousel(QWidget* parent, const PopUpOptions& options, const Texts& texts);
  ~PushCarousel() override;

  void setNotification(const Notification& notification);

  [[nodiscard]] bool isEmpty() const { return count_ == 0; }
  [[nodiscard]] int currentIndex() const { return currentIndex_; }
  /// The row of pages itself.
  [[nodiscard]] PopupCarousel* pages() const { return pages_; }

  void showNext();
  void showPrevious();

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void currentIndexChanged(int index);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void changeIndex(int index);

  PopUpOptions options_;
  PopupCarousel* pages_;
  PageIndicator* indicator_;
  QAbstractButton* previous_;
  QAbstractButton* next_;
  int count_ = 0;
  int currentIndex_ = 0;
};

}  // namespace kifo
