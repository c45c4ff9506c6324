#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAlert.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class QuickAlert;
class QuickAlertOverlay;

/// A button of a `QuickAlert`, made by `QuickAlert::addButton`. The host may change what it does
/// for as long as the alert lives.
///
/// **Threading:** UI thread only. **Ownership:** the alert's.
class KIFO_EXPORT QuickAlertButton : public QObject, public AlertButton {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(QString name READ name NOTIFY titleChanged)
  Q_PROPERTY(QString title READ title NOTIFY titleChanged)
  Q_PROPERTY(QString countdown READ countdown NOTIFY titleChanged)
  Q_PROPERTY(QColor background READ background NOTIFY lookChanged)
  Q_PROPERTY(QColor textColor READ textColor NOTIFY lookChanged)
  Q_PROPERTY(QColor borderColor READ borderColor NOTIFY lookChanged)
  Q_PROPERTY(QColor ringOuter READ ringOuter NOTIFY lookChanged)
  Q_PROPERTY(QColor ringInner READ ringInner NOTIFY lookChanged)

 public:
  QuickAlertButton(const QString& title, QuickAlert* alert);

  /// The title without a countdown, which a screen reader speaks.
  [[nodiscard]] QString name() const { return initialTitle; }
  /// As it is shown.
  [[nodiscard]] QString title() const { return title_; }
  /// What is counted behind the title; empty for nothing.
  [[nodiscard]] QString countdown() const { return countdown_; }
  [[nodiscard]] QColor background() const { return look_.background; }
  [[nodiscard]] QColor textColor() const { return look_.text; }
  /// Transparent for no border.
  [[nodiscard]] QColor borderColor() const;
  /// The lines that show that the keyboard is at the button.
  [[nodiscard]] QColor ringOuter() const;
  [[nodiscard]] QColor ringInner() const;
  [[nodiscard]] const AlertButtonLook& look() const { return look_; }
  void setLook(const AlertButtonLook& look);

  Q_INVOKABLE void press();

 Q_SIGNALS:
  void titleChanged();
  void lookChanged();

 protected:
  void setTitle(const QString& title, const QString& countdown) override;

 private:
  const QPointer<QuickAlert> alert_;
  AlertButtonLook look_;
  QString title_;
  QString countdown_;
};

/// A field of a `QuickAlert`. It keeps its text when the alert is hidden.
///
/// **Threading:** UI thread only. **Ownership:** the alert's.
class KIFO_EXPORT QuickAlertField : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(QString placeholder READ placeholder CONSTANT)
  Q_PROPERTY(bool isLine READ isLine CONSTANT)
  Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)

 public:
  QuickAlertField(const QString& placeholder, bool isLine, QObject* parent);

  /// Also the field's accessible name.
  [[nodiscard]] QString placeholder() const { return placeholder_; }
  /// Whether it has one line only.
  [[nodiscard]] bool isLine() const { return isLine_; }
  [[nodiscard]] QString text() const { return text_; }
  void setText(const QString& text);

 Q_SIGNALS:
  void textChanged();

 private:
  const QString placeholder_;
  const bool isLine_;
  QString text_;
};

/// An alert for the host's own messages, in the scene of a Qt Quick window. `KifoAlert` says how it
/// behaves; the show calls are there, the same as those of `KifoPopup`.
///
///     auto alert = std::make_shared<kifo::QuickAlert>();
///     alert->addButton("Pay", [] { pay(); });
///     alert->showTitle("Pay now?", "12.90 €", kifo::KifoPopupStyle::question, "Not yet");
///
/// **Threading, Ownership:** those of `KifoAlert`. The custom view stays the host's.
/// **Errors:** without a Qt Quick window that is shown, a console line.
class KIFO_EXPORT QuickAlert : public KifoAlert {
  Q_OBJECT
 public:
  QuickAlert();
  explicit QuickAlert(KifoAppearance appearance);
  ~QuickAlert() override;

  [[nodiscard]] std::string className() const override;

  // To be set before showing.
  QPointer<QQuickWindow> hostWindow;   ///< What to show over; null chooses the window in use.
  QPointer<QQuickItem> customSubview;  ///< Stands above the buttons, in its implicit size.

  // Each adds below what was added before. An invalid colour stands for the alert's own.
  QuickAlertButton* addButton(const QString& title, const QColor& backgroundColor,
                              const QColor& textColor,
                              const std::optional<ShowTimeoutConfiguration>& showTimeout,
                              std::function<void()> action);
  QuickAlertButton* addButton(const QString& title, std::function<void()> action);
  /// `selector`: a slot or invokable of `target` without arguments, with or without its
  /// parentheses. One that does not exist is a console line; a target that is gone is skipped.
  QuickAlertButton* addButton(const QString& title, const QColor& backgroundColor,
                              const QColor& textColor,
                              const std::optional<ShowTimeoutConfiguration>& showTimeout,
                              QObject* target, const QByteArray& selector);
  /// `title` is the field's placeholder and its accessible name.
  QuickAlertField* addTextField(const QString& title = {});
  QuickAlertField* addTextView();
  /// Takes away what the host has added.
  void removeButtonsAndFields();

  [[nodiscard]] const std::vector<QuickAlertButton*>& buttons() const { return buttons_; }
  [[nodiscard]] const std::vector<QuickAlertField*>& fields() const { return fields_; }
  /// The card; null while the alert is not shown.
  [[nodiscard]] QQuickItem* baseView() const;

 public Q_SLOTS:
  /// A keyboard covers `keyboard` of the window: an alert with fields moves out of its way. The
  /// input method's own keyboard is watched; hosts that draw one themselves call this.
  void keyboardWillShow(const QRect& keyboard);
  void keyboardWillHide();

 protected:
  [[nodiscard]] std::vector<AlertButton*> buttonsInOrder() const override;
  AlertButton& makeButton(const QString& title) override;
  void removeButton(AlertButton& button) override;
  void showTexts() override;
  void refresh() override;
  bool open() override;
  void returnFocus() override;
  void close() override;

 private:
  friend class QuickAlertButton;
  friend class QuickAlertOverlay;

  QuickAlertField* addField(const QString& title, bool isLine);

  std::vector<QuickAlertButton*> buttons_;
  std::vector<QuickAlertField*> fields_;
  QPointer<QuickAlertOverlay> overlay_;
};

}  // namespace kifo
