#include "orvel/core/library_module.h"

#include <algorithm>
#include <cstddef>

#include "orvel/resources/embedded_resources.h"

namespace orvel {
namespace {

bool RegisterResources() {
  using resources::EmbeddedResource;
  std::for_each_n(resources::kEmbeddedResources, resources::kEmbeddedResourceCount,
                  [](const EmbeddedResource& resource) {
                    teskcore::filesupport::RegisterModuleResource(GetLibraryModule(), resource.name,
                                                                  resource.type, resource.data,
                                                                  resource.size);
                  });
  return true;
}

[[maybe_unused]] const bool registered = RegisterResources();

}  // namespace

ModuleHandle GetLibraryModule() { return resources::kEmbeddedResources; }

}  // namespace orvel
