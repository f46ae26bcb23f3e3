#pragma once

#include <atomic>
#include <cstdint>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"

namespace teskcore::utility {

/// What every shared object can do: count its owners. Held by `boost::intrusive_ptr`.
class ORVEL_EXPORT RefCountedInterface {
 public:
  virtual void AddRef() const = 0;
  virtual void Release() const = 0;

 protected:
  RefCountedInterface() = default;
  RefCountedInterface(const RefCountedInterface&) = default;
  RefCountedInterface& operator=(const RefCountedInterface&) = default;
  virtual ~RefCountedInterface() = default;
};

/// Keeps the count inside the object and deletes it with its last owner. The count is atomic, so an
/// owner may let go on another thread; the objects themselves belong to the main thread. A copy
/// starts with owners of its own.
class ORVEL_EXPORT RefCountedObject : public virtual RefCountedInterface {
 public:
  void AddRef() const override;
  void Release() const override;

 protected:
  RefCountedObject() = default;
  RefCountedObject(const RefCountedObject&) {}
  RefCountedObject& operator=(const RefCountedObject&) { return *this; }
  ~RefCountedObject() override;

  /// For a constructor or a destructor that hands the object to code which may own it for a while:
  /// until the hold ends, owners that go do not delete it.
  class SelfHold {
   public:
    explicit SelfHold(const RefCountedObject& object) : object_(object) { object_.AddRef(); }
    ~SelfHold() { object_.owners_.fetch_sub(1, std::memory_order_relaxed); }
    SelfHold(const SelfHold&) = delete;
    SelfHold& operator=(const SelfHold&) = delete;

   private:
    const RefCountedObject& object_;
  };

 private:
  mutable std::atomic<std::uint32_t> owners_{0};
};

inline void intrusive_ptr_add_ref(const RefCountedInterface* object) { object->AddRef(); }
inline void intrusive_ptr_release(const RefCountedInterface* object) { object->Release(); }

}  // namespace teskcore::utility

namespace orvel {
using teskcore::utility::RefCountedInterface;
using teskcore::utility::RefCountedObject;
}  // namespace orvel
