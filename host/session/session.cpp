#include "host/session/session.h"

#include <algorithm>
#include <system_error>
#include <unordered_set>

#include "host/audio/audio_error.h"
#include "host/audio/audio_reader.h"

namespace orvelhost {
namespace {

ClipRecord MakeRecord(const SessionClip& held) {
  ClipRecord record;
  record.source = held.source;
  record.format = held.clip->Format();
  held.clip->GetClipType(record.type);
  held.clip->GetAdjustmentsMode(record.modeID);
  held.clip->GetUserPresetGuid(record.preset);
  record.sections = held.clip->AllSectionValues();
  return record;
}

}  // namespace

SessionClip Session::MakeClip(const std::filesystem::path& source, const AudioFormat& format) {
  const boost::intrusive_ptr<Clip> clip(new Clip(source.filename().string(), format));
  analyst_.Serve(clip, source);
  return {clip, source};
}

SessionClip Session::MakeClip(const ClipRecord& record) {
  SessionClip held = MakeClip(record.source, record.format);
  const auto& clip = held.clip;
  clip->SetAdjustmentsMode(record.modeID);
  clip->SetClipType(record.type);
  clip->SetUserPresetGuid(record.preset);
  for (const auto& [modelID, values] : record.sections) clip->SectionValues(modelID) = values;
  return held;
}

void Session::AddClips(const std::vector<std::filesystem::path>& files) {
  std::vector<SessionClip> added;
  for (const auto& file : files) {
    const AudioReader reader(file);
    added.push_back(MakeClip(AbsolutePath(file), reader.Format()));
  }
  std::ranges::move(added, std::back_inserter(clips_));
}

std::vector<std::size_t> Session::FindMissingFiles() const {
  std::vector<std::size_t> missing;
  for (std::size_t i = 0; i < clips_.size(); ++i) {
    std::error_code error;
    if (!std::filesystem::exists(clips_[i].source, error)) missing.push_back(i);
  }
  return missing;
}

bool Session::AwaitMeasurements(const std::function<bool()>& goOn) {
  for (TakeMeasurements(); analyst_.IsBusy(); TakeMeasurements()) {
    if (!analyst_.Wait(goOn)) return false;
  }
  return true;
}

void Session::Select(const orvel::MixTypeClipModels& clips) {
  selected_ = clips;
  const std::vector<std::size_t> selection = GetSelection();
  firstSelected_ = selection.empty() ? nullptr : clips_[selection.front()].clip;
  selectionChanged_(selected_);
}

void Session::Select(const std::vector<std::size_t>& indices) {
  orvel::MixTypeClipModels clips;
  for (const std::size_t index : indices) clips.push_back(clips_.at(index).clip);
  Select(clips);
}

std::vector<std::size_t> Session::GetSelection() const {
  std::vector<std::size_t> selection;
  std::unordered_set<const orvel::MixTypeClipModelInterface*> selected;
  for (const auto& clip : selected_) selected.insert(clip.get());
  for (std::size_t i = 0; i < clips_.size() && selection.size() < selected.size(); ++i) {
    if (selected.contains(clips_[i].clip.get())) selection.push_back(i);
  }
  return selection;
}

SessionDocument Session::GetDocument() const {
  SessionDocument document;
  for (const SessionClip& held : clips_) document.clips.push_back(MakeRecord(held));
  document.selected = GetSelection();
  document.configurations = configurations_;
  return document;
}

void Session::SetDocument(const SessionDocument& document) {
  documentChanged_(false, true);
  Select(orvel::MixTypeClipModels());
  for (const SessionClip& held : clips_) analyst_.Cancel(held.clip);
  clips_.clear();
  for (const ClipRecord& record : document.clips) clips_.push_back(MakeClip(record));
  configurations_ = document.configurations;
  documentChanged_(true, false);
  Select(document.selected);
}

boost::signals2::connection Session::RegisterForClipSelectionChanges(
    const SelectionSignal::slot_type& slot) {
  return selectionChanged_.connect(slot);
}

boost::signals2::connection Session::RegisterForSessionChanges(
    const SessionSignal::slot_type& slot) {
  return sessionChanged_.connect(slot);
}

boost::signals2::connection Session::RegisterForDocumentChanges(
    const DocumentSignal::slot_type& slot) {
  return documentChanged_.connect(slot);
}

bool Session::GetConfigurationPresets(std::vector<orvel::ConfigPreset>& presets) {
  presets = configurations_;
  return true;
}

bool Session::SetConfigurationPresets(const std::vector<orvel::ConfigPreset>& presets) {
  configurations_ = presets;
  return true;
}

}  // namespace orvelhost
