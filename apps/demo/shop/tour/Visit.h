#pragma once

#include <QString>
#include <functional>

#include "Kifo_iOS_Common_Kit/ports/Value.h"
#include "testing/server/LocalServer.h"
#include "testing/ui/User.h"

namespace kifo::shop {

class PushTourDesktop;

/// A user on the tour: keeps pictures of the window, and checks what the server received.
///
/// **Threading:** UI thread only; waiting runs the event loop. **Errors:** as `User`.
class Visit : public testing::User {
 public:
  /// Pictures go to `folder`, which is made.
  Visit(QWidget& window, testing::LocalServer& server, QString folder);
  /// `picture` takes the window's picture.
  Visit(QWindow& window, std::function<QImage()> picture, testing::LocalServer& server,
        QString folder);

  /// Saves the window as "<name>.png".
  void save(const QString& name);
  /// The same once nothing in the window changes any more.
  void keep(const QString& name);

  /// Waits for the one event that has all these values; a null says that the key must be absent.
  void expectEvent(const Value::Map& event);
  [[nodiscard]] std::size_t eventCount() const;

 private:
  testing::LocalServer& server_;
  const QString folder_;
};

/// Makes one stop of a tour. Whether it went as it should; what did not is printed.
bool visitStop(const char* name, const std::function<void()>& visit);

/// The alerts: brings each up by its tile, keeps its picture, and answers it by mouse or keyboard.
void visitAlerts(Visit& visit);

/// The pushes: has one sent, clicks its first button on the tour's own desktop, and leafs through
/// its pictures. Does nothing where there is no bus.
void visitPushes(Visit& visit, PushTourDesktop& desktop);

}  // namespace kifo::shop
