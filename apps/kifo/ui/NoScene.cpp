// What a build without Qt Quick has in place of scenes: the widgets.
#include "apps/kifo/ui/PopupPicture.h"
#include "apps/kifo/ui/PreviewWindow.h"
#include "apps/kifo/ui/QtHostWindow.h"

namespace kifo::tool {

QImage pictureInScene(const std::shared_ptr<const PopupRequest>&, const PopUpOptions&,
                      const Look&) {
  return {};
}

void runPreviewScene(PreviewRun&, const Look&) {}

std::unique_ptr<QtHostWindow> makeQuickHostWindow(std::shared_ptr<Output> output) {
  return makeWidgetHostWindow(std::move(output));
}

}  // namespace kifo::tool
