#include "orvel/presets/preset_json.h"

#include <cstdint>
#include <utility>

#include "orvel/core/json_sink.h"
#include "orvel/core/json_source.h"
#include "orvel/core/prop_list_io.h"

namespace teskcore::serialization {
namespace {

using orvel::ConfigPresetData;
using orvel::Guid;
using orvel::Preset;
using orvel::UserPresetData;

constexpr std::int64_t kVersion = 1;

// The host's serialisation hands a parsed root to its readers under this name.
constexpr char kWrapper[] = "SerializerWrappedObject";

template <typename Sink>
void WriteText(Sink& sink, const char* key, const std::string& text) {
  sink.Key(key);
  sink.Text(text);
}

template <typename Sink, typename Model>
void WriteModels(Sink& sink, const std::map<std::string, Model>& models) {
  sink.Key("Models");
  sink.BeginObject();
  for (const auto& [modelID, model] : models) {
    sink.Key(modelID);
    Write(sink, model);
  }
  sink.EndObject();
}

// Members stand in the order of their keys.
template <typename Sink>
void Write(Sink& sink, const UserPresetData& data) {
  sink.BeginObject();
  WriteText(sink, "Config", data.Config.AsUTF8String());
  WriteText(sink, "ModeID", data.ModeID);
  WriteModels(sink, data.Models);
  sink.EndObject();
}

template <typename Sink>
void Write(Sink& sink, const ConfigPresetData& data) {
  sink.BeginObject();
  WriteText(sink, "ModeID", data.ModeID);
  WriteModels(sink, data.Models);
  sink.EndObject();
}

template <typename Sink, typename T>
void Write(Sink& sink, const Preset<T>& preset) {
  sink.BeginObject();
  WriteText(sink, "Guid", preset.Guid.AsUTF8String());
  WriteText(sink, "Name", preset.Name);
  sink.Key("PresetData");
  Write(sink, preset.PresetData);
  WriteText(sink, "Type", T::kType.AsUTF8String());
  sink.Key("Version");
  sink.Integer(kVersion);
  sink.EndObject();
}

template <typename T>
void Write(JSONTextSink& sink, const std::vector<Preset<T>>& presets) {
  sink.BeginArray();
  for (const auto& preset : presets) {
    Write(sink, preset);
    if (&preset == &presets.front()) sink.ExpectTimes(presets.size());
  }
  sink.EndArray();
}

// In each reader a member that stands twice counts as it stands last.

template <typename Source, typename Model>
void ReadModels(Source source, std::map<std::string, Model>& models) {
  models.clear();
  source.ForEachMember(
      [&models](const std::string& modelID, auto value) { Read(value, models[modelID]); });
}

template <typename Source>
void Read(Source source, UserPresetData& data) {
  data = {};
  source.ForEachMember([&data](const std::string& key, auto value) {
    if (key == "Config") {
      data.Config = Guid(value.ReadText());
    } else if (key == "ModeID") {
      data.ModeID = value.ReadText();
    } else if (key == "Models") {
      ReadModels(value, data.Models);
    } else {
      value.Skip();
    }
  });
}

template <typename Source>
void Read(Source source, ConfigPresetData& data) {
  data = {};
  source.ForEachMember([&data](const std::string& key, auto value) {
    if (key == "ModeID") {
      data.ModeID = value.ReadText();
    } else if (key == "Models") {
      ReadModels(value, data.Models);
    } else {
      value.Skip();
    }
  });
}

template <typename Source, typename T>
void Read(Source source, Preset<T>& preset) {
  preset = {};
  preset.Type = {};
  if (!source.IsObject()) return source.Skip();
  source.ForEachMember([&preset](const std::string& key, auto value) {
    if (key == "Guid") {
      preset.Guid = Guid(value.ReadText());
    } else if (key == "Type") {
      preset.Type = Guid(value.ReadText());
    } else if (key == "Name") {
      preset.Name = value.ReadText();
    } else if (key == "PresetData") {
      Read(value, preset.PresetData);
    } else {
      value.Skip();
    }
  });
}

template <typename Source, typename T>
void Read(Source source, std::vector<Preset<T>>& presets) {
  presets.clear();
  source.ForEachElement([&presets](auto element) {
    Preset<T> preset;
    Read(element, preset);
    if (!preset.Guid.IsNull()) presets.push_back(std::move(preset));
  });
}

template <typename T>
JSONValue ToTree(const T& record) {
  JSONTreeSink sink;
  Write(sink, record);
  return sink.GetRoot();
}

template <typename T>
T FromTree(const JSONValue& value) {
  const JSONValuePtr wrapped = GetVariantInObject(value, kWrapper);
  T record;
  Read(JSONTreeSource(wrapped ? wrapped.get() : &value), record);
  return record;
}

// The text goes straight into the record. Only when that fails is a tree made of it, to tell what
// is wrong, or that nothing is: a property's value that stands before its type is no fault.
template <typename T>
void ReadText(const std::string& text, T& record) {
  T read;
  if (!ReadJSONStream(text, [&read](JSONStreamSource source) { Read(source, read); })) {
    const JSONValuePtr root = JSONParse(text);
    if (!root) throw orvel::JSONError("JSON not well-formed");
    JSONValue wrapper;
    AddToObject(wrapper, kWrapper, root);
    read = FromTree<T>(wrapper);
  }
  record = std::move(read);
}

template <typename T>
bool WriteText(const T& record, std::string& text) {
  JSONTextSink sink(true);
  Write(sink, record);
  if (sink.HasFailed()) return false;
  text = sink.TakeText();
  return true;
}

}  // namespace

JSONValue JSONConvert<UserPresetData>::ToJSON(const UserPresetData& data) { return ToTree(data); }

UserPresetData JSONConvert<UserPresetData>::FromJSON(const JSONValue& value) {
  return FromTree<UserPresetData>(value);
}

JSONValue JSONConvert<ConfigPresetData>::ToJSON(const ConfigPresetData& data) {
  return ToTree(data);
}

ConfigPresetData JSONConvert<ConfigPresetData>::FromJSON(const JSONValue& value) {
  return FromTree<ConfigPresetData>(value);
}

JSONValue JSONConvert<orvel::UserPreset>::ToJSON(const orvel::UserPreset& preset) {
  return ToTree(preset);
}

orvel::UserPreset JSONConvert<orvel::UserPreset>::FromJSON(const JSONValue& value) {
  return FromTree<orvel::UserPreset>(value);
}

JSONValue JSONConvert<orvel::ConfigPreset>::ToJSON(const orvel::ConfigPreset& preset) {
  return ToTree(preset);
}

orvel::ConfigPreset JSONConvert<orvel::ConfigPreset>::FromJSON(const JSONValue& value) {
  return FromTree<orvel::ConfigPreset>(value);
}

}  // namespace teskcore::serialization

namespace orvel {

namespace serialization = teskcore::serialization;

void ReadPreset(const std::string& text, UserPreset& preset) {
  serialization::ReadText(text, preset);
}

void ReadPreset(const std::string& text, ConfigPreset& preset) {
  serialization::ReadText(text, preset);
}

void ReadPresets(const std::string& text, std::vector<UserPreset>& presets) {
  serialization::ReadText(text, presets);
}

void ReadPresets(const std::string& text, std::vector<ConfigPreset>& presets) {
  serialization::ReadText(text, presets);
}

bool WritePreset(const UserPreset& preset, std::string& text) {
  return serialization::WriteText(preset, text);
}

bool WritePreset(const ConfigPreset& preset, std::string& text) {
  return serialization::WriteText(preset, text);
}

bool WritePresets(const std::vector<UserPreset>& presets, std::string& text) {
  return serialization::WriteText(presets, text);
}

bool WritePresets(const std::vector<ConfigPreset>& presets, std::string& text) {
  return serialization::WriteText(presets, text);
}

}  // namespace orvel
