#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/TokenServiceProtocol.h"
#include "Kifo_iOS_Common_Kit/events/KifoViewController.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "tests/support/Common.h"

namespace kifo {

class HomeScreen : public KifoViewController {
 public:
  [[nodiscard]] std::string className() const override { return "HomeScreen"; }
};

/// Does with each question what the test says; by default it never answers.
class ScriptedTokens final : public TokenServiceProtocol {
 public:
  using Answer = std::function<void(Completion)>;

  explicit ScriptedTokens(
      Answer answer = [](const Completion&) {}, double timeout = 0.001)
      : answer_(std::move(answer)) {
    kifoTimeout = timeout;
  }
  void getToken(Completion completion) override { answer_(std::move(completion)); }

 private:
  const Answer answer_;
};

struct Report {
  std::shared_ptr<AppCommunicationItem> item;
  std::shared_ptr<ViewController> controller;
  std::optional<std::string> pageName;
  InAppAnswer answer;
};

/// Keeps what popups report.
class RecordingReporter final : public InAppReporter {
 public:
  void opened(std::shared_ptr<AppCommunicationItem> item,
              std::shared_ptr<ViewController> controller,
              std::optional<std::string> pageName) override {
    openings.push_back({item, controller, pageName, {}});
  }
  void answered(std::shared_ptr<AppCommunicationItem> item, InAppAnswer answer,
                std::shared_ptr<ViewController> controller,
                std::optional<std::string> pageName) override {
    answers.push_back({item, controller, pageName, answer});
  }

  std::vector<Report> openings;
  std::vector<Report> answers;
};

/// A transport that makes its requests later than they are handed over: when the test does.
class LateTransport final : public HttpTransport {
 public:
  void send(Make make, Done) override { kept.push_back(std::move(make)); }
  void networkChanged() override {}
  void stop() override { kept.clear(); }
  std::vector<Make> kept;
};

}  // namespace kifo
