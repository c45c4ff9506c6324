#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kifo::testing::simulation {

/// What may happen in a world. Each takes one number, which chooses among what is then possible: a
/// script from which operations were taken out can still be played.
enum class Kind {
  runTask,       ///< A queue, or the transport's thread, does its next piece of work.
  runAll,        ///< All of them, until none has work.
  passTime,      ///< From half a second to twelve minutes.
  sendEvent,     ///< Host calls, from here…
  sendOddEvent,  ///< A value with an apostrophe, broken text or control characters.
  enterPage,
  leavePage,
  sendOther,       ///< Login, application in front or behind, an error, a push.
  changeIdentity,  ///< Actor, push tokens, authorization.
  initialize,      ///< Again, forced or not.
  closeScreen,     ///< …to here.
  answerRequest,   ///< The server answers an open request, or it fails.
  answerAll,       ///< The server answers all of them well.
  answerToken,     ///< The token service answers an open question.
  changeNetwork,
  changeCampaigns,  ///< The server's next in-app answer is another one.
  changeConsent,    ///< The user revokes the consent, or gives it again.
  pausePopups,      ///< The host holds popups back, or lets them show.
  changeGate,       ///< The host's own gate for popups decides otherwise.
  showPopup,        ///< The presenter gets to the next popup.
  answerPopup,      ///< The user answers or closes the popup that is shown.
  breakDisk,        ///< Now or within some changes of it.
  lockTable,        ///< Another process locks the table.
  mendDisk,         ///< The other process has ended, too.
  shutDown,         ///< The host ends the SDK and starts it anew.
  kill,             ///< The process is killed and starts anew.
  powerFails,       ///< Now or within some changes of the disk; the process starts anew.
};

struct Operation {
  Kind kind = Kind::runTask;
  std::uint32_t argument = 0;

  friend bool operator==(const Operation&, const Operation&) = default;
};

/// Operations from the first start of the process on. The last step, which every play adds, heals
/// everything and lets all work end.
using Script = std::vector<Operation>;

/// `length` operations. The same seed gives the same script on every machine.
Script randomScript(std::uint64_t seed, std::size_t length);

/// One line per operation, in the form in which a test lists them: `{Kind::sendEvent, 17},`.
std::string text(const Script& script);

/// The shortest script that was found, by leaving out operations and making arguments small, for
/// which `fails` still holds. `script` must fail.
Script shrunk(Script script, const std::function<bool(const Script&)>& fails);

}  // namespace kifo::testing::simulation
