// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/faults/fault_matrix.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <memory>
#include <signal.h>
#include <stdexcept>
#include <vector>

#include "tests/faults/child_process.h"
#include "tests/faults/fail_call.h"
#include "tests/faults/scenarios.h"
#include "tests/faults/worker_pool.h"

namespace tallow {
namespace {

using nlohmann::json;

/// A way in which a call can fail.
struct Way {
  const char* name;
  int action;
  FaultReach reach;
};

constexpr std::array<Way, 10> kWays = {{{"ENOSPC", ENOSPC, FaultReach::kOneCall},
                                        {"EIO", EIO, FaultReach::kOneCall},
                                        {"EINTR", EINTR, FaultReach::kOneCall},
                                        {"EMFILE", EMFILE, FaultReach::kOneCall},
                                        {"EACCES", EACCES, FaultReach::kOneCall},
                                        {"short", kShorten, FaultReach::kOneCall},
                                        {"killed", kKillProcess, FaultReach::kOneCall},
                                        {"half", kKillHalfway, FaultReach::kOneCall},
                                        {"EIO on", EIO, FaultReach::kPath},
                                        {"full", ENOSPC, FaultReach::kWrites}}};

bool IsPossible(const Way& way, SystemCall call) {
  if (way.action == kShorten) return call == SystemCall::kRead || call == SystemCall::kWrite;
  if (way.action == kKillHalfway) return call == SystemCall::kWrite;
  if (way.reach != FaultReach::kWrites) return true;
  return call == SystemCall::kWrite || call == SystemCall::kSync || call == SystemCall::kRename ||
         call == SystemCall::kMakeFolder;
}

/// A call of a scenario that fails in one way.
struct Case {
  std::size_t scenario;
  SystemCall call;
  std::string path;
  int occurrence;
  std::size_t way;
};

std::string NameOf(const Case& one, const std::vector<Scenario>& scenarios) {
  return scenarios[one.scenario].name + ": " +
         std::string(kSystemCalls[static_cast<std::size_t>(one.call)]) + " " + one.path + " #" +
         std::to_string(one.occurrence) + " " + kWays[one.way].name;
}

template <typename Function>
Function Loaded(const char* name) {
  const auto function = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
  if (function == nullptr)
    throw std::runtime_error("fail_call is not loaded: set LD_PRELOAD to its library");
  return function;
}

/// A scenario in its own world, with the state before it and the expected state after it.
class Stage {
 public:
  Stage(const World& world, const Scenario& scenario) : world_(world), scenario_(scenario) {
    world_.Restore({});
    Demand("preparation", RunInChild([&] {
             scenario_.prepare(world_);
             return std::string();
           }));
    files_ = world_.Save();
    old_ = Find();
    world_.Restore(files_);
    const ChildEnd end = RunInChild([&] { return Act([] {}); });
    Demand("scenario without faults", end);
    new_ = Find();
  }

  /// Records the calls of the scenario, in their order.
  std::vector<std::pair<SystemCall, std::string>> Calls(const std::string& record) const {
    world_.Restore(files_);
    Demand(
        "recording", RunInChild([&] {
          const int file = open(record.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
          return Act([&] { Loaded<RecordCalls>(kRecordCallsName)(world_.root().c_str(), file); });
        }));
    std::vector<std::pair<SystemCall, std::string>> calls;
    std::ifstream lines(record);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t blank = line.find(' ');
      const auto* const name =
          std::find(kSystemCalls.begin(), kSystemCalls.end(), line.substr(0, blank));
      calls.emplace_back(static_cast<SystemCall>(name - kSystemCalls.begin()),
                         line.substr(blank + 1));
    }
    return calls;
  }

  /// Runs the scenario with a fault, and checks the state that the next start finds.
  /// \returns the differences from the expected state, one per line
  std::vector<std::string> Run(const Case& one, bool& has_come) const {
    world_.Restore(files_);
    const Way& way = kWays[one.way];
    const Fault fault{one.call, one.path.c_str(), one.occurrence, way.action, way.reach};
    const ChildEnd end = RunInChild([&] {
      return Act([&] { Loaded<FailCall>(kFailCallName)(world_.root().c_str(), fault); });
    });
    const bool was_killed = end.kind == ChildEnd::Kind::kSignal && end.signal == SIGKILL &&
                            (way.action == kKillProcess || way.action == kKillHalfway);
    std::vector<std::string> wrong;
    if (!end.IsDone() && !was_killed) wrong.push_back("while it fails: " + end.Words());
    const json said = end.IsDone() ? json::parse(end.text) : json();
    has_come = !end.IsDone() || said.at("has come").get<bool>();
    const bool may_be_old = !end.IsDone() || !said.at("said").empty();
    json found;
    try {
      found = Find();
    } catch (const std::exception& error) {
      wrong.push_back(error.what());
      return wrong;
    }
    for (const auto& [name, part] : found.items()) {
      const bool is_new = part == new_.at(name);
      const bool is_old = part == old_.at(name);
      if (is_new || (is_old && may_be_old)) continue;
      wrong.push_back(
          name + (is_old ? ": neither done nor said" : ": " + Difference(new_.at(name), part)));
    }
    return wrong;
  }

 private:
  std::string Act(const std::function<void()>& from_here) const {
    const std::vector<std::string> said = scenario_.act(world_, from_here);
    const bool has_come = Loaded<EndFaults>(kEndFaultsName)();
    return json{{"said", said}, {"has come", has_come}}.dump(-1, ' ', false,
                                                             json::error_handler_t::replace);
  }

  json Find() const {
    const ChildEnd end = RunInChild([&] {
      return FindBelongings(world_,
                            [&] {
                              if (scenario_.put_back) scenario_.put_back(world_);
                            })
          .dump();
    });
    Demand("next start", end);
    return json::parse(end.text);
  }

  void Demand(const std::string& what, const ChildEnd& end) const {
    if (!end.IsDone()) throw std::runtime_error(scenario_.name + ": " + what + ": " + end.Words());
  }

  static std::string Difference(const json& expected, const json& found) {
    constexpr std::size_t kMaxShown = 300;
    return json::diff(expected, found).dump().substr(0, kMaxShown);
  }

  const World& world_;
  const Scenario& scenario_;
  SavedFiles files_;
  json old_;
  json new_;
};

/// The scenarios in the world of one worker, prepared on first use.
class Stages {
 public:
  Stages(const std::string& root, const std::vector<Scenario>& scenarios)
      : world_(root), scenarios_(scenarios) {}

  json Run(const Case& one) {
    const auto stage = stages_.try_emplace(one.scenario, world_, scenarios_[one.scenario]).first;
    bool has_come = false;
    const std::vector<std::string> wrong = stage->second.Run(one, has_come);
    return {{"has come", has_come}, {"wrong", wrong}};
  }

 private:
  World world_;
  const std::vector<Scenario>& scenarios_;
  std::map<std::size_t, Stage> stages_;
};

/// Number of cases, and of cases with a loss.
struct Count {
  int cases = 0;
  int losses = 0;

  std::string Text() const {
    if (cases == 0) return "";
    return std::to_string(cases) + (losses > 0 ? " (" + std::to_string(losses) + ")" : "");
  }
};

void PrintTable(const std::map<std::string, std::map<std::string, Count>>& rows,
                const std::vector<std::string>& order, const std::string& title, bool markdown) {
  std::vector<std::string> columns;
  for (const Way& way : kWays) columns.emplace_back(way.name);
  columns.emplace_back("all");
  const char* const bar = markdown ? " |" : "";
  std::printf("\n%s%-44s%s", markdown ? "| " : "", title.c_str(), bar);
  for (const std::string& column : columns) std::printf(" %10s%s", column.c_str(), bar);
  std::printf("\n");
  if (markdown) {
    std::printf("|---|");
    for (std::size_t k = 0; k < columns.size(); ++k) std::printf("---:|");
    std::printf("\n");
  }
  for (const std::string& name : order) {
    std::printf("%s%-44s%s", markdown ? "| " : "", name.c_str(), bar);
    for (const std::string& column : columns) {
      const auto& counts = rows.at(name);
      const auto found = counts.find(column);
      std::printf(" %10s%s", found == counts.end() ? "" : found->second.Text().c_str(), bar);
    }
    std::printf("\n");
  }
}

/// All calls of all scenarios, in every way that each can fail.
std::vector<Case> AllCases(const std::string& folder, const std::vector<Scenario>& scenarios,
                           const MatrixChoice& choice) {
  std::vector<Case> cases;
  const World world(folder + "world-0/");
  for (std::size_t number = 0; number < scenarios.size(); ++number) {
    if (!choice.scenario.empty() && scenarios[number].name != choice.scenario) continue;
    const auto calls = Stage(world, scenarios[number]).Calls(folder + "calls");
    // A fail_call library that is not loaded or not called would fail nothing.
    if (calls.size() < 4)
      throw std::runtime_error(scenarios[number].name + " makes no calls that are counted");
    std::map<std::pair<SystemCall, std::string>, int> seen;
    for (const auto& call : calls) {
      const int occurrence = ++seen[call];
      for (std::size_t way = 0; way < kWays.size(); ++way)
        if (IsPossible(kWays[way], call.first))
          cases.push_back({number, call.first, call.second, occurrence, way});
    }
  }
  world.Restore({});
  return cases;
}

}  // namespace

bool RunFaultMatrix(const std::string& folder, const MatrixChoice& choice) {
  const std::vector<Scenario> scenarios = AllScenarios();
  std::vector<Case> cases;
  {
    const std::vector<Case> all = AllCases(folder, scenarios, choice);
    const auto every = static_cast<std::size_t>(std::max(choice.every, 1));
    for (std::size_t k = 0; k < all.size(); ++k)
      if (k % every == every / 2 &&
          (choice.of_case.empty() ||
           NameOf(all[k], scenarios).find(choice.of_case) != std::string::npos))
        cases.push_back(all[k]);
    std::printf("%zu of %zu cases\n", cases.size(), all.size());
  }
  const auto jobs = static_cast<std::size_t>(std::max(choice.jobs, 1));
  const std::vector<json> results = DoCases(folder, cases.size(), jobs, [&](std::size_t worker) {
    const auto stages =
        std::make_shared<Stages>(folder + "world-" + std::to_string(worker) + "/", scenarios);
    return [stages, &cases](std::size_t number) { return stages->Run(cases[number]); };
  });

  std::map<std::string, std::map<std::string, Count>> rows;
  std::map<std::string, std::map<std::string, Count>> sums;
  std::map<std::string, std::map<std::string, Count>> calls;
  std::vector<std::string> order;
  std::vector<std::string> names;
  int losses = 0;
  int missed = 0;
  for (std::size_t number = 0; number < cases.size(); ++number) {
    const Case& one = cases[number];
    const std::vector<std::string> wrongs = results[number].at("wrong");
    const bool has_come = results[number].at("has come");
    const std::string& scenario = scenarios[one.scenario].name;
    const std::string row =
        scenario + ": " + std::string(kSystemCalls[static_cast<std::size_t>(one.call)]);
    if (!rows.contains(row)) order.push_back(row);
    if (!sums.contains(scenario)) names.push_back(scenario);
    const bool lost = !wrongs.empty();
    losses += lost ? 1 : 0;
    missed += has_come ? 0 : 1;
    auto& of_call = calls[std::string(kSystemCalls[static_cast<std::size_t>(one.call)])];
    for (auto* const table : {&rows[row], &sums[scenario], &sums["all"], &of_call})
      for (const char* const column : {kWays[one.way].name, "all"}) {
        Count& count = (*table)[column];
        ++count.cases;
        count.losses += lost ? 1 : 0;
      }
    if (lost) std::printf("LOST  %s\n", NameOf(one, scenarios).c_str());
    for (const std::string& wrong : wrongs) std::printf("      %s\n", wrong.c_str());
    if (!has_come) std::printf("NOT REACHED  %s\n", NameOf(one, scenarios).c_str());
  }
  std::sort(order.begin(), order.end());
  if (!choice.markdown) PrintTable(rows, order, "scenario: call, cases (losses)", false);
  names.emplace_back("all");
  PrintTable(sums, names, "scenario, cases (losses)", choice.markdown);
  std::vector<std::string> call_names;
  for (const auto& call : calls) call_names.push_back(call.first);
  PrintTable(calls, call_names, "call, cases (losses)", choice.markdown);
  std::printf("\n%zu cases, %d with a loss, %d whose call did not come\n", results.size(), losses,
              missed);
  return losses == 0 && missed == 0 && !results.empty();
}

}  // namespace tallow
