#pragma once

#include <QImage>
#include <QPainter>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QWindow>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// One toolkit's host and popup, for suites that run on each. The host is a window of 414 x 800
/// with one text field, called "hostField", which has the focus, and a shortcut on Escape.
class PopupToolkit {
 public:
  struct Kind {
    std::string name;
    std::unique_ptr<PopupToolkit> (*make)();
  };
  /// Something visible of the popup that has a name. Boxes are in the window's logical pixels.
  struct Part {
    std::string name;
    QRect box;
    QRect seen;   ///< What of it the areas around it, which may scroll, leave in sight.
    bool isText;  ///< A label.
    std::function<void(QPainter&)> paint;
  };

  virtual ~PopupToolkit() = default;
  /// Those that the tests are built with.
  static std::vector<Kind> all();
  static std::unique_ptr<PopupToolkit> widgets();

  // The host.

  virtual void resize(QSize size) = 0;
  [[nodiscard]] virtual QWindow& window() = 0;
  [[nodiscard]] virtual QImage picture() = 0;
  virtual void destroyHost() = 0;
  virtual void focusHost() = 0;
  virtual void removeHostField() = 0;
  [[nodiscard]] virtual QString hostText() const = 0;
  [[nodiscard]] virtual int shortcuts() const = 0;

  // The popup.
  virtual void present(std::shared_ptr<const PopupRequest> request,
                       const PopUpOptions& options) = 0;
  virtual void dismiss() = 0;
  /// What the submit button does.
  virtual void submit() = 0;
  virtual void keyboard(const QRectF& rectangle) = 0;
  /// What the carousel's timer does.
  virtual void turnPage() = 0;
  [[nodiscard]] virtual bool turnsPages() const = 0;
  [[nodiscard]] virtual bool isSliding() const = 0;
  /// Whether a page of the carousel waits for its picture.
  [[nodiscard]] virtual bool isLoading(int page) const = 0;
  [[nodiscard]] virtual bool isFading() const = 0;
  /// Null once the popup is gone.
  [[nodiscard]] virtual QObject* popup() const = 0;
  [[nodiscard]] virtual const PopupState* state() const = 0;
  [[nodiscard]] virtual std::vector<Part> parts() const = 0;
  /// No label or button is lower than its text, where the toolkit tells.
  virtual void expectNothingCut() const {}
  int closings = 0;
};

/// What a toolkit leaves to its host, a `WidgetsHost` or a `QuickHost`.
template <class Host>
class PopupToolkitOn : public PopupToolkit {
 public:
  void resize(QSize size) override { host_.resize(size); }
  QWindow& window() override { return host_.window(); }
  QImage picture() override { return host_.picture(); }
  void destroyHost() override { host_.destroy(); }
  void focusHost() override { host_.focusField(); }
  void removeHostField() override { host_.removeField(); }
  QString hostText() const override { return host_.text(); }
  int shortcuts() const override { return host_.shortcuts(); }

 protected:
  Host host_{{414, 800}, "Escape"};
};

}  // namespace kifo::testing
