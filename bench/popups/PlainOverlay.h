#pragma once

#include <QPointer>
#include <QWidget>

namespace kifo::bench {

/// The peer of a popup: a dimmed overlay with as many of Qt's own labels, buttons, fields and
/// sliders with the same texts, in a layout of Qt's own.
class PlainOverlay : public QWidget {
 public:
  static constexpr auto name = "PlainOverlay";

  /// Mirrors `popup` over `host`.
  PlainOverlay(const QWidget* popup, QWidget* host);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kifo::bench
