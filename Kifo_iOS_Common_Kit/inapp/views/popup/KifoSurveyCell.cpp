#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoSurveyCell.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {

KifoSurveyCell::KifoSurveyCell(const PopupTheme& theme,
                               std::shared_ptr<AppCommunicationItemButton> choice, int row,
                               const OptionText& text, QWidget* parent)
    : QWidget(parent),
      appCommunicationItemButton_(std::move(choice)),
      indexPath_(row),
      look_(theme, text.surface),
      titleLbl_(new TextLabel(this)),
      selectButton_(new OptionButton(this)) {
  setObjectName(identifier);
  titleLbl_->setObjectName("titleLbl");
  selectButton_->setObjectName("selectButton");
  titleLbl_->setLook(PopupContent::optionText(theme, look_, text));
  selectButton_->setAccessibleName(text.name);
  connect(selectButton_, &QAbstractButton::clicked, this, [this] {
    if (const auto select = selectItem) select(appCommunicationItemButton_);
  });
}

const char* KifoSurveyCell::radialButton() const {
  return selectButton_->isChecked() ? "largecircle.fill.circle" : "circle";
}

void KifoSurveyCell::setChosen(bool chosen) {
  selectButton_->setChosen(chosen);
}

int KifoSurveyCell::heightFor(int width) const {
  return OptionLook::heightFor(titleLbl_->heightForWidth(OptionLook::textWidth(width)));
}

void KifoSurveyCell::resizeEvent(QResizeEvent*) {
  selectButton_->setGeometry(rect());
  titleLbl_->setGeometry(OptionLook::textRect(rect(), layoutDirection() == Qt::RightToLeft));
}

void KifoSurveyCell::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  look_.paint(painter, rect(), selectButton_->isChecked(), layoutDirection() == Qt::RightToLeft,
              selectButton_->touch());
}

}  // namespace kifo
