#pragma once

#include <QVariantAnimation>
#include <QWidget>
#include <chrono>

namespace kifo::bench {

/// The peer of a popup: a dimmed overlay with as many of Qt's own labels, buttons, fields and
/// sliders with the same texts, in a layout of Qt's own.
class PlainOverlay : public QWidget {
 public:
  static constexpr auto name = "PlainOverlay";

  /// Mirrors `popup` over `host`.
  PlainOverlay(const QWidget* popup, QWidget* host);

  /// Fades as one does with what Qt has for it: an opacity effect on the panel.
  void fade(double from, double to, std::chrono::milliseconds duration);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void setOpacity(double opacity);

  QWidget* panel_;
  QVariantAnimation fade_;
  double opacity_ = 1;
};

}  // namespace kifo::bench
