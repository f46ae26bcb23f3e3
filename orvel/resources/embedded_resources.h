#pragma once

#include <cstddef>

namespace orvel::resources {

/// A document compiled into the library. Every pointer stays valid as long as the library is
/// loaded.
struct EmbeddedResource {
  const char16_t* name;  ///< The file's name without its extension, for example u"OrvelPresets".
  const char16_t* type;  ///< The file's extension in capitals, for example u"JSON".
  const unsigned char* data;  ///< `size` bytes as they stand in the file, then one zero byte.
  std::size_t size;
};

/// The first `kEmbeddedResourceCount` elements are the documents, in the order of the build's list.
extern const EmbeddedResource kEmbeddedResources[];
extern const std::size_t kEmbeddedResourceCount;

}  // namespace orvel::resources
