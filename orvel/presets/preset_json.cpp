#include "orvel/presets/preset_json.h"

#include <cstdint>
#include <utility>

#include <boost/smart_ptr/make_shared.hpp>

#include "orvel/core/prop_list_json.h"

namespace teskcore::serialization {
namespace {

using orvel::Guid;
using orvel::PropList;

constexpr std::int64_t kVersion = 1;

// The host's serialisation hands a parsed root to its readers under this name.
constexpr char kWrapper[] = "SerializerWrappedObject";

template <typename T>
const T& As(const JSONValue& value) {
  const auto* held = boost::any_cast<T>(&value);
  if (held == nullptr) throw BadCast();
  return *held;
}

const JSONValue& Unwrap(const JSONValue& value) {
  const JSONValuePtr wrapped = GetVariantInObject(value, kWrapper);
  return wrapped ? *wrapped : value;  // kept alive by `value`
}

JSONValue Wrap(const JSONValuePtr& root) {
  JSONValue wrapper;
  AddToObject(wrapper, kWrapper, root);
  return wrapper;
}

std::string ReadText(const JSONValue& object, const char* key) {
  const JSONValuePtr member = GetVariantInObject(object, key);
  return member ? As<std::string>(*member) : std::string();
}

Guid ReadGuid(const JSONValue& object, const char* key) { return Guid(ReadText(object, key)); }

JSONValue Write(const std::vector<float>& values) {
  JSONArray array;
  array.reserve(values.size());
  for (const float value : values) {
    array.push_back(boost::make_shared<JSONValue>(static_cast<double>(value)));
  }
  return array;
}

JSONValue Write(const PropList& list) { return JSONConvert<PropList>::ToJSON(list); }

void Read(const JSONValue& value, std::vector<float>& values) {
  for (const auto& element : As<JSONArray>(value)) values.push_back(JSONToFloat(*element));
}

void Read(const JSONValue& value, PropList& list) { list = JSONConvert<PropList>::FromJSON(value); }

template <typename Model>
JSONValue WriteModels(const std::map<std::string, Model>& models) {
  JSONValue object = JSONObject();
  for (const auto& [modelID, model] : models) AddToObject(object, modelID, Write(model));
  return object;
}

template <typename Model>
void ReadModels(const JSONValue& payload, std::map<std::string, Model>& models) {
  const JSONValuePtr object = GetVariantInObject(payload, "Models");
  if (!object) return;
  for (const auto& [modelID, value] : As<JSONObject>(*object)) Read(*value, models[modelID]);
}

template <typename T>
JSONValue WriteRecord(const orvel::Preset<T>& preset) {
  JSONValue object;
  AddToObject(object, "Guid", JSONValue(preset.Guid.AsUTF8String()));
  AddToObject(object, "Name", JSONValue(preset.Name));
  AddToObject(object, "PresetData", JSONConvert<T>::ToJSON(preset.PresetData));
  AddToObject(object, "Type", JSONValue(T::kType.AsUTF8String()));
  AddToObject(object, "Version", JSONValue(kVersion));
  return object;
}

template <typename T>
orvel::Preset<T> ReadRecord(const JSONValue& value) {
  const JSONValue& object = Unwrap(value);
  orvel::Preset<T> preset;
  if (boost::any_cast<JSONObject>(&object) == nullptr) return preset;
  preset.Guid = ReadGuid(object, "Guid");
  preset.Type = ReadGuid(object, "Type");
  preset.Name = ReadText(object, "Name");
  const JSONValuePtr payload = GetVariantInObject(object, "PresetData");
  if (payload) preset.PresetData = JSONConvert<T>::FromJSON(*payload);
  return preset;
}

JSONValue ParseWrapped(const std::string& text) {
  const JSONValuePtr root = JSONParse(text);
  if (!root) throw orvel::JSONError("JSON not well-formed");
  return Wrap(root);
}

template <typename T>
void ReadDocument(const std::string& text, std::vector<orvel::Preset<T>>& presets) {
  const JSONValue wrapped = ParseWrapped(text);
  std::vector<orvel::Preset<T>> read;
  for (const auto& element : As<JSONArray>(Unwrap(wrapped))) {
    auto preset = ReadRecord<T>(*element);
    if (!preset.Guid.IsNull()) read.push_back(std::move(preset));
  }
  presets = std::move(read);
}

template <typename T>
JSONValue WriteDocument(const std::vector<orvel::Preset<T>>& presets) {
  JSONValue array = JSONArray();
  for (const auto& preset : presets) AppendToArray(array, WriteRecord(preset));
  return array;
}

bool WriteText(const JSONValue& value, std::string& text) {
  std::string written = GetJSONUTF8String(value, true);
  if (written.empty()) return false;
  text = std::move(written);
  return true;
}

}  // namespace

JSONValue JSONConvert<orvel::UserPresetData>::ToJSON(const orvel::UserPresetData& data) {
  JSONValue object;
  AddToObject(object, "Config", JSONValue(data.Config.AsUTF8String()));
  AddToObject(object, "ModeID", JSONValue(data.ModeID));
  AddToObject(object, "Models", WriteModels(data.Models));
  return object;
}

orvel::UserPresetData JSONConvert<orvel::UserPresetData>::FromJSON(const JSONValue& value) {
  As<JSONObject>(value);
  orvel::UserPresetData data;
  data.Config = ReadGuid(value, "Config");
  data.ModeID = ReadText(value, "ModeID");
  ReadModels(value, data.Models);
  return data;
}

JSONValue JSONConvert<orvel::ConfigPresetData>::ToJSON(const orvel::ConfigPresetData& data) {
  JSONValue object;
  AddToObject(object, "ModeID", JSONValue(data.ModeID));
  AddToObject(object, "Models", WriteModels(data.Models));
  return object;
}

orvel::ConfigPresetData JSONConvert<orvel::ConfigPresetData>::FromJSON(const JSONValue& value) {
  As<JSONObject>(value);
  orvel::ConfigPresetData data;
  data.ModeID = ReadText(value, "ModeID");
  ReadModels(value, data.Models);
  return data;
}

JSONValue JSONConvert<orvel::UserPreset>::ToJSON(const orvel::UserPreset& preset) {
  return WriteRecord(preset);
}

orvel::UserPreset JSONConvert<orvel::UserPreset>::FromJSON(const JSONValue& value) {
  return ReadRecord<orvel::UserPresetData>(value);
}

JSONValue JSONConvert<orvel::ConfigPreset>::ToJSON(const orvel::ConfigPreset& preset) {
  return WriteRecord(preset);
}

orvel::ConfigPreset JSONConvert<orvel::ConfigPreset>::FromJSON(const JSONValue& value) {
  return ReadRecord<orvel::ConfigPresetData>(value);
}

}  // namespace teskcore::serialization

namespace orvel {

namespace serialization = teskcore::serialization;

void ReadPreset(const std::string& text, UserPreset& preset) {
  preset = serialization::ReadRecord<UserPresetData>(serialization::ParseWrapped(text));
}

void ReadPreset(const std::string& text, ConfigPreset& preset) {
  preset = serialization::ReadRecord<ConfigPresetData>(serialization::ParseWrapped(text));
}

void ReadPresets(const std::string& text, std::vector<UserPreset>& presets) {
  serialization::ReadDocument(text, presets);
}

void ReadPresets(const std::string& text, std::vector<ConfigPreset>& presets) {
  serialization::ReadDocument(text, presets);
}

bool WritePreset(const UserPreset& preset, std::string& text) {
  return serialization::WriteText(serialization::WriteRecord(preset), text);
}

bool WritePreset(const ConfigPreset& preset, std::string& text) {
  return serialization::WriteText(serialization::WriteRecord(preset), text);
}

bool WritePresets(const std::vector<UserPreset>& presets, std::string& text) {
  return serialization::WriteText(serialization::WriteDocument(presets), text);
}

bool WritePresets(const std::vector<ConfigPreset>& presets, std::string& text) {
  return serialization::WriteText(serialization::WriteDocument(presets), text);
}

}  // namespace orvel
