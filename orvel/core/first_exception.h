#pragma once

#include <exception>
#include <utility>

namespace orvel {

/// Runs steps that must all be taken, whatever one of them throws: nobody is left silenced or
/// unwritten because somebody before failed. The first exception goes on afterwards.
class FirstException {
 public:
  template <typename Step>
  void Catch(Step&& step) noexcept {
    try {
      std::forward<Step>(step)();
    } catch (...) {
      if (!first_) first_ = std::current_exception();
    }
  }

  /// Throws what was caught first, if anything was.
  void Rethrow() const {
    if (first_) std::rethrow_exception(first_);
  }

 private:
  std::exception_ptr first_;
};

}  // namespace orvel
