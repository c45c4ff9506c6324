#include <QApplication>
#include <QEvent>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "apps/kifo/ui/QtHostWindow.h"
#include "platform/qt/QtPopupPresenter.h"
#include "platform/qt/QtWindowProvider.h"

namespace kifo::tool {
namespace {

/// A page of the window.
class Page final : public KifoViewController, public QtWidgetProvider {
 public:
  Page(std::string className, QWidget* page) : className_(std::move(className)), page_(page) {}

  [[nodiscard]] std::string className() const override { return className_; }
  [[nodiscard]] QWidget* widget() const override { return page_; }

 private:
  const std::string className_;
  const QPointer<QWidget> page_;
};

class WidgetHostWindow final : public QtHostWindow {
 public:
  explicit WidgetHostWindow(std::shared_ptr<Output> output)
      : QtHostWindow(std::move(output), std::make_shared<QtPopupPresenter>(options())) {
    auto* layout = new QVBoxLayout(&window_);
    layout->setContentsMargins({});
    layout->addWidget(&pages_);
    window_.resize(kWindowSize);
    window_.setWindowTitle("kifo host");
    window_.show();
    qApp->installEventFilter(this);
  }

 protected:
  [[nodiscard]] testing::User user() override { return testing::User(window_); }

  [[nodiscard]] std::shared_ptr<KifoViewController> makePage(const std::string& name) override {
    auto* page = new QWidget;
    pages_.addWidget(page);
    return std::make_shared<Page>(name, page);
  }

  void showPage(KifoViewController& screen) override {
    pages_.setCurrentWidget(dynamic_cast<Page&>(screen).widget());
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* popup = event->type() == QEvent::Show ? qobject_cast<PopUpWindow*>(watched) : nullptr;
    if (popup == nullptr) return false;
    // A window that was hidden may be shown again.
    if (opened({popup, &popup->state(), [popup] { return popup->isDismissing(); }})) {
      connect(popup, &PopUpWindow::closed, this, [this, popup] { closed(popup->state()); });
    }
    return false;
  }

 private:
  QWidget window_;
  QStackedWidget pages_;
};

}  // namespace

std::unique_ptr<QtHostWindow> makeWidgetHostWindow(std::shared_ptr<Output> output) {
  return std::make_unique<WidgetHostWindow>(std::move(output));
}

}  // namespace kifo::tool
