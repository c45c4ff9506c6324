#include "Kifo_iOS_Common_Kit/storage/ConsentFiles.h"

#include <filesystem>
#include <utility>

namespace kifo {
namespace {

std::string in(const std::string& directory, const char* name) {
  return (std::filesystem::path(directory) / name).string();
}

}  // namespace

ConsentFiles::ConsentFiles(std::shared_ptr<StoreFiles> files, const std::string& directory)
    : files_(std::move(files)),
      given_(in(directory, "consent.given")),
      refused_(in(directory, "consent.refused")),
      erasing_(in(directory, "consent.erasing")) {}

ConsentStatus ConsentFiles::choice() const {
  if (files_->exists(given_)) return ConsentStatus::GIVEN;
  return files_->exists(refused_) || isErasing() ? ConsentStatus::REFUSED : ConsentStatus::UNKNOWN;
}

bool ConsentFiles::isErasing() const {
  return files_->exists(erasing_);
}

bool ConsentFiles::replace(const std::string& from, const std::string& to) {
  if (files_->exists(from)) return !files_->move(from, to, /*replaces=*/true);
  files_->makeDirectories(to);
  return files_->makePrivate(to);
}

bool ConsentFiles::give() {
  return replace(refused_, given_);
}

bool ConsentFiles::refuse() {
  return replace(files_->exists(refused_) ? refused_ : given_, erasing_);
}

bool ConsentFiles::endErasing() {
  if (!files_->exists(given_)) return replace(erasing_, refused_);
  return !files_->remove(erasing_);
}

}  // namespace kifo
