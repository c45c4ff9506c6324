#pragma once

#include <QColor>
#include <QVariantAnimation>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"

class QScrollBar;

namespace kifo {

/// A thin bar over the edge of a scrolled area that shows how much there is and where one is. It
/// appears when it flashes and while the area is scrolled, and fades; with reduced motion it stays.
///
/// **Threading:** UI thread only.
class ScrollIndicator : public QWidget {
  Q_OBJECT

 public:
  static constexpr int thickness = kScrollIndicatorThickness;

  /// `still`: the host asks for reduced motion.
  ScrollIndicator(QScrollBar* bar, bool still, QWidget* parent);

  void setColor(const QColor& color) { color_ = color; }

  void flash();
  /// How visible the bar is now, 0 to 1; always 0 when everything fits.
  [[nodiscard]] double strength() const;
  [[nodiscard]] int flashes() const { return flashes_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void appear();
  [[nodiscard]] bool isScrollable() const;

  QScrollBar* bar_;
  QColor color_;
  bool still_;
  int flashes_ = 0;
  QVariantAnimation fade_;
};

}  // namespace kifo
