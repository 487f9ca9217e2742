#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tsv::bench {

// A benchmark whose repetitions are each so many postings.
template <typename Body>
void RegisterPostings(const std::string& name, int iterations, int repetitions, Body body) {
  benchmark::RegisterBenchmark(name.c_str(), std::move(body))
      ->Iterations(iterations)
      ->Repetitions(repetitions)
      ->ReportAggregatesOnly(false)
      ->UseRealTime()
      ->Unit(benchmark::kMicrosecond);
}

// Keeps the median of each benchmark beside showing it.
class Medians : public benchmark::ConsoleReporter {
 public:
  // Repetitions of all benchmarks take turns, so that a machine that slows down for a while slows all alike.
  static void Initialize(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    std::string takeTurns = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, takeTurns.data());
    int count = argc + 1;
    benchmark::Initialize(&count, arguments.data());
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    std::vector<Run> aggregates;
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      times_[run.run_name.function_name] = run.GetAdjustedRealTime();
      aggregates.push_back(run);
    }
    ConsoleReporter::ReportRuns(aggregates);
  }

  void Ratio(const char* what, const std::string& numerator, const std::string& denominator) const {
    if (!times_.contains(numerator) || !times_.contains(denominator)) return;
    std::printf("%-72s %8.3f\n", what, times_.at(numerator) / times_.at(denominator));
  }

 private:
  std::map<std::string, double> times_;
};

}  // namespace tsv::bench
