#include <QApplication>
#include <QQuickWindow>
#include <functional>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "apps/kifo/ui/PopupPicture.h"
#include "apps/kifo/ui/PreviewWindow.h"

namespace kifo::tool {

QImage pictureInScene(const std::shared_ptr<const PopupRequest>& request,
                      const PopUpOptions& options, const Look& look) {
  const QPalette palette = PopupPicture::paletteOf(look);
  QApplication::setPalette(palette);
  QQuickWindow host;
  host.setColor(palette.color(QPalette::Window));
  host.resize(look.width, look.height);
  host.show();
  auto* popup = new QuickPopup(request, options);
  popup->present(host);
  settle();
  return host.grabWindow();
}

void runPreviewScene(PreviewRun& run, const Look& look) {
  const QPalette palette = PopupPicture::paletteOf(look);
  QApplication::setPalette(palette);
  QQuickWindow host;
  host.setColor(palette.color(QPalette::Window));
  host.resize(look.width, look.height);
  host.setTitle("kifo preview");
  host.show();
  const std::function<void()> showNext = [&] {
    const auto request = run.next();
    if (!request) {
      host.close();
      return;
    }
    auto* popup = new QuickPopup(request, run.options());
    QObject::connect(
        popup, &QuickPopup::closed, &host, [&] { showNext(); }, Qt::QueuedConnection);
    popup->present(host);
  };
  showNext();
  QApplication::exec();
}

}  // namespace kifo::tool
