#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertAnimator.h"
#include "tests/support/Common.h"

#include <QSignalSpy>

namespace kifo {
namespace {

using std::chrono::milliseconds;

constexpr QRect kWindow(0, 0, 1000, 800);
constexpr QRect kPlace(380, 300, 240, 200);

// Long enough that no test ever sees its end by itself.
AlertMotion slow() {
  return {milliseconds(3600000), milliseconds(3600000), milliseconds(3600000)};
}

void goTo(AlertAnimator& animator, double share) {
  auto& animation = const_cast<QVariantAnimation&>(animator.animation());
  animation.setCurrentTime(static_cast<int>(animation.duration() * share));
}

TEST(AlertAnimatorTest, ACardComesFromTheSideOfItsStyle) {
  const std::map<KifoAnimationStyle, QPoint> starts = {
      {KifoAnimationStyle::topToBottom, {0, -200}},
      {KifoAnimationStyle::bottomToTop, {0, 200}},
      {KifoAnimationStyle::leftToRight, {-200, 0}},
      {KifoAnimationStyle::rightToLeft, {200, 0}},
  };
  for (const auto& [style, start] : starts) {
    AlertAnimator animator;
    animator.enter(style, false, slow());
    EXPECT_EQ(animator.offset(kPlace, kWindow), start);
    EXPECT_EQ(animator.opacity(), 0);
    goTo(animator, 1);
    EXPECT_EQ(animator.offset(kPlace, kWindow), QPoint());
    EXPECT_EQ(animator.opacity(), 1);
  }
  AlertMotion reduced = slow();
  reduced.reduced = true;
  const AlertMotion negative{milliseconds(-1), milliseconds(-1)};
  for (const auto& [style, motion] : {std::pair(KifoAnimationStyle::noAnimation, slow()),
                                      std::pair(KifoAnimationStyle::topToBottom, reduced),
                                      std::pair(KifoAnimationStyle::topToBottom, negative)}) {
    AlertAnimator still;
    QSignalSpy left(&still, &AlertAnimator::left);
    still.enter(style, false, motion);
    EXPECT_EQ(still.opacity(), 1);
    still.leave(motion);
    EXPECT_EQ(left.count(), 1);
  }
}

TEST(AlertAnimatorTest, HidingGoesOnFromWhereShowingWas) {
  AlertAnimator animator;
  QSignalSpy left(&animator, &AlertAnimator::left);
  QSignalSpy entered(&animator, &AlertAnimator::entered);
  animator.enter(KifoAnimationStyle::topToBottom, false, slow());
  goTo(animator, 0.3);
  const QPoint halfway = animator.offset(kPlace, kWindow);
  ASSERT_LT(halfway.y(), 0);

  animator.leave(slow());
  EXPECT_EQ(animator.offset(kPlace, kWindow), halfway);
  EXPECT_LT(animator.animation().duration(), 3600000) << "there is less way to go";
  goTo(animator, 1);
  EXPECT_EQ(animator.opacity(), 0);
  EXPECT_EQ(left.count(), 1);
  EXPECT_EQ(entered.count(), 0);
}

TEST(AlertAnimatorTest, TheSpringRunsPastItsPlaceAndComesToRestThere) {
  AlertAnimator animator;
  animator.enter(KifoAnimationStyle::leftToRight, true, slow());
  int furthest = 0;
  for (double share = 0; share <= 1; share += 0.02) {
    goTo(animator, share);
    furthest = std::max(furthest, animator.offset(kPlace, kWindow).x());
    EXPECT_LE(animator.opacity(), 1);
  }
  EXPECT_GT(furthest, 5);
  EXPECT_LT(furthest, 60);
  goTo(animator, 1);
  EXPECT_EQ(animator.offset(kPlace, kWindow), QPoint());
}

}  // namespace
}  // namespace kifo
