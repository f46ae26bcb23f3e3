#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/session/effect_chain.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A clip of the session: its mix type, the values of its sections and the effects that these give.
class Clip : public orvel::MixTypeClipModelInterface {
 public:
  Clip(const std::string& name, int channelCount) : name_(name), channelCount_(channelCount) {}

  // Each returns 0. A setter announces a change, and nothing when the value stays the same.
  int GetClipType(orvel::ClipType& type) override;
  int SetClipType(orvel::ClipType type) override;
  int GetAdjustmentsMode(std::string& modeID) override;
  int SetAdjustmentsMode(const std::string& modeID) override;
  int GetUserPresetGuid(orvel::Guid& guid) override;
  int SetUserPresetGuid(const orvel::Guid& guid) override;

  bool IsReady() override { return true; }
  std::string GetName() override { return name_; }
  boost::signals2::connection RegisterForModelChanges(const ChangeSignal::slot_type& slot) override;

  /// Does nothing: no path of this host leads from a clip to its model.
  void AttachToModel(bool attached, orvel::OrvelModel* model) override;

  int ChannelCount() const { return channelCount_; }

  EffectChain& Chain() { return chain_; }
  const EffectChain& Chain() const { return chain_; }

  /// The normalized values of a section by parameter id, empty until its first model fills them.
  /// They stay with the clip, while section models come and go with the selection.
  std::vector<float>& SectionValues(const std::string& modelID) { return sectionValues_[modelID]; }

 private:
  template <typename T>
  int Set(T& field, const T& value);

  std::string name_;
  int channelCount_;
  orvel::ClipType type_ = orvel::type_not_set;
  std::string modeID_;
  orvel::Guid presetGuid_;
  EffectChain chain_;
  std::map<std::string, std::vector<float>> sectionValues_;
  ChangeSignal changed_;
};

}  // namespace orvelhost
