#pragma once

#include <QColor>
#include <QWidget>

class QScrollBar;

namespace kifo {

/// Lets content fade into the background at the edge beyond which there is more of it.
///
/// **Threading:** UI thread only.
class ScrollShade : public QWidget {
  Q_OBJECT

 public:
  ScrollShade(QScrollBar* bar, const QColor& background, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QScrollBar* bar_;
  QColor background_;
};

}  // namespace kifo
