#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QImage>
#include <QObject>
#include <QSize>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Fetches campaigns' pictures through the platform's HTTP transport and decodes them away from the
/// UI thread. A URL is fetched once for the loader's life, however often it is asked for.
///
/// **Threading:** UI thread only; `done` is called there, never from within `load`.
/// **Ownership:** deleting the loader, or the `context` of a call, drops the calls that wait.
/// **Errors:** quiet: a null image for a URL that is neither http nor https, an answer that does
/// not come, more than 10 MB, and whatever `decodeImage` refuses.
class KIFO_SHARED ImageLoader : public QObject {
  Q_OBJECT

 public:
  using Done = std::function<void(const QImage& image)>;

  /// Pictures are decoded no larger than `bounds`, in physical pixels.
  explicit ImageLoader(QSize bounds);
  ~ImageLoader() override;

  void load(const std::string& url, QObject* context, Done done);

  /// A picture that has come already; null otherwise.
  [[nodiscard]] QImage kept(const std::string& url) const;

  /// Whether `text` parses as a URL at all, of whatever scheme.
  [[nodiscard]] static bool isUrl(const std::string& text);

 private:
  struct Memory;
  struct Inbox;

  void fetch(const std::string& url);
  void arrived(const std::string& url, const QImage& image);

  const QSize bounds_;
  const std::unique_ptr<Memory> memory_;
  const std::shared_ptr<Inbox> inbox_;
};

}  // namespace kifo
