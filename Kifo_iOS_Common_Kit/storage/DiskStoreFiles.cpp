#include "Kifo_iOS_Common_Kit/storage/DiskStoreFiles.h"

#include <filesystem>
#include <fstream>
#include <utility>

namespace kifo {
namespace {

namespace fs = std::filesystem;

std::optional<Error> errorOf(const std::error_code& code) {
  if (!code) return std::nullopt;
  return Error{"file", code.value(), code.message()};
}

void makeDirectory(const fs::path& directory) {
  std::error_code error;
  if (directory.empty() || fs::exists(directory, error)) return;
  makeDirectory(directory.parent_path());
  if (fs::create_directory(directory, error)) {
    fs::permissions(directory, fs::perms::owner_all, error);
  }
}

/// Moves a file, but never onto one that exists.
std::error_code moveBeside(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::create_hard_link(from, to, error);
  if (!error) {
    fs::remove(from, error);
    return error;
  }
  std::error_code unknown;
  const bool isMissing = !fs::exists(from, unknown);
  const bool isTaken = fs::exists(fs::symlink_status(to, unknown));
  // A file system without links.
  if (!isMissing && !isTaken) fs::rename(from, to, error);
  return error;
}

}  // namespace

std::shared_ptr<StoreFiles> DiskStoreFiles::unlessGiven(std::shared_ptr<StoreFiles> files) {
  return files ? std::move(files) : std::make_shared<DiskStoreFiles>();
}

bool DiskStoreFiles::exists(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error);
}

void DiskStoreFiles::makeDirectories(const std::string& path) {
  makeDirectory(fs::path(path).parent_path());
}

bool DiskStoreFiles::makePrivate(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error) && !std::ofstream(path, std::ios::app)) return false;
  // SQLite gives a journal the permissions of its file.
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, error);
  return !error;
}

std::optional<Error> DiskStoreFiles::move(const std::string& from, const std::string& to,
                                          bool replaces) {
  std::error_code error;
  if (!replaces) return errorOf(moveBeside(from, to));
  fs::rename(from, to, error);
  return errorOf(error);
}

std::optional<Error> DiskStoreFiles::remove(const std::string& path) {
  std::error_code error;
  if (!fs::remove(path, error) && !error) {
    error = std::make_error_code(std::errc::no_such_file_or_directory);
  }
  return errorOf(error);
}

}  // namespace kifo
