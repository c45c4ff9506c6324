#pragma once

#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"

namespace kifo {

/// A row of dots, one for each page of the carousel; when there are more than fit, a row that shows
/// the way instead.
///
/// **Threading:** UI thread only.
class PageIndicator : public QWidget {
  Q_OBJECT

 public:
  PageIndicator(const PopupTheme& theme, QWidget* parent);

  void setNumberOfPages(int pages);
  void setCurrentPage(int page);
  [[nodiscard]] int numberOfPages() const { return numberOfPages_; }
  [[nodiscard]] int currentPage() const { return currentPage_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void nameIt();

  PopupTheme theme_;
  int numberOfPages_ = 0;
  int currentPage_ = 0;
};

}  // namespace kifo
