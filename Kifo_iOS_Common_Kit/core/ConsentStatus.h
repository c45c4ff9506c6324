#pragma once

namespace kifo {

/// Whether the user agrees that the SDK works: see `Kifo::giveConsent`.
enum class ConsentStatus {
  UNKNOWN,  ///< Was never asked for, or never told to the SDK.
  GIVEN,
  REFUSED,
};

}  // namespace kifo
