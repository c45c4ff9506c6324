#pragma once

#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindowHeights.h"

class QAbstractButton;

namespace kifo {

/// Draws one campaign: the panel and everything in it. Every element bears its name as object name:
/// "closeButton", "submitButton", "copyButton", "slider", "textField" and so on.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its window.
class KIFO_EXPORT PopUpWindowView : public QWidget {
  Q_OBJECT

 public:
  PopUpWindowView(const PopUpWindowHeights& heights, PopupPreferences preferences,
                  const PopUpOptions& options, QWidget* parent);

  [[nodiscard]] const PopUpWindowHeights& heights() const { return heights_; }

  QWidget* popupView = nullptr;
  QAbstractButton* closeButton = nullptr;
  QAbstractButton* submitButton = nullptr;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  PopUpWindowHeights heights_;
  PopupPreferences popupPreferences_;
};

}  // namespace kifo
