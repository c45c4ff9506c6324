#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kifo::bench {

using Benches = std::vector<std::pair<std::string, void (*)()>>;

/// Runs the benches that the command line names, or all, each in a process of its own so that none
/// leaves anything behind for the next; with "--json" among them the rows are printed as JSON.
/// Returns what `main` does: 1 when one of them broke off.
int runBenches(int argc, char** argv, const Benches& benches);

}  // namespace kifo::bench
