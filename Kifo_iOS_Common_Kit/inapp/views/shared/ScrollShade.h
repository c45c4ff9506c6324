#pragma once

#include <QColor>
#include <QWidget>

class QScrollBar;

namespace kifo {

/// Lets content fade into the background at the edge beyond which there is more of it. Until it has
/// been scrolled, a chevron at the foot says that it can be.
///
/// **Threading:** UI thread only.
class ScrollShade : public QWidget {
  Q_OBJECT

 public:
  ScrollShade(QScrollBar* bar, QWidget* parent);

  void setColors(const QColor& background, const QColor& ink);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void moved();

  QScrollBar* bar_;
  QColor background_ = Qt::white;
  QColor ink_ = Qt::black;
  bool scrolled_ = false;
};

}  // namespace kifo
