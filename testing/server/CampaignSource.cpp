#include "testing/server/CampaignSource.h"

#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::testing {

namespace {

std::optional<Value::Map> readJson(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const auto json = valueFromJson(std::string(std::istreambuf_iterator<char>(file), {}));
  if (!json || json->asMap() == nullptr) return std::nullopt;
  return *json->asMap();
}

void join(Value::Map& whole, const Value::Map& part) {
  for (const auto& [key, value] : part) {
    if (key == "configuration") whole[key] = value;
    if ((key != "model" && key != "blockedEvents") || value.asList() == nullptr) continue;
    Value::List all = whole[key].asList() ? *whole[key].asList() : Value::List();
    all.insert(all.end(), value.asList()->begin(), value.asList()->end());
    whole[key] = std::move(all);
  }
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
  Value::Map whole;
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
  answer_ = jsonFromValue(whole);
}

}  // namespace kifo::testing
