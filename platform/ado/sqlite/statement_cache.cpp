// Prepared statements kept by the shape of their text.
#include "platform/ado/sqlite/statement_cache.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace pelm::ado::sqlite {

StatementLease::StatementLease(std::shared_ptr<Plan> plan, std::unique_ptr<Prepared> prepared)
    : plan_(std::move(plan)), prepared_(std::move(prepared)) {}

StatementLease::~StatementLease() {
  if (prepared_ == nullptr) return;
  if (prepared_->running) sqlite3_reset(prepared_->statement());
  if (prepared_->holds_texts) sqlite3_clear_bindings(prepared_->statement());
  prepared_->running = prepared_->holds_texts = false;
  plan_->keep_idle(std::move(prepared_));
}

std::shared_ptr<Plan> StatementCache::find(std::string_view shape) {
  const auto found = by_shape_.find(shape);
  if (found == by_shape_.end()) return nullptr;
  touch(*found->second);
  return found->second;
}

void StatementCache::insert(const std::string& shape, std::shared_ptr<Plan> plan) {
  if (by_shape_.contains(shape)) return;
  if (by_shape_.size() >= kMaxShapes) {
    forget(std::ranges::min_element(by_shape_, {}, [](const auto& e) { return e.second->used; }));
  }
  touch(*plan);
  by_shape_.emplace(shape, std::move(plan));
}

void StatementCache::erase(const Plan* plan) {
  const auto found =
      std::ranges::find_if(by_shape_, [&](const auto& e) { return e.second.get() == plan; });
  if (found != by_shape_.end()) forget(found);
}

void StatementCache::clear() {
  while (!by_shape_.empty()) forget(by_shape_.begin());
}

void StatementCache::forget(Plans::iterator plan) {
  plan->second->forgotten = true;
  plan->second->drop_idle();
  by_shape_.erase(plan);
}

}  // namespace pelm::ado::sqlite
