#pragma once

#include <optional>

#include <QPointer>
#include <QQuickPaintedItem>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"

namespace kifo {

/// An item of which `Popup.qml` puts a popup together: stands where the popup's parts say and looks
/// as they do. By itself it takes no input.
///
/// Classes that derive from it name their base with its namespace, by which the QML tools find it.
///
/// **Threading:** UI thread; painting on the render thread while the UI thread waits.
/// **Ownership:** belongs to its popup.
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
  /// The piece of the panel that a part is or belongs to; none for what the panel lies in.
  static std::optional<PopupPiece> pieceOf(Part part);
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

}  // namespace kifo
