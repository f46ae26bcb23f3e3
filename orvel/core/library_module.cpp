#include "orvel/core/library_module.h"

#include <algorithm>

#include "orvel/resources/embedded_resources.h"

namespace orvel {
namespace {

bool RegisterResources(ModuleHandle module) {
  using resources::EmbeddedResource;
  std::for_each_n(resources::kEmbeddedResources, resources::kEmbeddedResourceCount,
                  [module](const EmbeddedResource& resource) {
                    teskcore::filesupport::RegisterModuleResource(
                        module, resource.name, resource.type, resource.data, resource.size);
                  });
  return true;
}

}  // namespace

ModuleHandle GetLibraryModule() {
  const ModuleHandle module = resources::kEmbeddedResources;
  // Here and not while the library is loaded: the table itself is filled only then.
  static const bool registered = RegisterResources(module);
  static_cast<void>(registered);
  return module;
}

}  // namespace orvel
