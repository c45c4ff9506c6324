#pragma once

#include <memory>
#include <optional>

#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/PositionSource.h"

class QGeoPositionInfoSource;
class QObject;

namespace kifo {

/// The position that Qt Positioning knows. It is passive: it starts no updates and asks for no
/// permission. A host that uses the position itself hands over its own source:
///
///     auto* source = QGeoPositionInfoSource::createDefaultSource(&application);
///     source->startUpdates();
///     platform.position = std::make_shared<kifo::QtPositionSource>(source);
///
/// | what the source said last | permission |
/// |---|---|
/// | nothing | 0, not determined |
/// | a position | 4, authorized when in use |
/// | that access is refused | 2, denied |
///
/// **Threading:** made on the UI thread, with a QGuiApplication running; afterwards thread-safe and
/// never waits. Made elsewhere it knows nothing.
/// **Ownership:** the source stays the host's and may go at any time; its last position stays.
/// **Errors:** a failure other than refused access leaves what is known as it was.
class KIFO_EXPORT QtPositionSource final : public PositionSource {
 public:
  /// Reads the system's default source for its last known position. The source is made when the
  /// first question is asked; that question is answered as if nothing were known.
  QtPositionSource();
  explicit QtPositionSource(QGeoPositionInfoSource* source);
  ~QtPositionSource() override;
  QtPositionSource(const QtPositionSource&) = delete;
  QtPositionSource& operator=(const QtPositionSource&) = delete;

  [[nodiscard]] int authorizationStatus() const override;
  [[nodiscard]] int applicationState() const override;
  [[nodiscard]] std::optional<Coordinate> location() const override;

 private:
  struct Reading;

  const std::shared_ptr<Reading> reading_;
  QObject* connections_ = nullptr;  ///< Lives, and ends, on the UI thread; null without one.
};

}  // namespace kifo
