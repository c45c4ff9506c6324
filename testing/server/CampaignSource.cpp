#include "testing/server/CampaignSource.h"

#include <fstream>
#include <iterator>
#include <optional>

#include <nlohmann/json.hpp>

namespace kifo::testing {

namespace {

std::optional<nlohmann::json> readJson(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  auto json = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (!json.is_object()) return std::nullopt;
  return json;
}

void join(nlohmann::json& whole, const nlohmann::json& part) {
  for (const auto* list : {"model", "blockedEvents"}) {
    if (!part.contains(list) || !part[list].is_array()) continue;
    for (const auto& entry : part[list]) whole[list].push_back(entry);
  }
  if (part.contains("configuration")) whole["configuration"] = part["configuration"];
}

}  // namespace

const std::string& CampaignSource::defaultAnswer() {
  static const std::string text =
      R"({"configuration":{"id":"local","stopAllEvents":false,"offlineQueueSize":1000},"model":[]})";
  return text;
}

void CampaignSource::serveText(std::string text) {
  const std::lock_guard lock(mutex_);
  answer_ = std::move(text);
  path_.clear();
  problem_.clear();
}

void CampaignSource::servePath(std::filesystem::path path) {
  const std::lock_guard lock(mutex_);
  path_ = std::move(path);
  stamps_ = stamps();
  reread();
}

std::string CampaignSource::answer() {
  const std::lock_guard lock(mutex_);
  if (!path_.empty()) {
    if (auto now = stamps(); now != stamps_ || !problem_.empty()) {
      stamps_ = std::move(now);
      reread();
    }
  }
  return answer_;
}

std::string CampaignSource::problem() const {
  const std::lock_guard lock(mutex_);
  return problem_;
}

CampaignSource::Stamps CampaignSource::stamps() const {
  Stamps result;
  std::error_code error;
  const auto stamp = [&](const std::filesystem::path& file) {
    result[file] = {std::filesystem::last_write_time(file, error),
                    std::filesystem::file_size(file, error)};
  };
  if (!std::filesystem::is_directory(path_, error)) {
    stamp(path_);
    return result;
  }
  for (std::filesystem::directory_iterator entry(path_, error), end; !error && entry != end;
       entry.increment(error)) {
    if (entry->path().extension() == ".json") stamp(entry->path());
  }
  return result;
}

void CampaignSource::reread() {
  const bool single = stamps_.size() == 1 && stamps_.begin()->first == path_;
  auto whole = nlohmann::json::object();
  problem_.clear();
  for (const auto& [file, stamp] : stamps_) {
    const auto part = readJson(file);
    if (!part) {
      problem_ = file.string() + " holds no JSON object";
      return;
    }
    if (single) {
      whole = *part;
    } else {
      join(whole, *part);
    }
  }
  answer_ = whole.dump();
}

}  // namespace kifo::testing
