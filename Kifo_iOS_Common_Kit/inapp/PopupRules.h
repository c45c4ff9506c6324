#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {
class Runtime;
}

/// The checks that a campaign passes before it is shown. Each says on the console, and to the
/// inspector, what it refuses or cuts short; none changes the campaign.
///
/// **Threading:** budgets are looked at and spent on the presenter's UI thread alone, so that one
/// campaign's check and spending are never interleaved with another's; all else is thread-safe.
namespace kifo::rules {

using Buttons = std::vector<std::shared_ptr<AppCommunicationItemButton>>;

/// How many options a kind of popup takes. The word is the one that its messages use.
struct ListRule {
  std::string_view word;
  std::size_t fewest;
  std::size_t most;
};

inline constexpr ListRule kPopupButtons{"buttons", 0, 3};
inline constexpr ListRule kSurveyChoices{"choices", 2, 20};
inline constexpr ListRule kEmojis{"emojis", 2, 3};

inline constexpr std::int64_t kHighestScore = 100000;

/// Whether the campaign has an identity and a show count; `silently` prints nothing when it has
/// not.
bool isIdentified(const std::shared_ptr<AppCommunicationItem>& item, bool silently = false);

/// Whether the user still agrees: the consent may have been revoked since the campaign was chosen,
/// in the session of `runtime`.
bool hasConsent(const Runtime& runtime, const AppCommunicationItem& item);

/// Whether the lowest and the highest score are there, in order and within 0 to `kHighestScore`.
bool hasScoreRange(const AppCommunicationItem& item);

/// Whether the campaign's `expireDate` has passed.
bool hasExpired(const AppCommunicationItem& item);
/// The same; the inspector is told.
bool isExpired(const AppCommunicationItem& item);

/// How many shows are left of a campaign with an identity: what this device has stored, else what
/// the server says.
std::int64_t storedShows(const AppCommunicationItem& item);

/// How many shows are left, or none when there are none. What this device has stored counts for
/// more than what the server says now.
std::optional<std::int64_t> showsLeft(const AppCommunicationItem& item);

/// Stores that one of `left` shows is gone.
void spendShow(const AppCommunicationItem& item, std::int64_t left);

/// Whether `list` is there with enough options.
bool accepts(const ListRule& rule, const std::optional<Buttons>& list,
             const AppCommunicationItem& item);

/// Says that `list` has more options than are shown, if it has.
void sayCut(const ListRule& rule, const std::optional<Buttons>& list,
            const AppCommunicationItem& item);

/// The first options of `list`, as many as may be shown.
Buttons firstOf(const ListRule& rule, std::optional<Buttons> list);

/// The emojis that the campaign offers; none when it has no list of them.
std::optional<Buttons> offeredEmojis(const AppCommunicationItem& item);

/// Says on the console, with `tag` at the line's start, and to the inspector why a popup is not
/// shown.
KIFO_SHARED void sayNotShown(std::string_view tag, const PopupRequest& request,
                             const std::string& reason);

/// Tells the inspector what became of the campaign, and remembers it for tools.
void inspect(const AppCommunicationItem& item, std::string_view outcome, std::string_view reason);
/// Remembers it alone.
void remember(const AppCommunicationItem& item, std::string outcome);

}  // namespace kifo::rules
