#include "apps/kifo/preview/CampaignFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "apps/kifo/ReadJson.h"
#include "apps/kifo/preview/Diagnosis.h"

namespace kifo::tool {
namespace {

namespace fs = std::filesystem;

std::string contents(const std::string& path) {
  if (path == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::ifstream file(path, std::ios::binary);
  if (!file) throw NoCampaigns("it cannot be read");
  return {std::istreambuf_iterator<char>(file), {}};
}

nlohmann::json parsed(const std::string& text) {
  try {
    // Its exception says where the text is no JSON.
    const auto whole = nlohmann::json::parse(text);
    auto json = readJson(text);
    if (json.is_discarded()) throw NoCampaigns("it is nested too deeply");
    return json;
  } catch (const nlohmann::json::exception& error) {
    // The library's own words begin with their number.
    const std::string words = error.what();
    const auto end = words.find("] ");
    throw NoCampaigns("it is no JSON: " +
                      (end == std::string::npos ? words : words.substr(end + 2)));
  }
}

template <class Record>
std::shared_ptr<Record> decoded(const nlohmann::json& json) {
  if (auto record = decode<Record>(json.dump())) return record;
  const auto problem = problemIn<Record>(json);
  throw NoCampaigns("it cannot be decoded: " + problem.value_or("it is not what a server sends"));
}

}  // namespace

CampaignFile CampaignFile::read(const std::string& path) {
  CampaignFile file;
  file.name = path == "-" ? "standard input" : fs::path(path).stem().string();
  file.folder = path == "-" ? "." : fs::absolute(path).parent_path().string();
  const nlohmann::json json = parsed(contents(path));
  const bool isCampaign = json.is_object() && json.contains("type") && !json.contains("model");
  if (isCampaign) {
    file.campaigns.push_back(decoded<AppCommunicationItem>(json));
  } else {
    const auto answer = decoded<AppCommunication>(json);
    if (answer->model) file.campaigns = *answer->model;
  }
  return file;
}

std::vector<std::string> CampaignFile::filesIn(const std::string& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(path)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path().string());
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace kifo::tool
