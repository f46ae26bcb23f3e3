#include "orvel/core/module_resources.h"

#include <cstdint>
#include <map>
#include <span>
#include <tuple>

#include <unicode/unistr.h>

namespace teskcore::filesupport {
namespace {

using Key = std::tuple<ModuleHandle, std::u16string, std::u16string>;

std::u16string FoldCase(const std::u16string& text) {
  icu::UnicodeString folded(text.data(), static_cast<std::int32_t>(text.size()));
  folded.foldCase();
  return {folded.getBuffer(), static_cast<std::size_t>(folded.length())};
}

Key MakeKey(ModuleHandle module, const std::u16string& name, const std::u16string& type) {
  return {module, FoldCase(name), FoldCase(type)};
}

// Filled while libraries are loaded, so it is made by whoever comes first.
std::map<Key, std::span<const unsigned char>>& Resources() {
  static auto& resources = *new std::map<Key, std::span<const unsigned char>>;  // never destroyed
  return resources;
}

}  // namespace

void RegisterModuleResource(ModuleHandle module, const std::u16string& name,
                            const std::u16string& type, const void* data, std::size_t size) {
  Resources()[MakeKey(module, name, type)] = {static_cast<const unsigned char*>(data), size};
}

bool GetBinaryFromModule(ModuleHandle module, const std::u16string& name,
                         const std::u16string& type, std::vector<unsigned char>& bytes) {
  const auto found = Resources().find(MakeKey(module, name, type));
  if (found == Resources().end()) return false;
  bytes.assign(found->second.begin(), found->second.end());
  return true;
}

}  // namespace teskcore::filesupport
