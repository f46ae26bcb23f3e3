#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvel/core/export.h"

namespace teskcore::filesupport {

/// Names a loaded library or program; an address of its own that only it can know.
using ModuleHandle = const void*;

/// Offers `size` bytes at `data`, which live as long as the module, as a resource of `module`.
/// Names and types compare without regard to case; registering a pair again replaces it.
ORVEL_EXPORT void RegisterModuleResource(ModuleHandle module, const std::u16string& name,
                                         const std::u16string& type, const void* data,
                                         std::size_t size);

/// Copies a resource into `bytes`; false, with `bytes` as it was, when the module has no such
/// resource.
ORVEL_EXPORT bool GetBinaryFromModule(ModuleHandle module, const std::u16string& name,
                                      const std::u16string& type,
                                      std::vector<unsigned char>& bytes);

}  // namespace teskcore::filesupport

namespace teskcore::utility {
using filesupport::GetBinaryFromModule;
}  // namespace teskcore::utility

namespace orvel {
using teskcore::filesupport::GetBinaryFromModule;
using teskcore::filesupport::ModuleHandle;
}  // namespace orvel
