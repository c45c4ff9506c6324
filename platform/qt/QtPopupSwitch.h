#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

template <class Target>
class UiLink;

/// `Kifo::setPopupsPaused` as a property that a widget or a QML host can bind:
///
///     kifo::QtPopupSwitch popups;
///     connect(&player, &Player::playingChanged, &popups, &kifo::QtPopupSwitch::setPopupsPaused);
///
/// There is one switch in the process: every object shows it and changes it, and says so whoever
/// changed it. `Kifo::shutdown` turns it off without a signal.
///
/// **Threading:** the UI thread only. The signal comes from the event loop, after the change.
class KIFO_EXPORT QtPopupSwitch : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool popupsPaused READ popupsPaused WRITE setPopupsPaused NOTIFY popupsPausedChanged)

 public:
  explicit QtPopupSwitch(QObject* parent = nullptr);
  ~QtPopupSwitch() override;

  [[nodiscard]] bool popupsPaused() const;
  void setPopupsPaused(bool isPaused);

 Q_SIGNALS:
  void popupsPausedChanged(bool isPaused);

 private:
  const std::shared_ptr<UiLink<QtPopupSwitch>> link_;
  const std::shared_ptr<const std::function<void()>> listener_;
};

}  // namespace kifo
