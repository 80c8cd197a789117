// Runs the registered benchmarks, then prints every declared pair as "figure / peer = ratio".
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "peer_report.h"

namespace numorix {
namespace bench {
namespace {

struct Pair {
    std::string sName;
    std::string sPeer;
    std::string sTarget;
};

std::vector<Pair>& Pairs() {
    static std::vector<Pair> pairs;
    return pairs;
}

// Collects the time per iteration of every run while printing as the console reporter does.
class CollectingReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            m_times[run.benchmark_name()] = run.GetAdjustedRealTime();
            m_units[run.benchmark_name()] = benchmark::GetTimeUnitString(run.time_unit);
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> m_times;
    std::map<std::string, std::string> m_units;
};

}  // namespace

bool ComparePeers(const std::string& name, const std::string& peer, const std::string& target) {
    Pairs().push_back({name, peer, target});
    return true;
}

}  // namespace bench
}  // namespace numorix

int main(int argc, char** argv) {
    using numorix::bench::Pairs;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    numorix::bench::CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    if (Pairs().empty()) return 0;
    std::printf("\n%-44s %14s   %-36s %14s %9s  %s\n", "figure", "time", "peer", "time", "ratio",
                "target");
    for (const auto& pair : Pairs()) {
        auto it = reporter.m_times.find(pair.sName);
        auto jt = reporter.m_times.find(pair.sPeer);
        if (it == reporter.m_times.end() || jt == reporter.m_times.end()) continue;
        std::printf("%-44s %11.3f %-2s   %-36s %11.3f %-2s %9.2f  %s\n", pair.sName.c_str(),
                    it->second, reporter.m_units[pair.sName].c_str(), pair.sPeer.c_str(),
                    jt->second, reporter.m_units[pair.sPeer].c_str(), it->second / jt->second,
                    pair.sTarget.c_str());
    }
    return 0;
}
