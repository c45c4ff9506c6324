#include "Kifo_iOS_Common_Kit/notifications/KifoSliderPushHelper.h"

#include "Kifo_iOS_Common_Kit/core/Console.h"

namespace kifo {
namespace {

constexpr double HEIGHT_BELOW_WIDTH = 20.0;

template <class View>
View& required(View* view) {
  if (!view) fatalError("a carousel needs its collection view");
  return *view;
}

/// Paging would pull the view back to the page that it is on before the animation has left it.
int scroll(CollectionView& view, int index, CollectionView::ScrollPosition position) {
  view.setPagingEnabled(false);
  view.scrollToItem(index, 0, position, true);
  view.setPagingEnabled(true);
  return index;
}

}  // namespace

std::vector<std::string> KifoSliderPushHelper::getImageList(const Notification& notification) {
  if (!notification.request.content) {
    Console::print(KifoSliderPushHelper::LOG_TAG, "bestAttemptContent couldn't be assigned");
    return {};
  }
  std::vector<std::string> urls;
  const auto item = campaignOf(notification.request.content->userInfo);
  if (!item || !item->images) return urls;
  for (const auto& image : *item->images) {
    if (image->url) urls.push_back(*image->url);
  }
  return urls;
}

Size KifoSliderPushHelper::getSize(const CollectionView* collectionView, IndexPath, int) {
  const double width = required(collectionView).width();
  return {width, width - HEIGHT_BELOW_WIDTH};
}

int KifoSliderPushHelper::scrollNextItem(CollectionView* collectionView, int currentIndex,
                                         int listCount) {
  const int next = currentIndex == listCount - 1 ? 0 : currentIndex + 1;
  return scroll(required(collectionView), next, CollectionView::ScrollPosition::right);
}

int KifoSliderPushHelper::scrollPreviousItem(CollectionView* collectionView, int currentIndex,
                                             int listCount) {
  const int previous = currentIndex == 0 ? listCount - 1 : currentIndex - 1;
  return scroll(required(collectionView), previous, CollectionView::ScrollPosition::left);
}

}  // namespace kifo
