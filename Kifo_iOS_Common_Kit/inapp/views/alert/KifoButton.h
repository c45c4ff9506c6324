#pragma once

#include <QByteArray>
#include <QColor>
#include <QPointer>
#include <QPushButton>
#include <functional>
#include <optional>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButtonActionType.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/ShowTimeoutConfiguration.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A button of a `KifoPopup`, made by `KifoPopup::addButton`. The host may change what it does and
/// how it looks for as long as the alert lives.
///
/// Long titles wrap and make the button higher. An ampersand in a title is an ampersand.
///
/// **Threading:** UI thread only. **Ownership:** the alert's; `target` is held weakly.
class KIFO_EXPORT KifoButton : public QPushButton {
  Q_OBJECT
 public:
  /// How the button is painted, worked out by the alert from its appearance.
  struct Look {
    QColor background;
    QColor text;
    QColor border;  ///< For a button that has the colour of what lies behind it; invalid: none.
    QFont font;
    double cornerRadius = 0;
    int leastHeight = 0;
  };

  explicit KifoButton(const QString& title, QWidget* parent = nullptr);

  KifoButtonActionType actionType = KifoButtonActionType::none;
  QPointer<QObject> target;
  QByteArray selector;  ///< The name of a slot or invokable without arguments.
  std::function<void()> action;
  QColor customBackgroundColor;  ///< Invalid: the alert's colour.
  QColor customTextColor;        ///< Invalid: the colour that the show call names.
  QString initialTitle;          ///< The title without a countdown.
  std::optional<ShowTimeoutConfiguration> showTimeout;

  /// Writes `initialTitle` with `seconds` counted behind it, or alone where there is nothing to
  /// count.
  void showSeconds(std::optional<int> seconds);
  void setLook(const Look& look);
  [[nodiscard]] const Look& look() const { return look_; }
  /// Darkens the button while a finger or key holds it down.
  void setDimmed(bool dimmed);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void setTitle(const QString& title);
  [[nodiscard]] QColor paintedBackground() const;

  Look look_;
  bool dimmed_ = false;
};

}  // namespace kifo
