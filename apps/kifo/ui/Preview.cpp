// kifo preview, in a build with popups.
#include <QApplication>
#include <filesystem>
#include <iostream>

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "apps/kifo/preview/CampaignFile.h"
#include "apps/kifo/preview/Judgement.h"
#include "apps/kifo/preview/LocalPictures.h"
#include "apps/kifo/preview/PreviewOptions.h"
#include "apps/kifo/ui/Display.h"
#include "apps/kifo/ui/Gallery.h"
#include "apps/kifo/ui/PopupPicture.h"
#include "apps/kifo/ui/PreviewWindow.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/qt/QtPasteboard.h"

namespace kifo::tool {
namespace {

/// The system's services for a preview: nothing is stored, and pictures may come from a folder.
void install(const std::string& folder, const PreviewOptions& options) {
  const Platform null = nullPlatform();
  Platform platform = makeLinuxPlatform({.documentsDirectory = "/nonexistent"});
  platform.userDefaults = null.userDefaults;
  platform.console = null.console;
  platform.notifications = null.notifications;
  platform.pasteboard = std::make_shared<QtPasteboard>();
  std::vector<std::string> folders{folder + "/images", folder + "/../images"};
  if (!options.pictures.empty()) folders.insert(folders.begin(), options.pictures);
  platform.http = std::make_shared<LocalPictures>(folders, platform.http);
  Platform::install(std::move(platform));
}

/// Ends the platform's threads before the program's own things go.
struct StoppedAtEnd {
  ~StoppedAtEnd() {
    const auto platform = Platform::current();
    platform->http->stop();
    for (const auto& queue : {platform->answerQueue, platform->mainQueue}) {
      queue->stop(SerialQueue::Duration(1.0));
    }
    Platform::install(nullPlatform());
  }
};

std::string titleOf(const AppCommunicationItem& item) {
  if (item.name && !item.name->empty()) return *item.name;
  if (item.header && item.header->text) return *item.header->text;
  return item.uuid.value_or("without a name");
}

/// The campaigns that are asked for, each with what the SDK says of it. A file that holds none is
/// an entry as well.
std::vector<GalleryEntry> entriesOf(const PreviewOptions& options) {
  std::vector<GalleryEntry> entries;
  for (const auto& path : CampaignFile::filesIn(options.file)) {
    try {
      const auto file = CampaignFile::read(path);
      const bool isAlone = file.campaigns.size() == 1;
      int number = 0;
      for (const auto& campaign : file.campaigns) {
        ++number;
        if (options.item && *options.item != number) continue;
        auto judgement = judge(*campaign);
        entries.push_back({file.name + (isAlone ? "" : "-" + std::to_string(number)),
                           titleOf(*campaign), judgement.request, judgement.reason,
                           judgement.notes});
      }
    } catch (const NoCampaigns& problem) {
      entries.push_back(
          {std::filesystem::path(path).stem().string(), "", nullptr, problem.what(), {}});
    }
  }
  return entries;
}

/// Says what is wrong; whether all is well.
bool explain(const std::vector<GalleryEntry>& entries) {
  bool isWell = !entries.empty();
  if (entries.empty()) std::cerr << "kifo preview: there is no campaign in it\n";
  for (const auto& entry : entries) {
    const std::string name = entry.file + (entry.title.empty() ? "" : " (" + entry.title + ")");
    for (const auto& note : entry.notes) std::cerr << name << ": " << note << '\n';
    if (entry.request) continue;
    isWell = false;
    std::cerr << name << ": would not be shown: " << entry.reason << '\n';
  }
  return isWell;
}

/// "popup.png", and "popup-2.png" for the second of several.
std::string numbered(const std::string& path, std::size_t number) {
  const std::filesystem::path whole(path);
  if (number == 1) return path;
  return (whole.parent_path() /
          (whole.stem().string() + "-" + std::to_string(number) + whole.extension().string()))
      .string();
}

bool writePictures(const std::vector<GalleryEntry>& entries, const PreviewOptions& options) {
  PopupPicture picture(options.toolkit);
  std::size_t number = 0;
  for (const auto& entry : entries) {
    if (!entry.request) continue;
    const std::string path = numbered(options.out, ++number);
    if (!picture.of(entry.request, options.look).save(QString::fromStdString(path))) {
      std::cerr << "kifo preview: " << path << " cannot be written\n";
      return false;
    }
    std::cout << path << '\n';
  }
  return true;
}

void openWindow(const std::vector<GalleryEntry>& entries, const PreviewOptions& options) {
  std::vector<std::shared_ptr<const PopupRequest>> requests;
  for (const auto& entry : entries) {
    if (entry.request) requests.push_back(entry.request);
  }
  if (!requests.empty()) runPreviewWindow(requests, options.look, options.toolkit);
}

}  // namespace

int runPreview(const PreviewOptions& options) {
  const bool hasWindow = options.out.empty() && options.gallery.empty();
  // A scene has the scale of its platform.
  if (options.toolkit == Toolkit::quick && options.look.scale != 1.0) {
    qputenv("QT_SCALE_FACTOR", QByteArray::number(options.look.scale));
  }
  const Display display("kifo", hasWindow);
  const bool isFolder = std::filesystem::is_directory(options.file);
  install(isFolder ? options.file : std::filesystem::path(options.file).parent_path().string(),
          options);
  const StoppedAtEnd stopped;
  const auto entries = entriesOf(options);
  bool isWell = explain(entries);
  if (hasWindow && QApplication::platformName() == "offscreen") {
    std::cerr << "kifo preview: there is no display for a window; --out writes a picture\n";
    return 1;
  }
  if (!options.gallery.empty()) {
    writeGallery(options.gallery, entries, options.look, options.hasSize, options.toolkit);
    std::cout << options.gallery << "/index.html\n";
  } else if (!options.out.empty()) {
    isWell = writePictures(entries, options) && isWell;
  } else {
    openWindow(entries, options);
  }
  return isWell ? 0 : 1;
}

}  // namespace kifo::tool
