#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"

namespace kifo::tool {

/// Answers requests for pictures from folders, by the last part of their address, so that campaigns
/// can be looked at before their pictures are on a server. What no folder has goes to the network.
///
/// **Threading:** thread-safe.
class LocalPictures final : public HttpTransport {
 public:
  LocalPictures(std::vector<std::string> folders, std::shared_ptr<HttpTransport> network);

  void send(Make make, Done done) override;
  void networkChanged() override { network_->networkChanged(); }
  void cancelOpen() override { network_->cancelOpen(); }
  void stop() override { network_->stop(); }

 private:
  [[nodiscard]] std::string file(const std::string& url) const;

  const std::vector<std::string> folders_;
  const std::shared_ptr<HttpTransport> network_;
};

}  // namespace kifo::tool
