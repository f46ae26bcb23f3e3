#include "orvel/core/ref_counted.h"

namespace teskcore::utility {

RefCountedInterface::~RefCountedInterface() = default;
RefCountedObject::~RefCountedObject() = default;

void RefCountedInterface::AddRef() const { owners_.count.fetch_add(1, std::memory_order_relaxed); }

void RefCountedInterface::Release() const {
  if (owners_.count.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

}  // namespace teskcore::utility
