#include "host/session/session_document.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <exception>
#include <limits>
#include <stdexcept>
#include <system_error>

#include "host/audio/audio_error.h"
#include "host/audio/temporary_file.h"
#include "host/session/text_file.h"

namespace orvelhost {
namespace {

namespace fs = std::filesystem;
using teskcore::serialization::AddToObject;
using teskcore::serialization::AppendToArray;
using teskcore::serialization::GetJSONUTF8String;
using teskcore::serialization::GetVariantInObject;
using teskcore::serialization::JSONArray;
using teskcore::serialization::JSONObject;
using teskcore::serialization::JSONParse;
using teskcore::serialization::JSONToFloat;
using teskcore::serialization::JSONValue;
using teskcore::serialization::JSONValuePtr;

constexpr char kFormat[] = "orvelsession";
constexpr std::int64_t kVersion = 1;

// ---- Paths. JSON cannot hold a name that is not UTF-8; its bytes are written as digits then.

bool IsUTF8(const std::string& text) {
  int errors = 0;
  orvel::UTF8to16(text, &errors);
  return errors == 0;
}

/// The folder that the session stands in, also when it is reached through a link to the file.
fs::path FolderOf(const fs::path& file) {
  return AbsolutePath(TemporaryFile::FollowLinks(file)).parent_path();
}

/// The way from the folder to the source. Out of the folder it goes by the real folders, so that it
/// is the same by whatever links the session is reached.
fs::path FindWay(const fs::path& folder, const fs::path& source) {
  const fs::path way = source.lexically_relative(folder);
  if (!way.empty() && *way.begin() != "..") return way;
  std::error_code error;
  const fs::path from = fs::weakly_canonical(folder, error);
  const fs::path to = fs::weakly_canonical(source.parent_path(), error);
  return from.empty() || to.empty() ? way : (to / source.filename()).lexically_relative(from);
}

void AddSource(JSONValue& clip, const fs::path& source, const fs::path& folder) {
  const fs::path way = FindWay(folder, source);
  const std::string path = (way.empty() ? source : way).generic_string();
  if (IsUTF8(path)) {
    AddToObject(clip, "source", JSONValue(path));
    return;
  }
  std::string digits;
  for (const char byte : path) {
    char pair[3];
    const auto value = static_cast<unsigned char>(byte);
    pair[0] = "0123456789abcdef"[value >> 4];
    pair[1] = "0123456789abcdef"[value & 15];
    digits.append(pair, 2);
  }
  AddToObject(clip, "source_bytes", JSONValue(digits));
}

// ---- Reading. Everything that is not as it is written is damage.

[[noreturn]] void Damaged(const std::string& where) { throw SessionError("is damaged: " + where); }

template <typename T>
const T& Get(const JSONValuePtr& value, const std::string& where) {
  const T* held = boost::any_cast<T>(value.get());
  if (held == nullptr) Damaged(where);
  return *held;
}

template <typename T>
const T& GetMember(const JSONValuePtr& object, const char* key, const std::string& where) {
  return Get<T>(GetVariantInObject(object, key), where + " has no sound \"" + key + "\"");
}

std::int64_t GetInteger(const JSONValuePtr& object, const char* key, std::int64_t least,
                        std::int64_t greatest, const std::string& where) {
  const std::int64_t number = GetMember<std::int64_t>(object, key, where);
  if (number < least || number > greatest) Damaged(where + " has no sound \"" + key + "\"");
  return number;
}

fs::path ReadSource(const JSONValuePtr& clip, const fs::path& folder, const std::string& where) {
  std::string path;
  if (GetVariantInObject(clip, "source_bytes")) {
    const auto& digits = GetMember<std::string>(clip, "source_bytes", where);
    for (std::size_t i = 0; i < digits.size(); i += 2) {
      unsigned value = 0;
      const char* const end = digits.data() + std::min(i + 2, digits.size());
      const auto [stop, error] = std::from_chars(digits.data() + i, end, value, 16);
      if (error != std::errc() || stop != digits.data() + i + 2) {
        Damaged(where + " has no sound \"source_bytes\"");
      }
      path += static_cast<char>(value);
    }
  } else {
    path = GetMember<std::string>(clip, "source", where);
  }
  if (path.empty() || path.find('\0') != std::string::npos) {
    Damaged(where + " has no sound \"source\"");
  }
  return (folder / path).lexically_normal();
}

AudioFormat ReadFormat(const JSONValuePtr& clip, const std::string& where) {
  const JSONValuePtr audio = GetVariantInObject(clip, "audio");
  AudioFormat format;
  format.sampleRate = static_cast<int>(
      GetInteger(audio, "rate", AudioFormat::kMinSampleRate, AudioFormat::kMaxSampleRate, where));
  format.channelCount =
      static_cast<int>(GetInteger(audio, "channels", 1, AudioFormat::kMaxChannels, where));
  // Its upper half stands for no speakers that files know.
  format.speakers = static_cast<std::uint64_t>(
      GetInteger(audio, "speakers", 0, std::numeric_limits<std::int64_t>::max(), where));
  return format;
}

std::map<std::string, std::vector<float>> ReadSections(const JSONValuePtr& properties,
                                                       const std::string& where) {
  std::map<std::string, std::vector<float>> sections;
  const std::string& key = orvel::kBasicAdjustmentsProperty.AsUTF8String();
  for (const auto& [modelID, list] : GetMember<JSONObject>(properties, key.c_str(), where)) {
    std::vector<float>& values = sections[modelID];
    std::string fault = where;
    fault.append(" has no sound ").append(modelID);
    for (const auto& value : Get<JSONArray>(list, fault)) {
      values.push_back(JSONToFloat(*value));
      if (!(values.back() >= 0.0f && values.back() <= 1.0f)) {
        fault = where;
        Damaged(fault.append(" has a value beyond 0 to 1 in ").append(modelID));
      }
    }
  }
  return sections;
}

ClipRecord ReadClip(const JSONValuePtr& value, const fs::path& folder, const std::string& where) {
  ClipRecord clip;
  clip.source = ReadSource(value, folder, where);
  clip.format = ReadFormat(value, where);
  const JSONValuePtr properties = GetVariantInObject(value, "properties");
  clip.type = static_cast<orvel::ClipType>(GetInteger(
      properties, orvel::kClipTypeKey.c_str(), orvel::type_not_set, orvel::type_other, where));
  clip.modeID = GetMember<std::string>(properties, orvel::kAdjustmentsModeKey.c_str(), where);
  clip.preset =
      orvel::Guid(GetMember<std::string>(properties, orvel::kClipPresetGuidKey.c_str(), where));
  clip.sections = ReadSections(properties, where);
  return clip;
}

std::vector<orvel::ConfigPreset> ReadConfigurations(const JSONValuePtr& root) {
  const auto held = GetVariantInObject(GetVariantInObject(root, "properties"),
                                       orvel::kSessionPropertyKey_Configurations);
  if (!held) Damaged("it has no configurations");
  std::vector<orvel::ConfigPreset> configurations;
  orvel::ReadPresets(GetJSONUTF8String(held, false), configurations);
  return configurations;
}

bool IsSession(const JSONValuePtr& root) {
  const auto* format = boost::any_cast<std::string>(GetVariantInObject(root, "format").get());
  return format != nullptr && *format == kFormat;
}

SessionDocument Parse(const std::string& text, const fs::path& folder) {
  const JSONValuePtr root = JSONParse(text);
  if (!root) throw SessionError("is damaged: it is not well-formed JSON");
  if (!IsSession(root)) throw SessionError("is no session");
  const std::int64_t version = GetMember<std::int64_t>(root, "version", "it");
  if (version > kVersion) {
    throw SessionError("was saved by a newer version of this program (format " +
                       std::to_string(version) + ", and this one reads up to " +
                       std::to_string(kVersion) + ")");
  }
  if (version < 1) Damaged("it has no sound \"version\"");
  SessionDocument document;
  for (const auto& clip : GetMember<JSONArray>(root, "clips", "it")) {
    const std::string where = "clip " + std::to_string(document.clips.size() + 1);
    document.clips.push_back(ReadClip(clip, folder, where));
  }
  for (const auto& place : GetMember<JSONArray>(root, "selected", "it")) {
    const std::int64_t index = Get<std::int64_t>(place, "its selection");
    if (index < 0 || static_cast<std::size_t>(index) >= document.clips.size() ||
        (!document.selected.empty() &&
         static_cast<std::size_t>(index) <= document.selected.back())) {
      Damaged("its selection");
    }
    document.selected.push_back(static_cast<std::size_t>(index));
  }
  document.configurations = ReadConfigurations(root);
  return document;
}

}  // namespace

fs::path AbsolutePath(const fs::path& file) {
  const fs::path whole = fs::absolute(file);
  std::error_code error;
  const fs::path folder = std::ranges::find(whole, "..") == whole.end()
                              ? fs::path()
                              : fs::weakly_canonical(whole.parent_path(), error);
  return folder.empty() ? whole.lexically_normal() : folder / whole.filename();
}

std::string FormatSession(const SessionDocument& document, const fs::path& folder) {
  JSONValue clips = JSONArray();
  for (const ClipRecord& record : document.clips) {
    JSONValue audio;
    AddToObject(audio, "rate", JSONValue(std::int64_t{record.format.sampleRate}));
    AddToObject(audio, "channels", JSONValue(std::int64_t{record.format.channelCount}));
    AddToObject(audio, "speakers", JSONValue(static_cast<std::int64_t>(record.format.speakers)));
    JSONValue sections = JSONObject();
    for (const auto& [modelID, values] : record.sections) {
      JSONValue list = JSONArray();
      for (const float value : values) AppendToArray(list, JSONValue(static_cast<double>(value)));
      AddToObject(sections, modelID, list);
    }
    JSONValue properties;
    AddToObject(properties, orvel::kClipTypeKey, JSONValue(std::int64_t{record.type}));
    AddToObject(properties, orvel::kAdjustmentsModeKey, JSONValue(record.modeID));
    AddToObject(properties, orvel::kClipPresetGuidKey, JSONValue(record.preset.AsUTF8String()));
    AddToObject(properties, orvel::kBasicAdjustmentsProperty.AsUTF8String(), sections);
    JSONValue clip;
    AddSource(clip, record.source, folder);
    AddToObject(clip, "audio", audio);
    AddToObject(clip, "properties", properties);
    AppendToArray(clips, clip);
  }
  JSONValue selected = JSONArray();
  for (const std::size_t index : document.selected) {
    AppendToArray(selected, JSONValue(static_cast<std::int64_t>(index)));
  }
  std::string configurations;
  if (!orvel::WritePresets(document.configurations, configurations)) {
    throw SessionError("cannot be saved: a template holds a number that is not finite");
  }
  JSONValue properties;
  AddToObject(properties, orvel::kSessionPropertyKey_Configurations, JSONParse(configurations));
  JSONValue root;
  AddToObject(root, "format", JSONValue(std::string(kFormat)));
  AddToObject(root, "version", JSONValue(kVersion));
  AddToObject(root, "clips", clips);
  AddToObject(root, "selected", selected);
  AddToObject(root, "properties", properties);
  return GetJSONUTF8String(root, true) + "\r\n";
}

SessionDocument ParseSession(const std::string& text, const fs::path& folder) {
  try {
    return Parse(text, folder);
  } catch (const SessionError&) {
    throw;
  } catch (const std::exception&) {  // a member of another kind, a number beyond its type
    throw SessionError("is damaged: a member is of another kind than it should be");
  }
}

void WriteSession(const SessionDocument& document, const fs::path& file) {
  WriteTextFile(file, FormatSession(document, FolderOf(file)));
}

void CheckCanBeReplaced(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return;  // what is none is refused by who writes
  try {
    ReadSession(file);
  } catch (const std::runtime_error&) {
    throw SessionError(Quoted(file) +
                       " exists and is no session that can be read; give another name");
  }
}

SessionDocument ReadSession(const fs::path& file) {
  TemporaryFile::ClearAbandoned(file);
  std::string text;
  try {
    text = ReadTextFile(file);
  } catch (const std::runtime_error& error) {
    throw SessionError(error.what());
  }
  try {
    return ParseSession(text, fs::weakly_canonical(FolderOf(file)));
  } catch (const SessionError& error) {
    throw SessionError(Quoted(file) + " " + error.what());
  }
}

}  // namespace orvelhost
