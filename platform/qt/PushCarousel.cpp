#include "platform/qt/PushCarousel.h"

#include <QKeyEvent>
#include <QPushButton>
#include <cmath>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"
#include "Kifo_iOS_Common_Kit/notifications/KifoSliderPushHelper.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"

namespace kifo {
namespace {

constexpr int CONTROLS = 44;  // height of the row of buttons, enough for a finger
constexpr int PREFERRED_WIDTH = 320;
constexpr QSize LARGEST_PICTURE(1024, 1024);

class ArrowButton : public PopupControl<QPushButton> {
 public:
  ArrowButton(const PopupTheme& theme, bool forwards, const QString& name, QWidget* parent)
      : PopupControl(parent), theme_(theme), forwards_(forwards) {
    setAccessibleName(name);
    setToolTip(name);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle = QRectF(rect()).center();
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.shade(isDown() ? 0.18 : underMouse() ? 0.12 : 0.06));
    painter.drawEllipse(middle, 16, 16);
    const bool pointsRight = forwards_ != (layoutDirection() == Qt::RightToLeft);
    const QPointF tip = middle + QPointF(pointsRight ? 3 : -3, 0);
    const double back = pointsRight ? -6 : 6;
    painter.setPen(QPen(theme_.ink, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({tip + QPointF(back, -6), tip, tip + QPointF(back, 6)}));
    if (showsFocus()) paintFocusRing(painter, rect(), 22, theme_.shade(0.06), theme_.accent);
  }

 private:
  const PopupTheme theme_;
  const bool forwards_;
};

}  // namespace

PushCarousel::PushCarousel(QWidget* parent, const PopUpOptions& options)
    : PushCarousel(parent, options, Texts()) {}

PushCarousel::PushCarousel(QWidget* parent, const PopUpOptions& options, const Texts& texts)
    : QWidget(parent), options_(options) {
  const PopupTheme theme = PopupTheme::ofHost(palette(), options_);
  if (!options_.imageLoader) options_.imageLoader = std::make_shared<ImageLoader>(LARGEST_PICTURE);
  previous_ = new ArrowButton(theme, false, texts.previous, this);
  pages_ = new PopupCarousel(theme, this);
  next_ = new ArrowButton(theme, true, texts.next, this);
  indicator_ = new PageIndicator(theme, this);
  pages_->installEventFilter(this);
  connect(pages_, &PopupCarousel::pageTurned, this, &PushCarousel::changeIndex);
  connect(previous_, &QAbstractButton::clicked, this, &PushCarousel::showPrevious);
  connect(next_, &QAbstractButton::clicked, this, &PushCarousel::showNext);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  setNotification({});
}

PushCarousel::~PushCarousel() {
  if (NotificationManager::collectionView() == pages_) {
    NotificationManager::setCollectionView(nullptr);
  }
}

void PushCarousel::setNotification(const Notification& notification) {
  const auto urls = notification.request.content ? KifoSliderPushHelper::getImageList(notification)
                                                 : std::vector<std::string>();
  count_ = static_cast<int>(urls.size());
  pages_->setImages(urls, options_.imageLoader);
  indicator_->setNumberOfPages(count_);
  for (QWidget* control : {static_cast<QWidget*>(previous_), static_cast<QWidget*>(next_)}) {
    control->setVisible(count_ > 1);
  }
  changeIndex(0);
  if (count_ > 0) NotificationManager::setCollectionView(pages_);
}

void PushCarousel::showNext() {
  if (count_ > 1) changeIndex(KifoSliderPushHelper::scrollNextItem(pages_, currentIndex_, count_));
}

void PushCarousel::showPrevious() {
  if (count_ > 1)
    changeIndex(KifoSliderPushHelper::scrollPreviousItem(pages_, currentIndex_, count_));
}

void PushCarousel::changeIndex(int index) {
  indicator_->setCurrentPage(index);
  if (std::exchange(currentIndex_, index) != index) Q_EMIT currentIndexChanged(index);
}

int PushCarousel::heightForWidth(int width) const {
  if (isEmpty()) return 0;
  const double page =
      width - (pages_->width() - KifoSliderPushHelper::getSize(pages_, {}, count_).height);
  return static_cast<int>(std::lround(page)) + (count_ > 1 ? CONTROLS : 0);
}

QSize PushCarousel::sizeHint() const {
  return {PREFERRED_WIDTH, heightForWidth(PREFERRED_WIDTH)};
}

void PushCarousel::resizeEvent(QResizeEvent*) {
  pages_->resize(width(), pages_->height());
  const Size page = KifoSliderPushHelper::getSize(pages_, {}, count_);
  pages_->setGeometry(0, 0, static_cast<int>(page.width),
                      static_cast<int>(std::max(page.height, 0.0)));
  const QRect row(0, pages_->height(), width(), CONTROLS);
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  const QRect left(0, row.y(), CONTROLS, CONTROLS);
  const QRect right(row.width() - CONTROLS, row.y(), CONTROLS, CONTROLS);
  previous_->setGeometry(mirrored ? right : left);
  next_->setGeometry(mirrored ? left : right);
  indicator_->setGeometry(row.adjusted(CONTROLS, 0, -CONTROLS, 0));
}

/// The keys of `pages_` itself stop at the first and the last page.
bool PushCarousel::eventFilter(QObject* watched, QEvent* event) {
  if (watched != pages_ || event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key != Qt::Key_Left && key != Qt::Key_Right) return false;
  const bool forwards = (key == Qt::Key_Right) != (layoutDirection() == Qt::RightToLeft);
  forwards ? showNext() : showPrevious();
  return true;
}

}  // namespace kifo
