#pragma once

#include <exception>
#include <utility>

namespace orvel {

/// Runs steps that must all be taken, whatever one of them throws: nobody is left silenced or
/// unwritten because somebody before failed. The first exception goes on afterwards.
class FirstException {
 public:
  /// Takes a step, and keeps what it throws when nothing was kept before.
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

/// Lets a signal call every slot, whatever one of them throws, and throws that afterwards; as it
/// is, Boost's ends with the first that throws.
struct CallEverySlot {
  /// What Boost asks of a combiner.
  using result_type = void;

  /// Calls each slot from `slot` up to `last`.
  template <typename Iterator>
  void operator()(Iterator slot, Iterator last) const {
    FirstException failure;
    for (; slot != last; ++slot) failure.Catch([&slot] { *slot; });
    failure.Rethrow();
  }
};

}  // namespace orvel
