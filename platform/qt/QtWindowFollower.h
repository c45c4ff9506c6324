#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace kifo {

/// Keeps a window of ours over a window of the host: same place and size, shown and hidden with it,
/// stacked above it, gone when it goes.
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
