#include "apps/kifo/ui/Gallery.h"

#include <unistd.h>

#include <QString>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "apps/kifo/Terminal.h"
#include "apps/kifo/ui/PopupPicture.h"

namespace kifo::tool {
namespace {

constexpr auto kHead = R"(<!doctype html>
<meta charset="utf-8"><meta name="viewport" content="width=device-width">
<title>Campaigns</title>
<style>
  body { font: 15px/1.5 system-ui, sans-serif; margin: 2rem; background: #fafafa; color: #222; }
  h2 { margin: 2.5rem 0 .5rem; font-size: 1.1rem; }
  h2 small { font-weight: normal; color: #777; }
  .row { display: flex; flex-wrap: wrap; gap: 1rem; align-items: flex-end; }
  figure { margin: 0; }
  figcaption { color: #777; font-size: .8rem; }
  img { height: 20rem; border: 1px solid #ddd; border-radius: 6px; display: block; }
  .refused { color: #a33; }
</style>
<h1>Campaigns</h1>
)";

struct Variant {
  Look look;
  std::string name;  ///< Such as "390x844-dark-rtl".
};

std::vector<Variant> variants(const Look& base, bool hasSize) {
  using Size = std::pair<int, int>;
  std::vector<Size> sizes{{320, 568}, {390, 844}, {1024, 768}};
  if (hasSize) sizes = {{base.width, base.height}};
  std::vector<Variant> all;
  for (const auto& [width, height] : sizes) {
    for (const Theme theme : {Theme::light, Theme::dark}) {
      for (const Direction direction : {Direction::leftToRight, Direction::rightToLeft}) {
        Look look = base;
        look.width = width;
        look.height = height;
        look.theme = theme;
        look.direction = direction;
        all.push_back({look, std::to_string(width) + "x" + std::to_string(height) +
                                 (theme == Theme::dark ? "-dark" : "-light") +
                                 (direction == Direction::rightToLeft ? "-rtl" : "-ltr")});
      }
    }
  }
  return all;
}

std::string html(const std::string& text) {
  return QString::fromStdString(text).toHtmlEscaped().toStdString();
}

/// Prints the progress.
class Progress {
 public:
  explicit Progress(std::size_t all) : all_(all) {}
  ~Progress() {
    if (terminal_.isTerminal()) std::cerr << "\r\033[K";
  }

  void step() {
    ++done_;
    if (terminal_.isTerminal()) std::cerr << "\r" << done_ << " of " << all_ << std::flush;
  }

 private:
  const Terminal terminal_{STDERR_FILENO};
  const std::size_t all_;
  std::size_t done_ = 0;
};

class Writer {
 public:
  Writer(std::string folder, std::vector<Variant> variants, std::size_t pictures, Toolkit toolkit)
      : folder_(std::move(folder)),
        variants_(std::move(variants)),
        picture_(toolkit),
        progress_(pictures) {
    std::filesystem::create_directories(folder_);
    index_.open(folder_ + "/index.html");
    index_ << kHead;
  }

  void add(const GalleryEntry& entry) {
    index_ << "<h2>" << html(entry.title) << " <small>" << html(entry.file) << "</small></h2>\n";
    if (!entry.request) index_ << "<p class=refused>Not shown: " << html(entry.reason) << "</p>\n";
    for (const auto& note : entry.notes) index_ << "<p>" << html(note) << "</p>\n";
    if (!entry.request) return;
    index_ << "<div class=row>\n";
    for (const auto& variant : variants_) add(entry, variant);
    index_ << "</div>\n";
  }

  void finish() {
    index_.close();
    if (!index_) throw std::runtime_error(folder_ + "/index.html cannot be written");
  }

 private:
  void add(const GalleryEntry& entry, const Variant& variant) {
    const std::string name = entry.file + "-" + variant.name + ".png";
    const QImage image = picture_.of(entry.request, variant.look);
    if (!image.save(QString::fromStdString(folder_ + "/" + name))) {
      throw std::runtime_error(folder_ + "/" + name + " cannot be written");
    }
    index_ << "<figure><a href=\"" << html(name) << "\"><img loading=lazy src=\"" << html(name)
           << "\" alt=\"" << html(entry.title) << "\"></a><figcaption>" << variant.name
           << "</figcaption></figure>\n";
    progress_.step();
  }

  const std::string folder_;
  const std::vector<Variant> variants_;
  PopupPicture picture_;
  Progress progress_;
  std::ofstream index_;
};

}  // namespace

void writeGallery(const std::string& folder, const std::vector<GalleryEntry>& entries,
                  const Look& base, bool hasSize, Toolkit toolkit) {
  auto all = variants(base, hasSize);
  const auto shown =
      std::ranges::count_if(entries, [](const auto& e) { return e.request != nullptr; });
  Writer writer(folder, all, all.size() * static_cast<std::size_t>(shown), toolkit);
  for (const auto& entry : entries) writer.add(entry);
  writer.finish();
}

}  // namespace kifo::tool
