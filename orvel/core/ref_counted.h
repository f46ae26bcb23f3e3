#pragma once

#include <atomic>
#include <cstdint>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"

namespace teskcore::utility {

/// What every shared object can do: count its owners. Held by `boost::intrusive_ptr`. The count
/// stands here, once in every object, so that a class may name `RefCountedObject` among its bases
/// although an interface that it implements is one already. It is atomic, so an owner may let go on
/// another thread; the objects themselves belong to the main thread. A copy starts with owners of
/// its own.
class ORVEL_EXPORT RefCountedInterface {
 public:
  /// One owner more.
  virtual void AddRef() const;

  /// One owner less; the last one deletes the object.
  virtual void Release() const;

 protected:
  /// Starts without owners, also as a copy; an assignment leaves the owners as they are.
  /// @{
  RefCountedInterface() = default;
  RefCountedInterface(const RefCountedInterface&) = default;
  RefCountedInterface& operator=(const RefCountedInterface&) = default;
  /// @}
  virtual ~RefCountedInterface();

  /// For a constructor or a destructor that hands the object to code which may own it for a while:
  /// until the hold ends, owners that go do not delete it.
  class SelfHold {
   public:
    /// Begins the hold.
    explicit SelfHold(const RefCountedInterface& object) : object_(object) { object_.AddRef(); }
    ~SelfHold() { object_.owners_.count.fetch_sub(1, std::memory_order_relaxed); }
    SelfHold(const SelfHold&) = delete;
    SelfHold& operator=(const SelfHold&) = delete;

   private:
    const RefCountedInterface& object_;
  };

 private:
  struct Owners {
    Owners() = default;
    Owners(const Owners&) {}
    Owners& operator=(const Owners&) { return *this; }

    std::atomic<std::uint32_t> count{0};
  };

  mutable Owners owners_;
};

/// An object that goes with its last owner.
class ORVEL_EXPORT RefCountedObject : public virtual RefCountedInterface {
 protected:
  /// Made, copied and assigned like what it is.
  /// @{
  RefCountedObject() = default;
  RefCountedObject(const RefCountedObject&) = default;
  RefCountedObject& operator=(const RefCountedObject&) = default;
  /// @}
  ~RefCountedObject() override;
};

/// How `boost::intrusive_ptr` counts.
/// @{
inline void intrusive_ptr_add_ref(const RefCountedInterface* object) { object->AddRef(); }
inline void intrusive_ptr_release(const RefCountedInterface* object) { object->Release(); }
/// @}

}  // namespace teskcore::utility

namespace orvel {
using teskcore::utility::RefCountedInterface;
using teskcore::utility::RefCountedObject;
}  // namespace orvel
