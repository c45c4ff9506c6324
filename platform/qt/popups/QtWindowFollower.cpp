#include "platform/qt/popups/QtWindowFollower.h"

namespace kifo {
namespace {

QWindow* topLevel(QWindow* window) {
  while (QWindow* parent = window->parent()) window = parent;
  return window;
}

}  // namespace

QtWindowFollower::QtWindowFollower(QWidget* follower, QWindow* leader)
    : QObject(follower), follower_(follower), leader_(leader) {
  follower_->winId();  // Makes the QWindow that the transient parent is set on.
  follower_->windowHandle()->setTransientParent(topLevel(leader));
  for (const auto changed :
       {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged}) {
    connect(leader, changed, this, &QtWindowFollower::followGeometry);
  }
  connect(leader, &QWindow::visibleChanged, this, &QtWindowFollower::followVisibility);
  connect(leader, &QObject::destroyed, follower, &QObject::deleteLater);
  followGeometry();
}

void QtWindowFollower::followGeometry() {
  if (leader_) follower_->setGeometry({leader_->mapToGlobal(QPoint()), leader_->size()});
}

void QtWindowFollower::followVisibility(bool visible) {
  follower_->setVisible(visible);
}

}  // namespace kifo
