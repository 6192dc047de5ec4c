#include "bench/report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace bench {
namespace {

std::string Number(double value) {
  const double size = std::abs(value);
  const int decimals = size >= 1000 ? 0 : size >= 100 ? 1 : size >= 10 ? 2 : size >= 0.01 ? 3 : 5;
  char text[40];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

}  // namespace

double Quantile(std::vector<double> samples, double part) {
  std::ranges::sort(samples);
  return samples[static_cast<std::size_t>(part * static_cast<double>(samples.size() - 1))];
}

void Report::Add(const std::string& what, double figure, const std::string& counterpart,
                 double counter_figure, const std::string& unit) {
  const auto with_unit = [&](double value) { return Number(value) + " " + unit; };
  // A ratio to a value close to 0 has no meaning.
  const bool comparable = std::abs(counter_figure) >= 0.0005;
  rows_.push_back({what, with_unit(figure), counterpart, with_unit(counter_figure),
                   comparable ? Number(figure / counter_figure) : "-"});
}

void Report::Print() const {
  std::vector<Row> rows = {{"", "figure", "compared with", "figure", "ratio"}};
  rows.insert(rows.end(), rows_.begin(), rows_.end());
  const auto width = [&](std::string Row::*column) {
    std::size_t widest = 0;
    for (const Row& row : rows) widest = std::max(widest, (row.*column).size());
    return static_cast<int>(widest);
  };
  for (const Row& row : rows) {
    std::printf("%-*s  %*s  %-*s  %*s  %*s\n", width(&Row::what), row.what.c_str(),
                width(&Row::figure), row.figure.c_str(), width(&Row::counterpart),
                row.counterpart.c_str(), width(&Row::counter_figure), row.counter_figure.c_str(),
                width(&Row::ratio), row.ratio.c_str());
  }
}

}  // namespace bench
