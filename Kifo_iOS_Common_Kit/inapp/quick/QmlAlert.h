#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlert.h"

namespace kifo {

/// `QuickAlert` as a QML host writes it:
///
///     KifoAlert {
///         id: pay
///         style: KifoAlert.Question
///         title: "Pay now?"
///         buttons: ["Pay"]
///         closeButtonTitle: "Not yet"
///         onPressed: index => till.pay()
///     }
///     Button { text: "Pay"; onClicked: pay.show() }
///
/// It is shown over the window that it stands in. A property that changes while the alert is shown
/// counts from the next `show` on, which changes the alert that is shown.
///
/// **Threading:** UI thread only.
/// **Errors:** a member of `appearance` that does not exist or has a wrong type is a console line.
class QmlAlert : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(KifoAlert)
  Q_PROPERTY(Style style MEMBER style_ NOTIFY changed)
  Q_PROPERTY(QString title MEMBER title_ NOTIFY changed)
  Q_PROPERTY(QString text MEMBER text_ NOTIFY changed)
  /// Adds a last button that only closes; empty for none.
  Q_PROPERTY(QString closeButtonTitle MEMBER closeButtonTitle_ NOTIFY changed)
  /// Titles, from the top.
  Q_PROPERTY(QStringList buttons MEMBER buttons_ NOTIFY changed)
  /// Placeholders of fields of one line; null for a field of several lines.
  Q_PROPERTY(QVariantList fields MEMBER fields_ NOTIFY changed)
  /// What is in the fields; empty texts before the alert was shown.
  Q_PROPERTY(QStringList texts READ texts NOTIFY textsChanged)
  /// The list: objects with "header" and "value", and what stands above it.
  Q_PROPERTY(QVariantList rows MEMBER rows_ NOTIFY changed)
  Q_PROPERTY(QString heading MEMBER heading_ NOTIFY changed)
  /// Seconds; 0 for none.
  Q_PROPERTY(double timeout MEMBER timeout_ NOTIFY changed)
  /// Whether the pointer on the card or the keyboard inside it stops the clock.
  Q_PROPERTY(bool pausesWhileInside MEMBER pausesWhileInside_ NOTIFY changed)
  /// Whether the titles of the buttons count the seconds down.
  Q_PROPERTY(bool showsSeconds MEMBER showsSeconds_ NOTIFY changed)
  Q_PROPERTY(Animation animation MEMBER animation_ NOTIFY changed)
  Q_PROPERTY(bool reducedMotion MEMBER reducedMotion_ NOTIFY changed)
  /// At the window's upper edge, as notifications are.
  Q_PROPERTY(bool isNotification MEMBER isNotification_ NOTIFY changed)
  /// The alert's colour; invalid for the style's own.
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
  /// As round and with buttons as large as the campaigns' popups.
  Q_PROPERTY(bool likePopups MEMBER likePopups_ NOTIFY changed)
  /// Numbers, switches and colours of `KifoAppearance` by their names.
  Q_PROPERTY(QVariantMap appearance MEMBER appearance_ NOTIFY changed)
  Q_PROPERTY(bool showing READ isShowing NOTIFY showingChanged)

 public:
  enum Style { Success, Error, Notice, Warning, Info, Edit, Wait, Question };
  Q_ENUM(Style)
  enum Animation { NoAnimation, TopToBottom, BottomToTop, LeftToRight, RightToLeft };
  Q_ENUM(Animation)

  explicit QmlAlert(QObject* parent = nullptr);
  ~QmlAlert() override;

  Q_INVOKABLE void show();
  Q_INVOKABLE void hide();
  [[nodiscard]] bool isShowing() const;
  [[nodiscard]] QStringList texts() const;

 Q_SIGNALS:
  void changed();
  void textsChanged();
  void showingChanged();
  /// The user pressed the button of that place in `buttons`.
  void pressed(int index);
  /// The time is up; the alert is about to hide.
  void timedOut();
  /// The alert has gone from the screen.
  void dismissed();

 private:
  void fill();
  [[nodiscard]] KifoAppearance chosenAppearance() const;

  Style style_ = Info;
  QString title_;
  QString text_;
  QString closeButtonTitle_;
  QStringList buttons_;
  QVariantList fields_;
  QVariantList rows_;
  QString heading_;
  double timeout_ = 0;
  bool pausesWhileInside_ = false;
  bool showsSeconds_ = false;
  Animation animation_ = TopToBottom;
  bool reducedMotion_ = false;
  bool isNotification_ = false;
  QColor color_;
  bool likePopups_ = false;
  QVariantMap appearance_;
  std::shared_ptr<QuickAlert> alert_;
};

}  // namespace kifo
