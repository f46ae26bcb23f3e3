#pragma once

#include <string>

#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>

#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/guid.h"
#include "orvel/core/ref_counted.h"
#include "orvel/models/clip_type.h"

namespace orvel {

class OrvelModel;

/// One clip, as far as its mix type goes; implemented by the host. The operations that give an int
/// return 0 for success and a status of the host's own otherwise. A clip that leaves a setter out
/// refuses with status 1, and so cannot be given a mode or a preset.
class ORVEL_EXPORT MixTypeClipModelInterface : public virtual RefCountedObject {
 public:
  /// See `RegisterForModelChanges`.
  using ChangeSignal = boost::signals2::signal<void(), CallEverySlot>;

  /// What the clip holds.
  virtual int GetClipType(ClipType& type) = 0;

  /// Keeps the type with the clip.
  virtual int SetClipType(ClipType) { return 1; }

  /// The id of the clip's mode; `kAdjustmentsModeUnknown` when it has none.
  virtual int GetAdjustmentsMode(std::string& modeID) = 0;

  /// Keeps the mode with the clip. Its values are written apart, by whoever changes the mode.
  virtual int SetAdjustmentsMode(const std::string& /*modeID*/) { return 1; }

  /// The preset that the clip's values came from; null when it has none.
  virtual int GetUserPresetGuid(Guid& guid) = 0;

  /// Keeps the guid with the clip. It changes no value.
  virtual int SetUserPresetGuid(const Guid&) { return 1; }

  /// Whether the clip can be edited now.
  virtual bool IsReady() = 0;

  /// The clip's name, as a panel shows it.
  virtual std::string GetName() = 0;

  /// The slot is called after each change of the clip type, the mode or the preset.
  virtual boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) = 0;

  /// Tells the clip which model stands for it: (true, model) when one takes it in, (false, null)
  /// when it lets it go. Where several models follow the selection, each tells it so.
  virtual void AttachToModel(bool attached, OrvelModel* model) = 0;
};

}  // namespace orvel
