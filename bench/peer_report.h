// Pairs of benchmarks whose times are printed side by side as a ratio after the run.
#ifndef NUMORIX_BENCH_PEER_REPORT_H
#define NUMORIX_BENCH_PEER_REPORT_H

#include <string>

namespace numorix {
namespace bench {

// Declares that benchmark `name` is to be compared with benchmark `peer` (its baseline or
// oracle). Returns true so that it can initialise a namespace-scope constant.
bool ComparePeers(const std::string& name, const std::string& peer, const std::string& target = "");

}  // namespace bench
}  // namespace numorix

#endif  // NUMORIX_BENCH_PEER_REPORT_H
