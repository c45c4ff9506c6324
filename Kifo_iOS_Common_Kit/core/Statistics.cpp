#include "Kifo_iOS_Common_Kit/core/Statistics.h"

#include <numeric>

namespace kifo {
namespace {

/// In the order of `Counter`. The store keeps its values under these names.
constexpr std::array<std::string_view, kCounters> kNames = {"composed",
                                                            "found",
                                                            "delivered",
                                                            "givenUpNotAnswered",
                                                            "givenUpUnreadable",
                                                            "droppedWithoutConsent",
                                                            "droppedWithoutAnswer",
                                                            "droppedByCap",
                                                            "droppedUnquotable",
                                                            "droppedByLock",
                                                            "droppedByStore",
                                                            "droppedAtEndOfProcess",
                                                            "waiting",
                                                            "underWay",
                                                            "blocked",
                                                            "stored",
                                                            "refusedByCap",
                                                            "sent",
                                                            "resent",
                                                            "failed",
                                                            "popupsDue",
                                                            "popupsShown",
                                                            "popupsRefusedUnidentified",
                                                            "popupsRefusedNoShowsLeft",
                                                            "popupsRefusedOptions",
                                                            "popupsRefusedScoreRange",
                                                            "popupsRefusedUnknownType",
                                                            "popupsRefusedNoScreen",
                                                            "popupsRefusedNotShowable",
                                                            "popupsRefusedByHost",
                                                            "popupsRefusedExpired",
                                                            "popupsRefusedRepeated",
                                                            "popupsRefusedNoConsent",
                                                            "popupsPaused",
                                                            "popupsAnswered",
                                                            "popupsClosed"};

static_assert(!kNames.back().empty());

}  // namespace

std::string_view name(Counter counter) {
  return kNames[static_cast<std::size_t>(counter)];
}

std::int64_t Counts::sum(Counter first, Counter last) const {
  return std::accumulate(values_.begin() + static_cast<std::ptrdiff_t>(first),
                         values_.begin() + static_cast<std::ptrdiff_t>(last) + 1, std::int64_t{0});
}

std::int64_t Counts::givenUp() const {
  return sum(Counter::givenUpNotAnswered, Counter::givenUpUnreadable);
}

std::int64_t Counts::dropped() const {
  return sum(Counter::droppedWithoutConsent, Counter::droppedAtEndOfProcess);
}

std::int64_t Counts::popupsRefused() const {
  return sum(Counter::popupsRefusedUnidentified, Counter::popupsRefusedNoConsent);
}

}  // namespace kifo
