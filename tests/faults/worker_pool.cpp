// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/faults/worker_pool.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace tallow {
namespace {

using nlohmann::json;

/// Runs every `jobs`-th case, starting with case `worker`. Ends the process.
[[noreturn]] void Work(const std::string& results, std::size_t cases, std::size_t jobs,
                       std::size_t worker, const std::function<DoCase(std::size_t)>& begin) {
  try {
    std::ofstream file(results);
    const DoCase act = begin(worker);
    for (std::size_t number = worker; number < cases; number += jobs)
      file << act(number).dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    _exit(1);
  }
  _exit(0);
}

}  // namespace

std::vector<json> DoCases(const std::string& folder, std::size_t cases, std::size_t jobs,
                          const std::function<DoCase(std::size_t worker)>& begin) {
  const auto results_of = [&](std::size_t worker) {
    return folder + "results-" + std::to_string(worker);
  };
  std::fflush(nullptr);
  std::vector<pid_t> workers;
  for (std::size_t worker = 0; worker < jobs; ++worker) {
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process can be made");
    if (child == 0) Work(results_of(worker), cases, jobs, worker, begin);
    workers.push_back(child);
  }
  bool whole = true;
  for (const pid_t worker : workers) {
    int status = 0;
    waitpid(worker, &status, 0);
    whole = whole && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  if (!whole) throw std::runtime_error("not all cases were done");
  std::vector<json> done(cases);
  for (std::size_t worker = 0; worker < jobs; ++worker) {
    std::ifstream file(results_of(worker));
    std::string line;
    for (std::size_t number = worker; number < cases; number += jobs) {
      if (!std::getline(file, line)) throw std::runtime_error("the result of a case is missing");
      done[number] = json::parse(line);
    }
  }
  return done;
}

}  // namespace tallow
