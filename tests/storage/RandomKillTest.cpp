
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "testing/ChildProgram.h"
#include "testing/TemporaryDirectory.h"
#include "testing/server/LocalServer.h"
#include "tests/support/DatabaseRows.h"

namespace kifo::testing {
namespace {

constexpr std::int64_t kMostShows = 1'000'000;

/// KIFO_KILLS: how many kills. A thousand take about ten minutes.
int kills() {
  const char* given = std::getenv("KIFO_KILLS");
  return given ? std::atoi(given) : 60;
}

/// What a host said before it died, the last value of each member. See KilledHost.cpp.
nlohmann::json saidIn(const std::string& output) {
  nlohmann::json said = nlohmann::json::object();
  std::istringstream lines(output.substr(0, output.rfind('\n') + 1));
  for (std::string line; std::getline(lines, line);) said.merge_patch(nlohmann::json::parse(line));
  return said;
}

class RandomKillTest : public ::testing::Test {
 protected:
  RandomKillTest() {
    server_.campaigns().serveText(
        R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":100000},"model":[
            {"type":"POPUP","uuid":"campaign","maxShowCount":1000000,"triggeringEventName":"buy",
             "buttons":[{"id":"b","text":"B"}]}]})");
    server_.setFaults({.everyOther = 500, .on = Faults::On::LISTENER});
    server_.respond("/picture.jpg", [](const auto&) {
      return LocalServer::Answer{.body = std::string(20'000, 'p'), .contentType = "image/jpeg"};
    });
    server_.start();
  }

  /// A host of the next generation lives in `home` until it is killed, and longer sometimes: a
  /// popup shows half a second after its event.
  nlohmann::json killed(const std::string& mode, const std::string& home) {
    constexpr std::array<std::uint32_t, 4> longest{20'000, 100'000, 200'000, 900'000};
    return killedAfter(random_() % longest[random_() % longest.size()], mode, home);
  }
  nlohmann::json killedAfter(std::uint32_t microseconds, const std::string& mode,
                             const std::string& home) {
    ChildProgram host;
    host.start({KIFO_KILLED_HOST, mode, home, server_.uri(), std::to_string(++generation_),
                std::to_string(microseconds)});
    auto said = saidIn(host.readAll());
    EXPECT_EQ(host.wait(), std::nullopt) << "the kill ends it, and nothing else";
    return said;
  }
  /// A host that ends by itself.
  nlohmann::json last(const std::string& home) {
    ChildProgram host;
    host.start({KIFO_KILLED_HOST, "last", home, server_.uri(), std::to_string(++generation_)});
    auto said = saidIn(host.readAll());
    EXPECT_EQ(host.wait(), 0);
    return said;
  }
  static void expectSoundFile(const std::string& path) {
    if (!std::filesystem::exists(path)) return;
    EXPECT_EQ(databaseRows(path, "pragma integrity_check"), std::vector<std::string>{"ok"});
    EXPECT_EQ(databaseRows(path,
                           "select count(*) from KifoLog where REQUEST_ID is null or "
                           "HTTPMETHOD <> 'POST' or URL not like 'http://%' or "
                           "not json_valid(PARAMETERS)"),
              std::vector<std::string>{"0"})
        << "whole rows only";
  }
  static std::set<std::string> filesIn(const std::string& home) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
      if (entry.is_regular_file()) files.insert(entry.path().filename());
    }
    return files;
  }

  /// Each event arrived once, or twice where the first time failed or its host was killed.
  void expectOnce() {
    std::map<std::string, std::vector<RequestLog::Request>> arrivals;
    for (const auto& each : server_.requests().on("/sdkListenerEvent")) {
      arrivals[each->text("requestId")].push_back(each);
    }
    EXPECT_GT(arrivals.size(), 0U);
    for (const auto& [event, requests] : arrivals) {
      ASSERT_LE(requests.size(), 2U) << event;
      if (requests.size() == 1 || requests[0]->status != 200) continue;
      EXPECT_NE(requests[0]->header("Authorization"), requests[1]->header("Authorization"))
          << event << " was answered and sent again by the same host";
    }
    // A row is marked before it goes out again, so that it never goes twice: the one that was on
    // its way when its host was killed is gone.
    const auto lost = std::ranges::count_if(
        stored_, [&](const std::string& event) { return !arrivals.contains(event); });
    EXPECT_LE(lost, generation_) << "of " << stored_.size() << " that were stored";
  }

  /// Each event that a host composed was delivered, given up or dropped for one reason.
  void expectSum(const std::map<std::string, std::int64_t>& counters) {
    std::int64_t ended = 0;
    for (const auto& [name, value] : counters) {
      if (name == "delivered" || name.starts_with("givenUp") || name.starts_with("dropped")) {
        ended += value;
      }
    }
    EXPECT_EQ(counters.at("composed") + counters.at("found"), ended);
    EXPECT_GE(counters.at("composed"), std::ssize(stored_));
    EXPECT_LE(counters.at("delivered"),
              std::ranges::count_if(server_.requests().on("/sdkListenerEvent"),
                                    [](const auto& each) { return each->status == 200; }));
  }

  /// What the killed host left in its table.
  void note(const std::string& database) {
    for (const auto& event :
         databaseRows(database,
                      "select json_extract(PARAMETERS, '$.requestId') from KifoLog where TRYCOUNT "
                      "= 0 and ISSYNC_SUCCESS = 0")) {
      stored_.insert(event);
    }
  }

  LocalServer server_;
  std::mt19937 random_{std::random_device{}()};
  int generation_ = 0;
  std::set<std::string> stored_;  ///< Events whose rows waited when a host was killed.
};

TEST_F(RandomKillTest, AtAnyInstantNothingStoredIsLostOrSentTwiceAndSettingsStay) {
  const TemporaryDirectory home;
  const std::string database = home.file("KifoLog.db");
  std::int64_t actor = 0;
  std::int64_t shows = 0;
  const auto expectSettings = [&](const nlohmann::json& next) {
    if (!next.contains("foundActor")) return;
    // What was changed after the last line may be there or not.
    EXPECT_GE(next["foundActor"], actor);
    actor = std::max<std::int64_t>(actor, next["foundActor"]);
    if (shows > 0) {
      EXPECT_GT(next["foundShows"], 0) << "the number of shows is lost";
      EXPECT_LE(next["foundShows"], shows) << "shows that were spent are left again";
    }
    if (next["foundShows"] > 0) shows = next["foundShows"];
  };
  for (int kill = 0; kill < kills() * 3 / 4 && !HasFailure(); ++kill) {
    SCOPED_TRACE(kill);
    const auto said = killed("live", home.path());
    expectSettings(said);
    actor = std::max(actor, said.value("actor", std::int64_t{0}));
    shows = said.value("shows", shows);
    expectSoundFile(database);
    if (!std::filesystem::exists(database)) continue;
    note(database);
    if (kill % 50 == 49) expectSettings(last(home.path()));
  }
  // On a busy machine none of them may have lived until its first popup.
  for (std::uint32_t life = 2'000'000; shows == 0 && life < 60'000'000; life *= 2) {
    const auto said = killedAfter(life, "live", home.path());
    actor = said.value("actor", actor);
    shows = said.value("shows", shows);
    note(database);
  }
  const auto end = last(home.path());
  expectSettings(end);
  expectSum(end.at("counters"));
  expectOnce();
  EXPECT_GT(stored_.size(), 0U);
  EXPECT_GT(shows, 0) << "popups were shown";
  EXPECT_LT(shows, kMostShows);
  const std::set<std::string> files = filesIn(home.path());
  EXPECT_FALSE(files.contains("image.jpg"));
  EXPECT_LE(files.size(), 6U) << "the directories of killed hosts are removed by the next start";
}

TEST_F(RandomKillTest, WhileTheConsentIsErasedEitherAllIsKeptOrAllGoes) {
  for (int kill = 0; kill < kills() / 4 && !HasFailure(); ++kill) {
    SCOPED_TRACE(kill);
    const TemporaryDirectory home;
    const auto said = killed("erase", home.path());
    expectSoundFile(home.file("KifoLog.db"));
    const auto before = server_.requests().count();
    last(home.path());
    const auto files = filesIn(home.path());
    if (files.contains("consent.refused")) {
      EXPECT_EQ(files, std::set<std::string>{"consent.refused"});
      EXPECT_EQ(server_.requests().count(), before) << "nothing goes out without consent";
    } else {
      EXPECT_FALSE(said.contains("revoked"));
      EXPECT_TRUE(files.contains("consent.given") || !said.contains("foundActor"));
    }
  }
}

TEST_F(RandomKillTest, WithinAGroupItLosesThatGroupAloneAndALoneJournalReachesNoNewFile) {
  const TemporaryDirectory home;
  const std::string database = home.file("KifoLog.db");
  for (int file = 0; file < 2; ++file) {
    std::filesystem::remove(database);
    ChildProgram host;
    host.start({KIFO_KILLED_HOST, "group", home.path(), server_.uri(), "1"});
    EXPECT_EQ(host.wait(), std::nullopt) << "it kills itself";
    ASSERT_GT(std::filesystem::file_size(database + "-journal"), 0U)
        << "pages had reached the file";
  }
  expectSoundFile(database);
  EXPECT_EQ(databaseRows(database, "select count(*) from KifoLog"), std::vector<std::string>{"10"});
}

}  // namespace
}  // namespace kifo::testing
