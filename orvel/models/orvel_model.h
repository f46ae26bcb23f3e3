#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/ref_counted.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/models/mix_type_clip_model_interface.h"
#include "orvel/models/section_model_interface.h"
#include "orvel/models/session_handler_interface.h"

namespace orvel {

struct UserPresetData;

/// What a panel talks to: the clips that it stands for, and a section model for each section of
/// their common adjustments mode, in the mode's order. There are none while the clips differ in
/// mode, have no mode, or one cannot tell it. Main thread only.
///
/// A change of a clip's mix type is never announced from inside the clip's own notification: it is
/// posted to the main thread's event loop, once for any number of changes. When the post runs, the
/// section models are made anew, model changes are signalled, and then section data.
///
/// Section data are signalled after each change that a section model signals, at the end of each
/// suspension that sends signals, and when the section models are cleared (without any values
/// then); none while signalling is suspended, and after the model change while one is posted. A
/// clip's change of mode that a listener of the model change makes at once is part of that change
/// and makes no new section models: a listener that wants them posts its change, or calls
/// `Refresh`.
///
/// Section models are let go of in whatever state of suspension they are in, so a host's creator
/// makes new ones each time.
class ORVEL_EXPORT OrvelModel : public RefCountedObject {
 public:
  /// One for each section, in the mode's order.
  using SectionModels = std::vector<boost::intrusive_ptr<SectionModelInterface>>;

  /// See `RegisterForModelChanges`.
  using ModelSignal = boost::signals2::signal<void(const OrvelModel*), CallEverySlot>;

  /// See `RegisterForSectionModelDataChanges`.
  using SectionModelDataSignal =
      boost::signals2::signal<void(const OrvelModel*, UserPresetData), CallEverySlot>;

  /// Follows the session: its selection, whether it can be worked in, and the scopes of the actions
  /// that the executor of this moment runs. Without a session handler it stays empty.
  explicit OrvelModel(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler);

  /// Stands for these clips and follows nothing. Null clips are left out.
  OrvelModel(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
             const MixTypeClipModels& clips);

  /// In the order in which they were given.
  MixTypeClipModels GetMixTypeClipModels() const { return mixTypeClipModels_; }

  /// The clip's name, "Multiple Clips Selected" (localised) for several, nothing for none.
  std::string GetModelName() const;

  /// 0, or kStatus_NoSuchModel with a null `model` when the mode has no such section.
  int GetSectionModel(const std::string& modelID,
                      boost::intrusive_ptr<SectionModelInterface>& model) const;

  /// Replaces `models` by all of them. Returns 0.
  int GetSectionModels(SectionModels& models) const;

  /// Whether the session can be worked in; true for a model of given clips.
  bool IsEnabled() const { return enabled_; }

  /// Whether every clip can be edited now.
  bool IsReady() const;

  /// Takes the selection and the session's state anew, and makes the section models anew; without a
  /// session handler only the latter. Model changes are not signalled.
  void Refresh();

  /// Silences the section models and this model until the outermost resume.
  void SuspendSignaling();

  /// Ends a suspension; does nothing without one. With `sendSignals` the outermost resume signals
  /// what was held back; without, section changes are forgotten, and a change of the mix type waits
  /// for the next one that sends.
  void ResumeSignaling(bool sendSignals);

  /// The slot for the scopes of actions: suspends at the begin, resumes at the end.
  void ActionExecutionScopeChanged(bool begin, bool sendSignals);

  /// Lets go of the section models, before clips are given another mode. When signalling is
  /// suspended, they are made anew after it resumes with signals, whether a clip changed or not.
  void ClearSectionModels();

  /// The mix type of the clips, or the clips, changed.
  boost::signals2::connection RegisterForModelChanges(const ModelSignal::slot_type& slot);

  /// Values of the sections changed; the slot receives all of them. Those that the clips do not
  /// have in common, and what comes after them in the order of the sections, are left out. The
  /// signal may come from inside the resume of a section's models: a slot that wants to run an
  /// action in answer posts it.
  boost::signals2::connection RegisterForSectionModelDataChanges(
      const SectionModelDataSignal::slot_type& slot);

 protected:
  ~OrvelModel() override;

 private:
  enum class Kind { kFollowsSelection, kForClips };

  OrvelModel(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler, Kind kind);

  void FollowSession();
  void BeginAnnouncing();
  void UpdateFromClipSelection(const MixTypeClipModels& clips);
  void UpdateMixTypeClipModels(const MixTypeClipModels& clips);
  void UpdateSectionModels();
  void BuildSectionModels(std::uint32_t update, FirstException& failure);
  void AddSectionModel(const std::string& modelID, const std::string& mode,
                       const MixTypeClipModels& clips, std::uint32_t update);
  void ReleaseSectionModels();
  void OnSessionChanged(bool enabledNow);
  void NotifyMixTypeClipModelChanged();
  void NotifyMixTypeClipModelChangedDeferred();
  void NotifySectionModelChanged();

  boost::intrusive_ptr<SessionHandlerInterface> sessionHandler_;
  boost::signals2::scoped_connection selectionConnection_;
  boost::signals2::scoped_connection sessionConnection_;
  boost::signals2::scoped_connection actionScopeConnection_;
  MixTypeClipModels mixTypeClipModels_;
  ModelSignal modelChangedSignal_;
  std::vector<boost::signals2::scoped_connection> clipModelConnections_;
  SectionModels sectionModels_;
  std::vector<boost::signals2::scoped_connection> sectionModelConnections_;
  SectionModelDataSignal sectionModelDataSignal_;
  std::uint32_t suspendCount_ = 0;
  bool enabled_;
  bool followsSelection_;
  bool mixTypeChangePending_ = false;  // came while suspended
  bool deferredNotifyPosted_ = false;  // and has not run yet
  bool sectionChangePending_ = false;  // came while that was so
  // Not while it is being made or ends: a post would outlive a model that is never done or gone.
  bool announces_ = false;
  // Numbers of the last updates begun: one that finds a later one done from within itself, by the
  // host's code, leaves it at that.
  std::uint32_t clipUpdate_ = 0;
  std::uint32_t sectionUpdate_ = 0;
};

namespace factory {

/// Makes a model that follows the session given to `Initialize`. Returns true.
ORVEL_EXPORT bool CreateOrvelModel(boost::intrusive_ptr<OrvelModel>& model);

/// Makes a model of these clips. Returns true.
ORVEL_EXPORT bool CreateOrvelModelForClips(const MixTypeClipModels& clips,
                                           boost::intrusive_ptr<OrvelModel>& model);

}  // namespace factory
}  // namespace orvel
