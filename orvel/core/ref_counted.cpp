#include "orvel/core/ref_counted.h"

namespace teskcore::utility {

RefCountedObject::~RefCountedObject() = default;

void RefCountedObject::AddRef() const { owners_.fetch_add(1, std::memory_order_relaxed); }

void RefCountedObject::Release() const {
  if (owners_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

}  // namespace teskcore::utility
