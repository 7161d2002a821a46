// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/known_failures.h"

namespace tallow {
namespace {

template <typename Key>
void SetIn(std::unordered_map<Key, std::string>& reasons, const Key& key,
           const std::string& reason) {
  if (reason.empty())
    reasons.erase(key);
  else
    reasons[key] = reason;
}

template <typename Key>
std::string ReasonIn(const std::unordered_map<Key, std::string>& reasons, const Key& key) {
  const auto found = reasons.find(key);
  return found == reasons.end() ? std::string() : found->second;
}

}  // namespace

void KnownFailures::Set(std::uint64_t entry, const std::string& path, const std::string& reason) {
  SetIn(by_entry_, entry, reason);
  if (!path.empty()) SetIn(by_path_, path, reason);
}

std::string KnownFailures::OfPath(const std::string& path) const {
  return ReasonIn(by_path_, path);
}

std::string KnownFailures::OfEntry(std::uint64_t entry) const { return ReasonIn(by_entry_, entry); }

}  // namespace tallow
