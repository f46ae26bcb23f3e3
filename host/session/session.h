#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/session/clip.h"
#include "host/session/clip_analyst.h"
#include "host/session/session_document.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A clip of the session, and the audio file that it came from.
struct SessionClip {
  boost::intrusive_ptr<Clip> clip;
  std::filesystem::path source;  ///< absolute
};

/// The document: the clips that are worked on, in the order in which they were added, which of them
/// are selected, and the configurations of their sections. There always is one, at first without
/// clips, and it can always be worked in.
class Session : public orvel::SessionHandlerInterface {
 public:
  /// Adds a clip for each audio file, all or none. Raises AudioError for one that cannot be read or
  /// has no audio.
  void AddClips(const std::vector<std::filesystem::path>& files);
  const std::vector<SessionClip>& GetClips() const { return clips_; }

  /// The clips whose files are not there, as indices. They keep all that they hold.
  std::vector<std::size_t> FindMissingFiles() const;

  // ---- What sections want to know of their clips is measured on another thread.

  /// Tells the clips what was measured meanwhile. Nothing that was measured changes a clip before.
  void TakeMeasurements() { results_->Drain(); }
  /// Waits until all that was asked for is measured, and tells the clips; false when `goOn`, which
  /// is asked several times a second, gave false before.
  bool AwaitMeasurements(const std::function<bool()>& goOn);
  /// How far the measurement of a clip has come, 0..1; -1 when nobody knows.
  double GetMeasured(const boost::intrusive_ptr<Clip>& clip) const { return analyst_.Done(clip); }
  /// What is known of contents; for work on other threads, too.
  AnalysisCache& GetAnalyses() { return analyses_; }

  /// Selects exactly these clips and tells so.
  void Select(const orvel::MixTypeClipModels& clips);
  /// The same for clips of the session, by their indices, which must be valid.
  void Select(const std::vector<std::size_t>& indices);

  /// The selected clips of the session, as indices in ascending order.
  std::vector<std::size_t> GetSelection() const;
  /// The first of them; null without one.
  const boost::intrusive_ptr<Clip>& FirstSelected() const { return firstSelected_; }

  /// The session as a value, and another one in its place: that the document closes is told before,
  /// and that there is another one after.
  SessionDocument GetDocument() const;
  void SetDocument(const SessionDocument& document);

  boost::signals2::connection RegisterForClipSelectionChanges(
      const SelectionSignal::slot_type& slot) override;
  boost::signals2::connection RegisterForSessionChanges(
      const SessionSignal::slot_type& slot) override;
  boost::signals2::connection RegisterForDocumentChanges(
      const DocumentSignal::slot_type& slot) override;
  orvel::MixTypeClipModels GetSelectedMixTypeClipModels() override { return selected_; }
  bool IsSessionEnabled() override { return true; }
  bool GetConfigurationPresets(std::vector<orvel::ConfigPreset>& presets) override;
  bool SetConfigurationPresets(const std::vector<orvel::ConfigPreset>& presets) override;

 private:
  SessionClip MakeClip(const std::filesystem::path& source, const AudioFormat& format);
  SessionClip MakeClip(const ClipRecord& record);

  std::vector<SessionClip> clips_;
  orvel::MixTypeClipModels selected_;
  boost::intrusive_ptr<Clip> firstSelected_;
  std::vector<orvel::ConfigPreset> configurations_;
  SelectionSignal selectionChanged_;
  SessionSignal sessionChanged_;
  DocumentSignal documentChanged_;
  AnalysisCache analyses_;
  boost::intrusive_ptr<orvel::QueuedEventLoop> results_{new orvel::QueuedEventLoop};
  ClipAnalyst analyst_{analyses_, results_};
};

}  // namespace orvelhost
