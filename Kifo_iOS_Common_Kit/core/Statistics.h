#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// What the SDK counts.
///
/// An event is in one place at any time, and the places add up to what came in:
///
///     composed + found = delivered + givenUp… + dropped… + waiting + underWay
///
/// The counters under "Beside the sum" count what happened to events meanwhile; one event may count
/// in several of them.
enum class Counter : std::uint8_t {
  // What came in.
  composed,  ///< Events that the server does not block.
  found,     ///< Rows that the store held before: of an earlier run, or of another process.

  // Where it ended.
  delivered,              ///< Answered with 200.
  givenUpNotAnswered,     ///< Sent again from the store and not answered with 200.
  givenUpUnreadable,      ///< The stored row could not be read.
  droppedWithoutConsent,  ///< The user has not agreed; nothing was kept.
  droppedWithoutAnswer,   ///< Before the first in-app answer nothing is stored; it was not sent
                          ///< either, or not answered with 200.
  droppedByCap,           ///< As many rows waited as the server allows. Likewise not delivered.
  droppedUnquotable,      ///< Holds a text that cannot be stored. Likewise.
  droppedByLock,          ///< Another process kept the store locked. Likewise.
  droppedByStore,         ///< The store could not be written. Likewise.
  droppedAtEndOfProcess,  ///< Under way, without a row, when an earlier process ended; some of
                          ///< them may have been delivered. Over the life of the store only.

  // Where it is.
  waiting,   ///< In the store, to be sent again.
  underWay,  ///< Being stored or sent, or without an answer yet.

  // Beside the sum.
  blocked,       ///< Events that the server blocks. They are not composed.
  stored,        ///< Copies that became a row.
  refusedByCap,  ///< Copies that did not, because as many rows waited as the server allows.
  sent,          ///< Requests of fresh events, handed to the transport.
  resent,        ///< Requests of stored rows, likewise.
  failed,        ///< Of both, those not answered with 200.

  // Popups: due = shown + refused… + those that wait to be shown.
  popupsDue,  ///< An event triggered a campaign that is a popup.
  popupsShown,
  popupsRefusedUnidentified,  ///< The campaign has no uuid or no show count.
  popupsRefusedNoShowsLeft,
  popupsRefusedOptions,      ///< Too few options, or none.
  popupsRefusedScoreRange,   ///< A wrong score range.
  popupsRefusedUnknownType,  ///< A type that is no popup's.
  popupsRefusedNoScreen,     ///< Its screen was closed before, or there was none.
  popupsRefusedNotShowable,  ///< The presenter has no window for it.
  popupsRefusedByHost,       ///< The host's gate said never.
  popupsRefusedExpired,      ///< Its campaign expired before it was shown.
  popupsRefusedRepeated,     ///< The same campaign was held back already.
  popupsRefusedNoConsent,    ///< The consent was revoked before it was shown.
  popupsPaused,              ///< Held back when due. Beside the sum: one may be so repeatedly.
  popupsAnswered,
  popupsClosed,  ///< Closed without an answer.
};

inline constexpr std::size_t kCounters = static_cast<std::size_t>(Counter::popupsClosed) + 1;

/// The counter's name as it is written above.
KIFO_EXPORT std::string_view name(Counter counter);

/// One value for each counter.
///
/// **Threading:** a plain value; externally synchronised.
class KIFO_EXPORT Counts {
 public:
  std::int64_t& operator[](Counter counter) { return values_[static_cast<std::size_t>(counter)]; }
  std::int64_t operator[](Counter counter) const {
    return values_[static_cast<std::size_t>(counter)];
  }

  [[nodiscard]] std::int64_t givenUp() const;  ///< For whatever reason.
  [[nodiscard]] std::int64_t dropped() const;  ///< Likewise.
  [[nodiscard]] std::int64_t popupsRefused() const;

  bool operator==(const Counts&) const = default;

 private:
  [[nodiscard]] std::int64_t sum(Counter first, Counter last) const;

  std::array<std::int64_t, kCounters> values_{};
};

/// What `Kifo::statistics` tells. Each half adds up, for whatever moment it is read at.
struct Statistics {
  Counts sinceInitialize;  ///< Of this session; `shutdown` and a revoked consent end it.
  Counts overLife;         ///< Of every session since the store was made.
  /// Whether the store keeps them: not while no file has been written, and not in a file that was
  /// made before the SDK counted. `overLife` is then this session's alone.
  bool isLifeKept = false;
};

}  // namespace kifo
