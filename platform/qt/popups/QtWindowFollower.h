#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace kifo {

/// Keeps a window of the SDK over a window of the host: same place and size, stacked above it,
/// shown, hidden and deleted with it.
///
/// **Threading:** UI thread only. **Ownership:** belongs to the window that follows.
class QtWindowFollower : public QObject {
  Q_OBJECT

 public:
  QtWindowFollower(QWidget* follower, QWindow* leader);

 private:
  void followGeometry();
  void followVisibility(bool visible);

  QWidget* const follower_;
  QPointer<QWindow> leader_;
};

}  // namespace kifo
