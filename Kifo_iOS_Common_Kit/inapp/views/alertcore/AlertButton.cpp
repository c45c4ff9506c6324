#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertButton.h"

#include <QLocale>

namespace kifo {

void AlertButton::showSeconds(std::optional<int> seconds) {
  if (!showTimeout || !seconds) return setTitle(initialTitle, {});
  const QString countdown =
      showTimeout->prefix + QLocale().toString(*seconds) + showTimeout->suffix;
  setTitle(initialTitle.isEmpty() ? countdown : initialTitle + QLatin1Char(' ') + countdown,
           countdown);
}

}  // namespace kifo
