#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QVariantAnimation>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"
#include "Kifo_iOS_Common_Kit/ports/CollectionView.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class ImageLoader;
class KifoImageCollectionViewCell;

/// The campaign's pictures side by side, of which one is seen. It moves by itself, by swiping, and
/// by the arrow keys while it has the focus. Only the pages about the one shown have cells.
///
/// **Threading:** UI thread only.
class PopupCarousel : public QWidget, public CollectionView {
  Q_OBJECT

 public:
  PopupCarousel(const PopupTheme& theme, QWidget* parent);

  void setImages(std::vector<std::string> urls, std::shared_ptr<ImageLoader> loader);
  [[nodiscard]] int numberOfItems() const { return static_cast<int>(urls_.size()); }
  [[nodiscard]] int currentPage() const { return currentPage_; }
  /// The cell of a page; null while it has none.
  [[nodiscard]] KifoImageCollectionViewCell* cellForItem(int row) const;
  [[nodiscard]] bool isScrolling() const { return slide_.state() == QAbstractAnimation::Running; }

  [[nodiscard]] double width() const override { return QWidget::width(); }
  void setPagingEnabled(bool enabled) override { pagingEnabled_ = enabled; }
  void scrollToItem(int row, int section, ScrollPosition position, bool animated) override;

 Q_SIGNALS:
  /// The user turned to another page.
  void pageTurned(int page);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void moveTo(double offset);
  void keepCellsAbout(int first, int last);
  void place(int row, KifoImageCollectionViewCell* cell);
  void turnTo(int row);
  void nameIt();

  PopupTheme theme_;
  std::vector<std::string> urls_;
  std::shared_ptr<ImageLoader> loader_;
  std::map<int, KifoImageCollectionViewCell*> cells_;
  QVariantAnimation slide_;
  QWidget* focusMark_;
  double offset_ = 0;  ///< In pages.
  int currentPage_ = 0;
  bool pagingEnabled_ = true;
  bool swiping_ = false;
  double swipeStart_ = 0;
  double swipeOffset_ = 0;
};

}  // namespace kifo
