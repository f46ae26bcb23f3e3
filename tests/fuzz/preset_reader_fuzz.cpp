// Any bytes, read as one preset and as a document of each payload: either an error of a known kind
// with the target left alone, or a record that says the same when it is written and read again, and
// when it is read through a value tree.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <typeinfo>
#include <vector>

#include "orvel/orvel.h"

namespace orvel {
namespace {

using teskcore::serialization::GetVariantInObject;
using teskcore::serialization::JSONConvert;
using teskcore::serialization::JSONParse;

void Require(bool holds) {
  if (!holds) std::abort();
}

template <typename T>
void Read(const std::string& text, Preset<T>& preset) {
  ReadPreset(text, preset);
}
template <typename T>
void Read(const std::string& text, std::vector<Preset<T>>& presets) {
  ReadPresets(text, presets);
}

template <typename T>
std::string Write(const Preset<T>& preset) {
  std::string text;
  Require(WritePreset(preset, text));
  return text;
}
template <typename T>
std::string Write(const std::vector<Preset<T>>& presets) {
  std::string text;
  Require(WritePresets(presets, text));
  return text;
}

template <typename T>
bool ReadOrRefuse(const std::string& text, T& target) {
  try {
    Read(text, target);
    return true;
  } catch (const JSONError&) {
    Require(JSONParse(text) == nullptr);
  } catch (const std::bad_cast&) {  // of a kind, or of a number's range
    Require(JSONParse(text) != nullptr);
  }
  return false;
}

template <typename T>
void Check(const std::string& text, T record) {
  const std::string untouched = Write(record);
  if (!ReadOrRefuse(text, record)) return Require(Write(record) == untouched);
  const std::string written = Write(record);
  T again;
  Read(written, again);
  Require(Write(again) == written);
  if constexpr (requires { record.PresetData; }) {
    Require(record.PresetData == again.PresetData && record.Name == again.Name);
    const auto tree = JSONParse(text);
    // A member of that name in the text itself is no wrapper, and only the text's reader can know.
    Require(GetVariantInObject(tree, "SerializerWrappedObject") ||
            Write(JSONConvert<T>::FromJSON(*tree)) == written);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  Check(text, UserPreset());
  Check(text, ConfigPreset());
  Check(text, std::vector<UserPreset>(1));
  Check(text, std::vector<ConfigPreset>(1));
  return 0;
}

}  // namespace orvel
