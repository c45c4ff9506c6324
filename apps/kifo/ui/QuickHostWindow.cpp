#include <QChildEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "apps/kifo/ui/QtHostWindow.h"
#include "platform/qt/QuickPopupPresenter.h"
#include "platform/qt/QuickScreenProvider.h"

namespace kifo::tool {
namespace {

/// A page of the scene.
class Page final : public KifoViewController, public QuickScreenProvider {
 public:
  Page(std::string className, QQuickItem* page) : className_(std::move(className)), page_(page) {}

  [[nodiscard]] std::string className() const override { return className_; }
  [[nodiscard]] QQuickItem* item() const override { return page_; }

 private:
  const std::string className_;
  const QPointer<QQuickItem> page_;
};

class QuickHostWindow final : public QtHostWindow {
 public:
  explicit QuickHostWindow(std::shared_ptr<Output> output)
      : QtHostWindow(std::move(output), std::make_shared<QuickPopupPresenter>(options())) {
    window_.resize(kWindowSize);
    window_.setTitle("kifo host");
    window_.contentItem()->installEventFilter(this);
    window_.show();
  }

 protected:
  [[nodiscard]] testing::User user() override {
    return testing::User(window_, [this] { return window_.grabWindow(); });
  }

  [[nodiscard]] std::shared_ptr<KifoViewController> makePage(const std::string& name) override {
    auto* page = new QQuickItem(window_.contentItem());
    page->setSize(window_.size());
    page->setVisible(false);
    return std::make_shared<Page>(name, page);
  }

  void showPage(KifoViewController& screen) override {
    if (current_ != nullptr) current_->setVisible(false);
    current_ = dynamic_cast<Page&>(screen).item();
    current_->setVisible(true);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::ChildAdded) return false;
    auto* popup = qobject_cast<QuickPopup*>(static_cast<QChildEvent*>(event)->child());
    if (popup == nullptr) return false;
    // It is shown a moment later, and has its state then.
    const auto follow = [this, popup] {
      opened({popup, &popup->state(), [popup] { return popup->isDismissing(); }});
      connect(popup, &QuickPopup::closed, this, [this, popup] { closed(popup->state()); });
    };
    QMetaObject::invokeMethod(popup, follow, Qt::QueuedConnection);
    return false;
  }

 private:
  QQuickWindow window_;
  QPointer<QQuickItem> current_;
};

}  // namespace

std::unique_ptr<QtHostWindow> makeQuickHostWindow(std::shared_ptr<Output> output) {
  return std::make_unique<QuickHostWindow>(std::move(output));
}

}  // namespace kifo::tool
