#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQuickPaintedItem>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"

namespace kifo {

/// A text of an alert: plain, wrapped where it must, and broken into the same lines as in the
/// Widgets alert.
///
/// **Threading:** UI thread, but for `paint`, during which that waits.
class QuickAlertText : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(AlertText)
  Q_PROPERTY(QString text MEMBER text_ WRITE setText)
  Q_PROPERTY(QFont font MEMBER font_ WRITE setFont)
  Q_PROPERTY(QColor color MEMBER color_ WRITE setColor)
  /// A `WrappedText::Alignment`: 0 centred, 1 leading, 2 trailing.
  Q_PROPERTY(int alignment MEMBER alignment_ WRITE setAlignment)

 public:
  void setText(const QString& text);
  void setFont(const QFont& font);
  void setColor(const QColor& color);
  void setAlignment(int alignment);
  void paint(QPainter* painter) override;

 private:
  QString text_;
  QFont font_;
  QColor color_;
  int alignment_ = 0;
  WrappedText wrapped_;
};

/// A part of an alert's card that is drawn: the shadow, the icon, or the host's image in place of
/// the cross.
///
/// **Threading:** UI thread, but for `paint`, during which that waits.
class QuickAlertPainting : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(AlertPainting)
  Q_PROPERTY(Part part MEMBER part_ WRITE setPart)
  Q_PROPERTY(kifo::QuickAlertOverlay* overlay MEMBER overlay_ WRITE setOverlay)

 public:
  enum Part { Shadow, Icon, Cross };
  Q_ENUM(Part)
  /// How far the shadow reaches beyond the card.
  static constexpr int kReach = 64;

  void setPart(Part part);
  void setOverlay(QuickAlertOverlay* overlay);
  void paint(QPainter* painter) override;

 protected:
  void timerEvent(QTimerEvent* event) override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;

 private:
  void follow();

  Part part_ = Shadow;
  QPointer<QuickAlertOverlay> overlay_;
  QBasicTimer clock_;  ///< Of a turning indicator.
  int step_ = 0;
};

}  // namespace kifo
