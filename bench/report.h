// The table of figures: each beside what it is compared with, measured in the same run.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double Milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// The sample below which the fraction `part` (0..1) of the others lies. Not of an empty series.
double Quantile(std::vector<double> samples, double part);
inline double Median(std::vector<double> samples) {
  return Quantile(std::move(samples), 0.5);
}

class Report {
 public:
  // A figure and its counterpart, both in `unit`; the ratio is left out where the counterpart is
  // 0.
  void Add(const std::string& what, double figure, const std::string& counterpart,
           double counter_figure, const std::string& unit);
  void Print() const;

 private:
  struct Row {
    std::string what, figure, counterpart, counter_figure, ratio;
  };
  std::vector<Row> rows_;
};

}  // namespace bench
