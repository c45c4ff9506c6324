#include "apps/kifo/preview/PreviewCommand.h"

#include <map>
#include <memory>

#include "apps/kifo/ToolkitOption.h"
#include "apps/kifo/preview/PreviewOptions.h"

namespace kifo::tool {
namespace {

constexpr auto kFooter =
    "FILE is an answer as the server sends it, or one campaign of it. Without --out and --gallery\n"
    "the popup opens in a window. Pictures are taken from folders \"images\" beside the file or "
    "one\n"
    "level up where they hold one of that name, else from the network. A campaign that cannot be\n"
    "decoded, or would not be shown, is explained; the exit status is then 1.\n\n"
    "  kifo preview samples/campaigns/02-coupon.json\n"
    "  kifo preview answer.json --out popup.png --width 360 --height 640 --scale 2 --theme dark\n"
    "  kifo preview samples/campaigns --gallery /tmp/gallery";

}  // namespace

void addPreviewCommand(CLI::App& program, int& status) {
  const auto options = std::make_shared<PreviewOptions>();
  Look& look = options->look;
  const std::map<std::string, Theme> themes{{"light", Theme::light}, {"dark", Theme::dark}};
  const std::map<std::string, Direction> directions{{"auto", Direction::automatic},
                                                    {"ltr", Direction::leftToRight},
                                                    {"rtl", Direction::rightToLeft}};
  CLI::App* command = program.add_subcommand("preview", "A campaign as the SDK shows it");
  command->add_option("FILE", options->file, "Campaigns as JSON; - reads standard input")
      ->required();
  auto* out = command->add_option("--out", options->out, "Writes a PNG");
  command
      ->add_option("--gallery", options->gallery,
                   "Writes every campaign in every size, theme and direction, with an index.html")
      ->excludes(out);
  addToolkitOption(*command, options->toolkit);
  command->add_option("--item", options->item, "The N-th campaign of the file alone")
      ->check(CLI::PositiveNumber);
  command->add_option("--images", options->pictures, "Another folder with pictures");
  auto* width = command->add_option("--width", look.width, "Of the window, in logical pixels")
                    ->check(CLI::Range(160, 4096))
                    ->capture_default_str();
  auto* height = command->add_option("--height", look.height, "Of the window")
                     ->check(CLI::Range(160, 4096))
                     ->capture_default_str();
  command->add_option("--scale", look.scale, "Physical pixels in a logical one")
      ->check(CLI::Range(0.5, 4.0))
      ->capture_default_str();
  command->add_option("--font-size", look.fontSize, "Times the usual size, 1 to 2")
      ->check(CLI::Range(1.0, 2.0))
      ->capture_default_str();
  command->add_option("--theme", look.theme, "light or dark")
      ->transform(CLI::CheckedTransformer(themes));
  command->add_option("--direction", look.direction, "auto, ltr or rtl")
      ->transform(CLI::CheckedTransformer(directions));
  command->footer(kFooter);
  command->callback([options, &status, width, height] {
    options->hasSize = width->count() + height->count() > 0;
    status = runPreview(*options);
  });
}

}  // namespace kifo::tool
