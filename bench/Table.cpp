#include "bench/Table.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace kifo::bench {
namespace {

bool asJson = false;
std::string currentSection;

}  // namespace

void Samples::add(const Samples& others) {
  values_.insert(values_.end(), others.values_.begin(), others.values_.end());
}

double Samples::quantile(double share) const {
  if (values_.empty()) return 0.0;
  const auto index = std::min(
      values_.size() - 1, static_cast<std::size_t>(share * static_cast<double>(values_.size())));
  std::nth_element(values_.begin(), values_.begin() + static_cast<std::ptrdiff_t>(index),
                   values_.end());
  return values_[index];
}

void printJson() {
  asJson = true;
}

void section(const std::string& title) {
  currentSection = title;
  if (!asJson) std::printf("\n%s\n", title.c_str());
}

void row(const std::string& what, const std::string& figure, const std::string& beside,
         const std::vector<Compared>& compared) {
  if (asJson) {
    nlohmann::json line = {{"section", currentSection},
                           {"row", what.substr(what.find_first_not_of(' '))},
                           {"figure", figure},
                           {"beside", beside},
                           {"compared", nlohmann::json::array()}};
    for (const auto& each : compared) {
      const bool isLower = each.better == Compared::Better::lower;
      line["compared"].push_back(
          {{"name", each.name}, {"value", each.value}, {"better", isLower ? "lower" : "higher"}});
    }
    std::printf("%s\n", line.dump().c_str());
  } else {
    std::printf("  %-58s %-26s %s\n", what.c_str(), figure.c_str(), beside.c_str());
  }
  std::fflush(stdout);
}

std::string microseconds(double value) {
  char text[32];
  std::snprintf(text, sizeof text, value < 100 ? "%.1f µs" : "%.0f µs", value);
  return text;
}

std::string perSecond(double rate) {
  char text[32];
  std::snprintf(text, sizeof text, rate < 100 ? "%.2f a second" : "%.0f a second", rate);
  return text;
}

std::string ratio(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", value);
  return text;
}

}  // namespace kifo::bench
