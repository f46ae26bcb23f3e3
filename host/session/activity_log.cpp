#include "host/session/activity_log.h"

#include <cerrno>
#include <ctime>
#include <utility>

#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

using teskcore::serialization::AddToObject;
using teskcore::serialization::GetJSONUTF8String;
using teskcore::serialization::JSONValue;

constexpr char kPresetChannel[] = "app.Presets";
constexpr int kPresetLevel = 3;  // with the causes

std::string Now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[sizeof "0000-00-00T00:00:00Z"];
  std::strftime(text, sizeof text, "%FT%TZ", &parts);
  return text;
}

AudioError CannotWrite(const std::filesystem::path& file) { return {"write the log", file, errno}; }

}  // namespace

ActivityLog::ActivityLog(const std::filesystem::path& file) : name_(file) {
  if (!file.empty()) {
    file_.open(file, std::ios::app);
    if (!file_) throw CannotWrite(file);
  }
  teskcore::debug::SetTraceSink([this](const std::string& channel, int level,
                                       const std::string& text) { OnTrace(channel, level, text); });
  teskcore::debug::SetTraceLevel(kPresetChannel, kPresetLevel);
  orvel::UsageLogger::Get().SetSink([this](const orvel::UsageEvent& event) { OnUsage(event); });
}

ActivityLog::~ActivityLog() {
  orvel::UsageLogger::Get().SetSink({});
  teskcore::debug::SetTraceLevel(kPresetChannel, 0);
  teskcore::debug::SetTraceSink({});
}

std::vector<std::string> ActivityLog::TakeTraces() { return std::exchange(traces_, {}); }

void ActivityLog::Write(const char* kind, JSONValue entry) {
  if (!file_.is_open()) return;
  AddToObject(entry, "time", JSONValue(Now()));
  AddToObject(entry, "kind", JSONValue(std::string(kind)));
  file_ << GetJSONUTF8String(entry, false) << std::endl;  // a crash shall not take it along
  if (!file_ && fault_.empty()) fault_ = CannotWrite(name_).what();
}

void ActivityLog::OnTrace(const std::string& channel, int level, const std::string& text) {
  traces_.push_back(text);
  JSONValue entry;
  AddToObject(entry, "channel", JSONValue(channel));
  AddToObject(entry, "level", JSONValue(std::int64_t{level}));
  AddToObject(entry, "text", JSONValue(text));
  Write("trace", entry);
}

void ActivityLog::OnUsage(const orvel::UsageEvent& event) {
  JSONValue entry;
  AddToObject(entry, "name", JSONValue(event.name));
  AddToObject(entry, "category", JSONValue(event.category));
  AddToObject(entry, "subcategory", JSONValue(event.subcategory));
  for (const auto& [name, held] : event.fields) {
    std::visit(
        [&entry, &name = name](const auto& value) { AddToObject(entry, name, JSONValue(value)); },
        held);
  }
  Write("usage", entry);
}

}  // namespace orvelhost
