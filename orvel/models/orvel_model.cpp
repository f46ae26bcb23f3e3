#include "orvel/models/orvel_model.h"

#include <algorithm>

#include "orvel/actions/action_executor.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/event_loop.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/localizer.h"
#include "orvel/core/text.h"
#include "orvel/definitions/lifecycle.h"
#include "orvel/models/clip_keys.h"
#include "orvel/models/clip_model_utils.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "orvel/models/user_preset_utils.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {
namespace {

constexpr const char* kMultipleClipsSelected =
    "$$$/orvel/MultipleClipsSelected=Multiple Clips Selected";

}  // namespace

OrvelModel::OrvelModel(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                       Kind kind)
    : sessionHandler_(sessionHandler),
      enabled_(kind == Kind::kForClips),
      followsSelection_(kind == Kind::kFollowsSelection) {}

// Through the constructor above, so that the destructor runs when a host's code throws here.
OrvelModel::OrvelModel(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler)
    : OrvelModel(sessionHandler, Kind::kFollowsSelection) {
  const SelfHold hold(*this);
  if (sessionHandler_) FollowSession();
  BeginAnnouncing();
}

OrvelModel::OrvelModel(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                       const MixTypeClipModels& clips)
    : OrvelModel(sessionHandler, Kind::kForClips) {
  const SelfHold hold(*this);
  UpdateFromClipSelection(clips);
  BeginAnnouncing();
}

void OrvelModel::FollowSession() {
  if (const auto executor = GetOrvelActionExecutor()) {
    actionScopeConnection_ = executor->RegisterForActionExecutionScopeChanges(
        [this](bool begin, bool send) { ActionExecutionScopeChanged(begin, send); });
  }
  selectionConnection_ = sessionHandler_->RegisterForClipSelectionChanges(
      [this](const MixTypeClipModels& clips) { UpdateFromClipSelection(clips); });
  sessionConnection_ = sessionHandler_->RegisterForSessionChanges(
      [this](bool enabledNow) { OnSessionChanged(enabledNow); });
  Refresh();
}

void OrvelModel::BeginAnnouncing() {
  announces_ = true;
  if (mixTypeChangePending_) NotifyMixTypeClipModelChanged();
}

OrvelModel::~OrvelModel() {
  const SelfHold hold(*this);
  announces_ = false;
  FirstException ignored;  // nobody is left to be told
  while (!mixTypeClipModels_.empty()) {
    const auto clip = mixTypeClipModels_.front();
    mixTypeClipModels_.pop_front();
    ignored.Catch([&clip] { clip->AttachToModel(false, nullptr); });
  }
  clipModelConnections_.clear();
  sectionModelConnections_.clear();
  modelChangedSignal_.disconnect_all_slots();
  sectionModelDataSignal_.disconnect_all_slots();
  actionScopeConnection_.disconnect();
  sessionConnection_.disconnect();
  selectionConnection_.disconnect();
}

std::string OrvelModel::GetModelName() const {
  if (mixTypeClipModels_.empty()) return {};
  return mixTypeClipModels_.size() == 1 ? mixTypeClipModels_.front()->GetName()
                                        : UTF16to8(ZString(kMultipleClipsSelected));
}

int OrvelModel::GetSectionModel(const std::string& modelID,
                                boost::intrusive_ptr<SectionModelInterface>& model) const {
  model = nullptr;
  const SectionModels sections = sectionModels_;
  for (const auto& section : sections) {
    if (section->GetName() == modelID) model = section;
  }
  return model ? kStatus_Success : kStatus_NoSuchModel;
}

int OrvelModel::GetSectionModels(SectionModels& models) const {
  models = sectionModels_;
  return kStatus_Success;
}

bool OrvelModel::IsReady() const {
  const MixTypeClipModels clips = mixTypeClipModels_;  // a host may select others meanwhile
  return std::ranges::all_of(clips, [](const auto& clip) { return clip->IsReady(); });
}

void OrvelModel::SuspendSignaling() {
  if (++suspendCount_ > 1) return;
  FirstException failure;
  const SectionModels sections = sectionModels_;
  for (const auto& section : sections) failure.Catch([&] { section->SuspendSignaling(); });
  failure.Rethrow();
}

void OrvelModel::ResumeSignaling(bool sendSignals) {
  if (suspendCount_ == 0 || --suspendCount_ > 0) return;
  const boost::intrusive_ptr<OrvelModel> self(this);  // a listener may let go of it
  const SectionModels sections = sectionModels_;      // and may have them made anew
  FirstException failure;
  for (const auto& section : sections) {
    failure.Catch([&] { section->ResumeSignaling(sendSignals); });
  }
  if (sendSignals) {
    if (mixTypeChangePending_) failure.Catch([this] { NotifyMixTypeClipModelChanged(); });
    failure.Catch([this] { NotifySectionModelChanged(); });
  }
  failure.Rethrow();
}

void OrvelModel::ActionExecutionScopeChanged(bool begin, bool sendSignals) {
  if (begin) {
    SuspendSignaling();
  } else {
    ResumeSignaling(sendSignals);
  }
}

// A clip or a section model of a host that throws hinders none of the others.
void OrvelModel::UpdateMixTypeClipModels(const MixTypeClipModels& clips) {
  MixTypeClipModels coming = clips;  // the host's list may change while its clips are told
  const auto update = ++clipUpdate_;
  FirstException failure;
  while (!mixTypeClipModels_.empty()) {
    const auto clip = mixTypeClipModels_.front();
    mixTypeClipModels_.pop_front();
    failure.Catch([&clip] { clip->AttachToModel(false, nullptr); });
    if (update != clipUpdate_) return failure.Rethrow();
  }
  clipModelConnections_.clear();
  for (; !coming.empty(); coming.pop_front()) {
    const auto& clip = coming.front();
    if (!clip) continue;
    failure.Catch([&] {
      clipModelConnections_.emplace_back(
          clip->RegisterForModelChanges([this] { NotifyMixTypeClipModelChanged(); }));
    });
    mixTypeClipModels_.push_back(clip);
    failure.Catch([&] { clip->AttachToModel(true, this); });
    if (update != clipUpdate_) return failure.Rethrow();
  }
  failure.Rethrow();
}

void OrvelModel::UpdateSectionModels() {
  const auto update = ++sectionUpdate_;
  FirstException failure;
  failure.Catch([this] { ReleaseSectionModels(); });
  failure.Catch([&] { BuildSectionModels(update, failure); });
  failure.Rethrow();
}

void OrvelModel::BuildSectionModels(std::uint32_t update, FirstException& failure) {
  const MixTypeClipModels clips = mixTypeClipModels_;  // a creator may lead to others
  std::string mode;
  if (modelutils::GetAdjustmentsMode(clips, mode) != kStatus_Success) return;
  if (mode == kAdjustmentsModeUnknown || ModeDescriptorCache::Get() == nullptr) return;
  std::vector<SectionDescriptor> descriptors;
  ModeDescriptorCache::Get()->GetSectionDescriptors(mode, descriptors);
  for (const auto& descriptor : descriptors) {
    failure.Catch([&] { AddSectionModel(descriptor.modelID, mode, clips, update); });
  }
}

// Nothing is added once a newer update has run: a host's code may lead to one from here.
void OrvelModel::AddSectionModel(const std::string& modelID, const std::string& mode,
                                 const MixTypeClipModels& clips, std::uint32_t update) {
  if (update != sectionUpdate_) return;
  boost::intrusive_ptr<SectionModelInterface> section;
  factory::CreateModelForClips(modelID, mode, GetModelConfiguration(mode, modelID), sessionHandler_,
                               clips, followsSelection_, section);
  if (!section || update != sectionUpdate_) return;
  section->SetActive(true);
  if (suspendCount_ > 0) section->SuspendSignaling();
  if (update != sectionUpdate_) return section->SetActive(false);
  sectionModels_.push_back(section);
  sectionModelConnections_.emplace_back(
      section->RegisterForModelChanges([this](int, float) { NotifySectionModelChanged(); }));
}

void OrvelModel::ClearSectionModels() {
  // Of the clips that change meanwhile this model may not stand for one, and none may change.
  if (suspendCount_ > 0) mixTypeChangePending_ = true;
  ReleaseSectionModels();
}

void OrvelModel::ReleaseSectionModels() {
  const boost::intrusive_ptr<OrvelModel> self(this);
  const auto update = sectionUpdate_;
  FirstException failure;
  {
    const SectionModels sections = sectionModels_;
    for (const auto& section : sections) failure.Catch([&] { section->SetActive(false); });
    if (update == sectionUpdate_) {  // else these are gone, and newer ones stand in their place
      sectionModels_.clear();
      sectionModelConnections_.clear();
    }
  }
  failure.Catch([this] { NotifySectionModelChanged(); });
  failure.Rethrow();
}

void OrvelModel::UpdateFromClipSelection(const MixTypeClipModels& clips) {
  const boost::intrusive_ptr<OrvelModel> self(this);
  FirstException failure;
  failure.Catch([this] { SuspendSignaling(); });
  failure.Catch([&] { UpdateMixTypeClipModels(clips); });
  failure.Catch([&] { UpdateSectionModels(); });
  failure.Catch([&] { ResumeSignaling(false); });  // the section models made just now
  failure.Catch([&] { NotifyMixTypeClipModelChanged(); });
  failure.Rethrow();
}

void OrvelModel::Refresh() {
  const boost::intrusive_ptr<OrvelModel> self(this);
  FirstException failure;
  if (sessionHandler_) {
    failure.Catch(
        [this] { UpdateMixTypeClipModels(sessionHandler_->GetSelectedMixTypeClipModels()); });
    failure.Catch([this] { enabled_ = sessionHandler_->IsSessionEnabled(); });
  }
  failure.Catch([this] { UpdateSectionModels(); });
  failure.Rethrow();
}

void OrvelModel::OnSessionChanged(bool enabledNow) {
  const boost::intrusive_ptr<OrvelModel> self(this);
  enabled_ = enabledNow;
  FirstException failure;
  failure.Catch([this] { Refresh(); });
  failure.Catch([this] { NotifyMixTypeClipModelChanged(); });
  failure.Rethrow();
}

void OrvelModel::NotifyMixTypeClipModelChanged() {
  if (suspendCount_ > 0 || !announces_) {
    mixTypeChangePending_ = true;
    return;
  }
  if (deferredNotifyPosted_) return;
  deferredNotifyPosted_ = true;
  try {
    const boost::intrusive_ptr<OrvelModel> self(this);  // lives until the post has run
    GetRegisteredMainThread()->Post([self] { self->NotifyMixTypeClipModelChangedDeferred(); });
  } catch (...) {
    deferredNotifyPosted_ = false;
    throw;
  }
}

void OrvelModel::NotifyMixTypeClipModelChangedDeferred() {
  FirstException failure;
  failure.Catch([this] { UpdateSectionModels(); });
  failure.Catch([this] { modelChangedSignal_(this); });
  mixTypeChangePending_ = false;
  deferredNotifyPosted_ = false;
  if (sectionChangePending_) {
    sectionChangePending_ = false;
    failure.Catch([this] { NotifySectionModelChanged(); });
  }
  failure.Rethrow();
}

void OrvelModel::NotifySectionModelChanged() {
  if (deferredNotifyPosted_) {
    sectionChangePending_ = true;
    return;
  }
  if (sectionChangePending_ || suspendCount_ > 0 || !announces_) return;
  if (sectionModelDataSignal_.empty()) return;  // reading all values of all clips takes its time
  const boost::intrusive_ptr<OrvelModel> self(this);
  const SectionModels sections = sectionModels_;
  UserPresetData data;
  modelutils::GetUserPresetData(sections, data);
  sectionModelDataSignal_(this, data);
}

boost::signals2::connection OrvelModel::RegisterForModelChanges(
    const ModelSignal::slot_type& slot) {
  return modelChangedSignal_.connect(slot);
}

boost::signals2::connection OrvelModel::RegisterForSectionModelDataChanges(
    const SectionModelDataSignal::slot_type& slot) {
  return sectionModelDataSignal_.connect(slot);
}

bool factory::CreateOrvelModel(boost::intrusive_ptr<OrvelModel>& model) {
  model = new OrvelModel(GetSessionHandler());
  return true;
}

bool factory::CreateOrvelModelForClips(const MixTypeClipModels& clips,
                                       boost::intrusive_ptr<OrvelModel>& model) {
  model = new OrvelModel(GetSessionHandler(), clips);
  return true;
}

}  // namespace orvel
