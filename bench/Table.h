#pragma once

#include <string>
#include <vector>

namespace kifo::bench {

/// Microseconds of many calls.
class Samples {
 public:
  void add(double microseconds) { values_.push_back(microseconds); }
  void add(const Samples& others);
  [[nodiscard]] std::size_t count() const { return values_.size(); }
  /// The value below which `share` (0 to 1) of the samples lie.
  [[nodiscard]] double quantile(double share) const;
  [[nodiscard]] double median() const { return quantile(0.5); }

 private:
  mutable std::vector<double> values_;
};

/// A figure that a later run can be compared with: a ratio to something measured in the same run,
/// or a count or size that does not depend on the machine's load.
struct Compared {
  enum class Better { lower, higher };

  std::string name;  ///< Tells the figures of one row apart.
  double value = 0.0;
  Better better = Better::lower;
};

/// From now on sections and rows are printed as JSON, an object a line: "section", "row", "figure",
/// "beside", and "compared", a list of "name", "value", "better".
void printJson();

/// Prints a section's title.
void section(const std::string& title);
/// Prints one row: what was measured, the figure, and what it is to be held against.
void row(const std::string& what, const std::string& figure, const std::string& beside,
         const std::vector<Compared>& compared = {});

std::string microseconds(double value);
std::string perSecond(double rate);
std::string ratio(double value);

}  // namespace kifo::bench
