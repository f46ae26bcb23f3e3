// Any bytes, read as one preset and as a document of each payload: either an error of a known kind
// with the target left alone, or a record that says the same when it is written and read again, and
// when it is read through a value tree.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <boost/numeric/conversion/cast.hpp>

#include "orvel/orvel.h"

namespace {

using teskcore::serialization::BadCast;
using teskcore::serialization::JSONConvert;
using teskcore::serialization::JSONParse;

void Require(bool holds) {
  if (!holds) std::abort();
}

template <typename T>
void RequireSame(const orvel::Preset<T>& left, const orvel::Preset<T>& right) {
  Require(left.Guid == right.Guid && left.Name == right.Name);
  Require(left.PresetData == right.PresetData);
}

template <typename T, typename Read>
bool ReadOrRefuse(const std::string& text, T& target, Read read) {
  try {
    read(text, target);
    return true;
  } catch (const orvel::JSONError&) {
    Require(JSONParse(text) == nullptr);
  } catch (const BadCast&) {
    Require(JSONParse(text) != nullptr);
  } catch (const boost::numeric::bad_numeric_cast&) {
    Require(JSONParse(text) != nullptr);
  }
  return false;
}

constexpr auto kReadOne = [](const std::string& text, auto& preset) {
  orvel::ReadPreset(text, preset);
};
constexpr auto kReadMany = [](const std::string& text, auto& presets) {
  orvel::ReadPresets(text, presets);
};

template <typename T>
void CheckOne(const std::string& text) {
  orvel::Preset<T> preset;
  preset.Name = "untouched";
  if (!ReadOrRefuse(text, preset, kReadOne)) {
    Require(preset.Name == "untouched");
    return;
  }
  const auto tree = JSONParse(text);
  // A member of that name in the text itself is no wrapper, and only the text's reader can know.
  if (!teskcore::serialization::GetVariantInObject(tree, "SerializerWrappedObject")) {
    RequireSame(preset, JSONConvert<orvel::Preset<T>>::FromJSON(*tree));
  }
  std::string written;
  Require(orvel::WritePreset(preset, written));
  orvel::Preset<T> again;
  orvel::ReadPreset(written, again);
  RequireSame(preset, again);
  std::string rewritten;
  Require(orvel::WritePreset(again, rewritten) && rewritten == written);
}

template <typename T>
void CheckMany(const std::string& text) {
  std::vector<orvel::Preset<T>> presets(1);
  if (!ReadOrRefuse(text, presets, kReadMany)) {
    Require(presets.size() == 1);
    return;
  }
  std::string written;
  Require(orvel::WritePresets(presets, written));
  std::vector<orvel::Preset<T>> again;
  orvel::ReadPresets(written, again);
  Require(presets.size() == again.size());
  for (std::size_t i = 0; i < presets.size(); ++i) RequireSame(presets[i], again[i]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  CheckOne<orvel::UserPresetData>(text);
  CheckOne<orvel::ConfigPresetData>(text);
  CheckMany<orvel::UserPresetData>(text);
  CheckMany<orvel::ConfigPresetData>(text);
  return 0;
}
