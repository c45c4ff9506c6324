#pragma once

#include <QObject>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/qt/UiLink.h"
#include "platform/qt/desktop/BackgroundWorker.h"
#include "platform/qt/desktop/DesktopNotificationLedger.h"

namespace kifo {

/// Loads the pictures of pushes, four at a time, and says when each push can be shown: with its
/// picture, or first without it where the picture is late.
///
/// | a push | what happens | what is sent |
/// |---|---|---|
/// | waits, or loads | its picture is there, or cannot be had | `ready`; the push is forgotten |
/// | waits, or loads | its picture is late | `ready`, without the picture |
/// | is shown without it | its picture is there | `pictureReady`; the push is forgotten |
/// | any | `cancel`, or a later push of its identifier | nothing; the push is forgotten |
///
/// **Threading:** UI thread only; pictures are loaded on other threads.
class PushPictures : public QObject {
  Q_OBJECT

 public:
  /// `grace`: milliseconds that a push waits for its picture.
  explicit PushPictures(int grace);
  ~PushPictures() override;

  /// Takes a push that has a picture.
  void add(DesktopNotification notification, const std::string& imageUrl);
  /// Forgets the push of that identifier. Its picture, if it loads already, is dropped.
  void cancel(const std::string& identifier);

 Q_SIGNALS:
  void ready(const kifo::DesktopNotification& notification);
  void pictureReady(const kifo::DesktopNotification& notification);

 private:
  struct Push {
    std::uint64_t number;
    DesktopNotification notification;
    std::shared_ptr<std::atomic<bool>> cancelled;  ///< Read by the thread that would load it.
    bool shown = false;                            ///< Without its picture.
  };
  using Pushes = std::vector<Push>;

  [[nodiscard]] Pushes::iterator find(std::uint64_t number);
  void late(std::uint64_t number);
  void loaded(std::uint64_t number, std::shared_ptr<const NotificationContent> content);

  const int grace_;
  const std::shared_ptr<UiLink<PushPictures>> link_;
  BackgroundWorker loaders_;
  std::uint64_t lastNumber_ = 0;
  Pushes pushes_;
};

}  // namespace kifo
