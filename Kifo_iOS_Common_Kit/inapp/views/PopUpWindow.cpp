#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindow.h"

#include <QAbstractButton>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindowView.h"

namespace kifo {

PopUpWindow::PopUpWindow(std::shared_ptr<const PopupRequest> request, PopUpOptions options,
                         QWidget* parent)
    : QWidget(parent), request_(std::move(request)), options_(std::move(options)) {
  fields_ = PopUpWindowFields::from(*request_, parent ? parent->width() : 480);
  popUpWindowView_ = new PopUpWindowView(PopUpWindowHeights::of(fields_, request_->preferences),
                                         request_->preferences, options_, this);
  connect(popUpWindowView_->closeButton, &QAbstractButton::clicked, this,
          &PopUpWindow::closeButtonAction);
  connect(popUpWindowView_->submitButton, &QAbstractButton::clicked, this,
          &PopUpWindow::submitButtonPressed);
}

PopUpWindow::~PopUpWindow() = default;

void PopUpWindow::present() {
  if (parentWidget()) setGeometry(parentWidget()->rect());
  popUpWindowView_->setGeometry(rect());
  show();
  raise();
}

void PopUpWindow::dismissView() {
  if (dismissing_) return;
  dismissing_ = true;
  QTimer::singleShot(0, this, [this] {
    hide();
    Q_EMIT closed();
    deleteLater();
  });
}

void PopUpWindow::closeButtonAction() {
  dismissView();
  if (!fields_.appCommuncationItem || !request_->reporter) return;
  request_->reporter->answered(fields_.appCommuncationItem, InAppAnswer{},
                               fields_.controller.lock(), fields_.pageName);
}

void PopUpWindow::submitButtonPressed() { dismissView(); }
void PopUpWindow::scrollImageListTimer() {}
void PopUpWindow::stopTimer() {}
void PopUpWindow::dismissKeyboard() {}
void PopUpWindow::keyboardWillShow(const QRectF&) {}
void PopUpWindow::keyboardWillHide() {}
void PopUpWindow::touchesBegan() {}

}  // namespace kifo
