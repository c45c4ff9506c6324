#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindowView.h"

#include <QLabel>
#include <QPushButton>

namespace kifo {

PopUpWindowView::PopUpWindowView(const PopUpWindowHeights& heights, PopupPreferences preferences,
                                 const PopUpOptions& options, QWidget* parent)
    : QWidget(parent), heights_(heights), popupPreferences_(std::move(preferences)) {
  popupView = new QWidget(this);
  popupView->setObjectName("popupView");
  popupView->setAutoFillBackground(true);
  auto* title = new QLabel(QString::fromStdString(popupPreferences_.title.value_or("")), popupView);
  title->move(8, 8);
  closeButton = new QPushButton(options.texts.close, this);
  closeButton->setObjectName("closeButton");
  submitButton = new QPushButton(options.texts.submit, this);
  submitButton->setObjectName("submitButton");
}

void PopUpWindowView::resizeEvent(QResizeEvent*) {
  const QSize size(qMin(480, width() - 70), static_cast<int>(heights_.totalHeight));
  popupView->setGeometry(QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size));
  closeButton->setGeometry(popupView->geometry().right() - 39, popupView->y() - 48, 40, 40);
  submitButton->setGeometry(popupView->x() + 8, popupView->geometry().bottom() - 57,
                            popupView->width() - 16, 50);
}

}  // namespace kifo
