#include "apps/kifo/preview/LocalPictures.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace kifo::tool {

LocalPictures::LocalPictures(std::vector<std::string> folders,
                             std::shared_ptr<HttpTransport> network)
    : folders_(std::move(folders)), network_(std::move(network)) {}

void LocalPictures::send(Make make, Done done) {
  const HttpRequest request = make();
  const std::string path = file(request.url);
  if (path.empty()) {
    network_->send([request] { return request; }, std::move(done));
    return;
  }
  std::ifstream bytes(path, std::ios::binary);
  HttpAnswer answer;
  answer.status = 200;
  answer.body = std::string(std::istreambuf_iterator<char>(bytes), {});
  done(std::move(answer));
}

std::string LocalPictures::file(const std::string& url) const {
  const std::string path = url.substr(0, url.find_first_of("?#"));
  const std::string name = path.substr(path.find_last_of('/') + 1);
  // Such as ".." must not lead out of the folders.
  if (name.empty() || name.front() == '.') return "";
  for (const auto& folder : folders_) {
    const auto candidate = std::filesystem::path(folder) / name;
    if (std::filesystem::is_regular_file(candidate)) return candidate.string();
  }
  return "";
}

}  // namespace kifo::tool
