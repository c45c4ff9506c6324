#pragma once

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QPointer>
#include <QString>
#include <functional>
#include <optional>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoButtonActionType.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/ShowTimeoutConfiguration.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// How an alert's button is painted, worked out by the alert from its appearance.
struct AlertButtonLook {
  QColor background;
  QColor text;
  QColor border;  ///< For a button that has the colour of what lies behind it; invalid: none.
  QFont font;
  double cornerRadius = 0;
  int leastHeight = 0;
};

/// What a button of an alert does and how it looks, whichever toolkit shows it. The host may change
/// it for as long as the alert lives.
///
/// **Threading:** UI thread only. **Ownership:** the alert's; `target` is held weakly.
struct KIFO_EXPORT AlertButton {
  virtual ~AlertButton() = default;

  KifoButtonActionType actionType = KifoButtonActionType::none;
  QPointer<QObject> target;
  QByteArray selector;  ///< The name of a slot or invokable without arguments.
  std::function<void()> action;
  QColor customBackgroundColor;  ///< Invalid: the alert's colour.
  QColor customTextColor;        ///< Invalid: the colour that the show call names.
  QString initialTitle;          ///< The title without a countdown.
  std::optional<ShowTimeoutConfiguration> showTimeout;
  bool onlyCloses = false;  ///< The alert's own close button, which is the last one.

  /// Writes `initialTitle` with `seconds` counted behind it, or alone where there is nothing to
  /// count.
  void showSeconds(std::optional<int> seconds);

 protected:
  /// `countdown`: what is counted behind the title; empty for nothing.
  virtual void setTitle(const QString& title, const QString& countdown) = 0;
};

}  // namespace kifo
