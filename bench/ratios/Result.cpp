#include "bench/ratios/Result.h"

#include <algorithm>
#include <deque>
#include <numeric>
#include <random>
#include <stdexcept>

#include "bench/ratios/Worker.h"

namespace Bench {
namespace {

// Throws if two contenders hold different numbers of objects: then one of them did not do the
// work, and its time means nothing. A contender that reports 0 does not count its objects.
void agreementCheck(const Row& row, const std::vector<ContenderResult>& results,
                    std::deque<Worker>& workers) {
  double held = 0;
  for (std::size_t i = 0; i < workers.size(); ++i) {
    const double objects = workers[i].objects();
    if (objects == 0) continue;
    if (held != 0 && objects != held) {
      throw std::runtime_error(row.name + ": " + results[i].name + " holds " +
                               std::to_string(objects) + " objects, others " +
                               std::to_string(held));
    }
    held = objects;
  }
}

// Starts a worker process for each contender and collects its samples. All workers stay alive
// until the row ends, but only the one that takes a sample computes.
std::vector<ContenderResult> contendersRun(const Row& row, U32 rounds, const std::string& only) {
  std::deque<Worker> workers;
  std::vector<ContenderResult> results;
  for (const Contender& contender : row.contenders()) {
    if (!only.empty() && contender.name != only) continue;
    workers.emplace_back(contender);
    results.push_back({contender.name, {}, 0});
  }
  std::vector<std::size_t> order(workers.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::mt19937 random(1);
  for (U32 round = 0; round < rounds; ++round) {
    std::shuffle(order.begin(), order.end(), random);
    for (const std::size_t i : order) results[i].samples.push_back(workers[i].sample());
  }
  for (std::size_t i = 0; i < workers.size(); ++i) results[i].bytes = workers[i].bytes();
  agreementCheck(row, results, workers);
  return results;
}

// One figure for choosing the best peer and for the tables; a goal for time uses ratios().
double figureOf(const ContenderResult& result, Measure measure) {
  return measure == Measure::bytes ? result.bytes : spreadOf(result.samples).median;
}

const ContenderResult& named(const std::vector<ContenderResult>& all, const std::string& name) {
  const auto found = std::ranges::find(all, name, &ContenderResult::name);
  if (found == all.end()) throw std::logic_error("goal names an unknown contender: " + name);
  return *found;
}

// The peer with the smallest figure among those that the goal names.
const ContenderResult& best(const std::vector<ContenderResult>& all, const Goal& goal) {
  const ContenderResult* least = nullptr;
  for (const std::string& name : goal.against) {
    const ContenderResult& one = named(all, name);
    if (!least || figureOf(one, goal.measure) < figureOf(*least, goal.measure)) least = &one;
  }
  return *least;
}

// The ratios of the times within each round.
Spread ratios(const ContenderResult& ours, const ContenderResult& theirs) {
  std::vector<double> all;
  for (std::size_t i = 0; i < ours.samples.size(); ++i) {
    all.push_back(ours.samples[i] / theirs.samples[i]);
  }
  return spreadOf(std::move(all));
}

GoalResult goalResult(const std::vector<ContenderResult>& all, const Goal& goal) {
  const ContenderResult& ours = all.front();
  GoalResult result{goal, "", figureOf(ours, goal.measure), 0, {}};
  if (goal.against.empty()) {
    result.figure = {result.ours, result.ours, result.ours};
    return result;
  }
  const ContenderResult& peer = best(all, goal);
  result.peer = peer.name;
  result.theirs = figureOf(peer, goal.measure);
  const double ratio = result.ours / result.theirs;
  result.figure = goal.measure == Measure::bytes ? Spread{ratio, ratio, ratio} : ratios(ours, peer);
  return result;
}

}  // namespace

Spread spreadOf(std::vector<double> values) {
  if (values.empty()) return {};
  std::ranges::sort(values);
  const auto at = [&values](std::size_t quarter) {
    return values[(values.size() - 1) * quarter / 4];
  };
  return {at(2), at(1), at(3)};
}

RowResult run(const Row& row, U32 rounds, const std::string& only) {
  RowResult result{row, contendersRun(row, rounds, only), {}};
  if (!only.empty()) return result;
  for (const Goal& goal : row.goals) result.goals.push_back(goalResult(result.contenders, goal));
  return result;
}

}  // namespace Bench
