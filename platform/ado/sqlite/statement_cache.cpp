// Prepared statements kept by the shape of their text.
#include "platform/ado/sqlite/statement_cache.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace pelm::ado::sqlite {

void Prepared::Finalizer::operator()(sqlite3_stmt* s) const noexcept { sqlite3_finalize(s); }

StatementLease::StatementLease(std::shared_ptr<Plan> plan, std::unique_ptr<Prepared> prepared)
    : plan_(std::move(plan)), prepared_(std::move(prepared)) {
  plan_->idle.reserve(StatementCache::kMaxIdleOfShape);  // giving back must not need memory
}

StatementLease::~StatementLease() {
  if (prepared_ == nullptr) return;
  if (prepared_->running) sqlite3_reset(prepared_->statement());
  if (prepared_->holds_texts) sqlite3_clear_bindings(prepared_->statement());
  prepared_->running = prepared_->holds_texts = false;
  if (plan_->idle.size() < StatementCache::kMaxIdleOfShape) {
    plan_->idle.push_back(std::move(prepared_));
  }
}

std::shared_ptr<Plan> StatementCache::find(std::string_view shape) {
  const auto found = by_shape_.find(shape);
  if (found == by_shape_.end()) return nullptr;
  if (found->second != entries_.begin()) entries_.splice(entries_.begin(), entries_, found->second);
  return found->second->plan;
}

void StatementCache::insert(const std::string& shape, std::shared_ptr<Plan> plan) {
  if (by_shape_.contains(shape)) return;
  if (by_shape_.size() >= kMaxShapes) {
    by_shape_.erase(entries_.back().shape);
    entries_.pop_back();
  }
  entries_.push_front({shape, std::move(plan)});
  by_shape_.emplace(entries_.front().shape, entries_.begin());
}

void StatementCache::erase(const Plan* plan) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& e) { return e.plan.get() == plan; });
  if (found == entries_.end()) return;
  by_shape_.erase(found->shape);
  entries_.erase(found);
}

void StatementCache::clear() {
  by_shape_.clear();
  entries_.clear();
}

}  // namespace pelm::ado::sqlite
