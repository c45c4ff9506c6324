#pragma once

#include <QMainWindow>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "bench/popups/WatchedApplication.h"

namespace kifo {
class PopUpWindow;
}

namespace kifo::bench {

class StandScreen;

/// Everything that a popup needs to be shown: an application, a host's window, and the SDK's own
/// presenter on a platform that stores nothing and answers every picture with the same bytes.
class PopupStand {
 public:
  explicit PopupStand(PopUpOptions options = {}, QSize window = {1280, 800});
  ~PopupStand();

  [[nodiscard]] WatchedApplication& application() { return application_; }
  [[nodiscard]] QMainWindow& window() { return *window_; }

  /// How the popups that are shown from now on behave.
  void setOptions(PopUpOptions options);
  /// What the picture's URLs are answered with.
  void setPicture(std::string bytes);

  /// Runs the show operation of the kind.
  void show(PopupType kind, const std::shared_ptr<AppCommunicationItem>& item);
  /// Shows the popup and waits until it has been painted.
  PopUpWindow* open(PopupType kind, const std::shared_ptr<AppCommunicationItem>& item);
  /// Dismisses it and waits until it has deleted itself.
  static void close(PopUpWindow* popup);

  static constexpr PopupType kinds[] = {PopupType::popup, PopupType::survey, PopupType::emoji,
                                        PopupType::score, PopupType::openEnded};
  /// A campaign of the kind as a server sends it, with all that its kind can show but pictures.
  static std::shared_ptr<AppCommunicationItem> campaign(PopupType kind);
  static std::shared_ptr<AppCommunicationItem> campaignWithPicture();
  static std::shared_ptr<AppCommunicationItem> campaignWithCarousel();

 private:
  class Pictures;

  std::shared_ptr<Pictures> pictures_;
  WatchedApplication application_;
  std::unique_ptr<QMainWindow> window_;
  std::shared_ptr<StandScreen> screen_;
  std::unique_ptr<PopupManager> manager_;
};

}  // namespace kifo::bench
