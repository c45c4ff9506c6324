#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoPopupCell.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"

namespace kifo {
namespace {

constexpr int kLineInset = 12;

class Line : public QWidget {
 public:
  Line(const QColor& color, QWidget* parent) : QWidget(parent), color_(color) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), color_); }

 private:
  QColor color_;
};

}  // namespace

KifoPopupCell::KifoPopupCell(const PopupTheme& theme,
                             std::shared_ptr<AppCommunicationItemButton> button, int index,
                             const OptionText& text, QWidget* parent)
    : QWidget(parent),
      button_(std::move(button)),
      index_(index),
      titleLbl_(new PopupButton(theme, TextRole::button, this)),
      lineView_(new Line(theme.shade(0.14), this)) {
  setObjectName(identifier);
  titleLbl_->setObjectName("titleLbl");
  titleLbl_->setSurfaceInset(surfaceInset);
  titleLbl_->setOption(text);
  lineView_->hide();
  connect(titleLbl_, &QAbstractButton::clicked, this, [this] {
    if (const auto action = actionItem) action(button_);
  });
}

int KifoPopupCell::heightFor(int width) const {
  return titleLbl_->heightFor(width);
}

void KifoPopupCell::setLineVisible(bool visible) {
  lineView_->setVisible(visible && !titleLbl_->surface());
}

void KifoPopupCell::resizeEvent(QResizeEvent*) {
  titleLbl_->setGeometry(rect());
  lineView_->setGeometry(kLineInset, height() - 1, width() - 2 * kLineInset, 1);
}

}  // namespace kifo
