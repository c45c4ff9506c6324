#pragma once

#include <algorithm>
#include <cmath>

#include <QQuickPaintedItem>
#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanTracker.h"

/// The items of which `Popup.qml` puts a popup together. Each stands where the popup's parts say
/// and looks as they do.
///
/// **Threading:** UI thread; painting on the render thread while the UI thread waits.
/// **Ownership:** belong to their popup.
///
/// Base classes bear their namespace, by which the QML tools find them.
namespace kifo {

/// A part of a popup that is seen and takes no input.
class QuickPiece : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupPiece)
  Q_PROPERTY(Part part READ part WRITE setPart NOTIFY partChanged REQUIRED)
  /// Of the list or of the emojis.
  Q_PROPERTY(int row READ row WRITE setRow NOTIFY rowChanged)
  /// What a screen reader says.
  Q_PROPERTY(QString label READ label NOTIFY changed)
  Q_PROPERTY(QString hint READ hint NOTIFY changed)
  /// One of several that exclude each other.
  Q_PROPERTY(bool isOption READ isOption NOTIFY changed)
  Q_PROPERTY(bool isChosen READ isChosen NOTIFY changed)

 public:
  enum Part {
    Shadow,
    Panel,
    Body,  ///< What of the panel can be pressed with the keyboard.
    Close,
    PanelScroll,
    PanelEdges,
    Title,
    Picture,
    Carousel,
    Pages,
    Description,
    Coupon,
    Copy,
    Question,
    List,
    ListEdges,
    ListRow,
    Emojis,
    Emoji,
    EmojiText,
    Minimum,
    Score,
    Maximum,
    Slider,
    FieldView,
    FieldLabel,
    Field,
    Counter,
    Submit,
  };
  Q_ENUM(Part)

  explicit QuickPiece(QQuickItem* parent = nullptr);

  /// The popup that the piece is part of; null until the piece is complete.
  [[nodiscard]] QuickPopup* popup() const { return popup_; }
  [[nodiscard]] Part part() const { return part_; }
  void setPart(Part part);
  [[nodiscard]] int row() const { return row_; }
  void setRow(int row);
  [[nodiscard]] QString label() const;
  [[nodiscard]] QString hint() const;
  [[nodiscard]] bool isOption() const;
  [[nodiscard]] bool isChosen() const;

  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void partChanged();
  void rowChanged();
  void changed();

 protected:
  void componentComplete() override;
  [[nodiscard]] virtual Touch touch() const { return {}; }
  [[nodiscard]] PopupParts& parts() const { return popup_->parts(); }

 private:
  void follow();
  void refresh();
  [[nodiscard]] QRectF box() const;
  [[nodiscard]] bool isThere() const;
  void paintPictures(QPainter& painter) const;
  void paintEdges(QPainter& painter) const;
  void paintEmojiText(QPainter& painter) const;

  QPointer<QuickPopup> popup_;
  Part part_ = Panel;
  int row_ = 0;
};

/// A part that can be pressed and can have the focus. A finger that is drawn along it scrolls what
/// it lies in and presses nothing.
class QuickControl : public kifo::QuickPiece {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupControl)
  Q_PROPERTY(bool focusStop READ isFocusStop NOTIFY changed)

 public:
  explicit QuickControl(QQuickItem* parent = nullptr);

  /// Whether the Tab key stops here.
  [[nodiscard]] bool isFocusStop() const;
  /// What pressing does.
  Q_INVOKABLE void press();

 protected:
  void componentComplete() override;
  [[nodiscard]] Touch touch() const override { return touch_; }
  void setPressed(bool pressed);
  /// Whether the key meant something to the row that it was pressed in.
  bool rove(int key);

  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseUngrabEvent() override;
  void hoverEnterEvent(QHoverEvent* event) override;
  void hoverLeaveEvent(QHoverEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

  Touch touch_;

 private:
  PanTracker pan_;
  bool dragged_ = false;
  bool byKeyboard_ = false;
};

/// The score's slider.
class QuickSlider : public kifo::QuickControl {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupSlider)
  Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)
  Q_PROPERTY(double minimumValue READ minimumValue CONSTANT)
  Q_PROPERTY(double maximumValue READ maximumValue CONSTANT)
  Q_PROPERTY(double stepSize READ stepSize CONSTANT)

 public:
  explicit QuickSlider(QQuickItem* parent = nullptr);

  [[nodiscard]] double value() const { return std::trunc(static_cast<double>(look_.position)); }
  void setValue(double value);
  [[nodiscard]] double minimumValue() const { return look_.minimum; }
  [[nodiscard]] double maximumValue() const { return look_.maximum; }
  [[nodiscard]] double stepSize() const { return 1; }

  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void valueChanged();

 protected:
  void componentComplete() override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void moveTo(float position);

  ScoreLook look_;
  QVariantAnimation glide_;
};

/// The campaign's pictures side by side, of which one is seen. Turned by swiping and by arrow keys.
class QuickCarousel : public kifo::QuickControl {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupCarousel)

 public:
  using QuickControl::QuickControl;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  double swipeStart_ = 0;
  double swipeOffset_ = 0;
  bool swiping_ = false;
};

/// A part that shows a stretch of its content and scrolls it up and down.
class QuickScroll : public kifo::QuickPiece {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupScroll)
  Q_PROPERTY(double contentY READ contentY NOTIFY scrolled)
  Q_PROPERTY(double contentHeight READ contentHeight NOTIFY scrolled)

 public:
  explicit QuickScroll(QQuickItem* parent = nullptr);

  [[nodiscard]] double contentY() const { return contentY_; }
  [[nodiscard]] double contentHeight() const;
  [[nodiscard]] double mostY() const { return std::max(contentHeight() - height(), 0.0); }
  /// How visible the indicator is, 0 to 1.
  [[nodiscard]] double strength() const;
  [[nodiscard]] bool wasScrolled() const { return wasScrolled_; }
  /// Down by `pixels`, up when below 0. False when it could not move at all.
  bool scrollBy(double pixels);
  /// Brings `descendant` into view with some space around it.
  void reveal(const QQuickItem& descendant);
  void flash();

 Q_SIGNALS:
  void scrolled();

 protected:
  void componentComplete() override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  QVariantAnimation fade_;
  double contentY_ = 0;
  bool wasScrolled_ = false;
};

/// Scrolls the areas around `from`, the innermost first, until one of them moves.
bool scrollAround(QQuickItem* from, double pixels);

}  // namespace kifo
