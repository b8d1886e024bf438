/// Statements kept with the values that they are bound to, for libraries that bind references.
#pragma once

#include <memory>
#include <tuple>
#include <unordered_map>

namespace pelm::bench {

class HeldStatements {
 public:
  /// The statement of a text, made by `make(held)` the first time; the same text always comes with
  /// the same `Held`.
  template <class Held, class Make>
  Held& find(const char* text, Make&& make) {
    std::shared_ptr<void>& kept = by_text_[text];
    if (kept == nullptr) kept = make();
    return *static_cast<Held*>(kept.get());
  }

 private:
  std::unordered_map<const char*, std::shared_ptr<void>> by_text_;
};

}  // namespace pelm::bench
