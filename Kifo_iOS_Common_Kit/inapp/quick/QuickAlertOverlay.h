#pragma once

#include <QFont>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QVariantList>
#include <QVariantMap>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertIcon.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertLayout.h"

namespace kifo {

class QuickAlert;

/// Covers the host's window while a `QuickAlert` is shown: tells Alert.qml what there is and where
/// it lies, keeps the card in its place, and passes on what the user does.
///
/// **Threading:** UI thread only. **Ownership:** an item of the window; `alert` outlives it unless
/// it is dismantled before.
class QuickAlertOverlay : public kifo::QuickOverlay {
  Q_OBJECT
  QML_NAMED_ELEMENT(AlertOverlay)
  Q_PROPERTY(QString title READ title NOTIFY textsChanged)
  Q_PROPERTY(QString text READ text NOTIFY textsChanged)
  Q_PROPERTY(QString heading READ heading NOTIFY partsChanged)
  Q_PROPERTY(QVariantList fields READ fields NOTIFY partsChanged)
  Q_PROPERTY(QVariantList buttons READ buttons NOTIFY partsChanged)
  // The maps of AlertValues.h; as QVariant, because the lint would look for their keys among a
  // map's own members.
  Q_PROPERTY(QVariant colors READ colors NOTIFY partsChanged)
  Q_PROPERTY(QVariant looks READ looks NOTIFY partsChanged)
  Q_PROPERTY(QVariant places READ places NOTIFY placed)
  Q_PROPERTY(QPointF cardPosition READ cardPosition NOTIFY cardMoved)
  Q_PROPERTY(double cardOpacity READ cardOpacity NOTIFY cardMoved)
  Q_PROPERTY(bool hasCloseIcon READ hasCloseIcon NOTIFY partsChanged)
  /// Whether the keyboard and not a finger or the mouse was used last.
  Q_PROPERTY(bool isKeyboardUsed MEMBER isKeyboardUsed_ NOTIFY keyboardUsedChanged)
  Q_PROPERTY(bool pointerInside MEMBER pointerInside_ WRITE setPointerInside)
  Q_PROPERTY(QQuickItem* card MEMBER card_)
  Q_PROPERTY(QQuickItem* customPlace MEMBER customPlace_)

 public:
  /// Null, and a console line, when Alert.qml cannot be made.
  static QuickAlertOverlay* make(QuickAlert& alert, QQuickWindow& window);
  ~QuickAlertOverlay() override;

  void open();
  void returnFocus();
  /// Takes the overlay out of the scene; it forgets the alert.
  void dismantle();
  void showTexts();
  void showParts();

  [[nodiscard]] QQuickItem* card() const { return card_; }
  [[nodiscard]] const AlertPlaces& cardPlaces() const { return places_; }
  [[nodiscard]] const AlertIcon& icon() const { return icon_; }
  [[nodiscard]] double cornerRadius() const;
  [[nodiscard]] QIcon closeIcon() const;
  [[nodiscard]] bool hasCloseIcon() const { return !closeIcon().isNull(); }

  [[nodiscard]] QString title() const;
  [[nodiscard]] QString text() const;
  [[nodiscard]] QString heading() const;
  [[nodiscard]] QVariantList fields() const;
  [[nodiscard]] QVariantList buttons() const;
  [[nodiscard]] QVariantMap colors() const;
  [[nodiscard]] QVariantMap looks() const;
  [[nodiscard]] QVariantMap places() const;
  [[nodiscard]] QPointF cardPosition() const { return cardPosition_; }
  [[nodiscard]] double cardOpacity() const;

  void setPointerInside(bool inside);
  /// The user has put the focus somewhere, or has typed.
  Q_INVOKABLE void engage();
  Q_INVOKABLE void closeByCross();

 Q_SIGNALS:
  void textsChanged();
  void partsChanged();
  void placed();
  void cardMoved();
  void keyboardUsedChanged();
  /// `item` is to be scrolled into sight.
  void revealed(QQuickItem* item);
  /// The window went away and takes the overlay with it.
  void windowClosed();

 protected:
  void place() override;
  void remake() override { showParts(); }
  void focusArrived(QQuickItem* item, bool byUser) override;
  void stepFocus(bool forwards) override;
  void keyPressEvent(QKeyEvent* event) override;
  void pressed(QPointF position, QPoint global) override;
  void moved(QPoint global) override;
  void released() override;

 private:
  void follow(QuickAlert& alert);
  void moveCard();
  void pressDefault();
  void holdTimeout();
  void placeCustomView();
  [[nodiscard]] AlertContents contents() const;
  [[nodiscard]] AlertContents::Custom customView() const;
  [[nodiscard]] QRect available() const;
  [[nodiscard]] bool isOnCard(const QPointF& position) const;
  [[nodiscard]] QQuickItem* firstFocus() const;

  QuickAlert* alert_ = nullptr;
  QPointer<QQuickItem> card_;
  QPointer<QQuickItem> customPlace_;
  AlertColors colors_;
  AlertPlaces places_;
  AlertIcon icon_;
  QPointF cardPosition_;
  QPointF pointer_;  ///< Where the press is that no control took.
  QPoint global_;    ///< The same on the screen.
  bool pressedBeside_ = false;
  bool pointerInside_ = false;
  bool engaged_ = false;
  bool isKeyboardUsed_ = false;
};

}  // namespace kifo
