#pragma once

#include <stdexcept>
#include <string>

#include <boost/signals2/connection.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/catalogue/preset_store.h"
#include "host/session/host.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// Why something cannot be done in the session, in one line for a person.
class EditError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The selected clips as the library sees them, and the way on which they are changed: what the
/// editors of a session have in common. Main thread only.
class SelectedClips {
 public:
  /// One at a time; the host must outlive it.
  explicit SelectedClips(const Host& host);

  Session& GetSession() const { return *host_.GetSession(); }
  UndoStack& GetUndoStack() const { return *host_.GetUndoStack(); }
  ActivityLog& GetLog() const { return host_.GetLog(); }
  const PresetStore& GetStore() const { return store_; }
  const boost::intrusive_ptr<orvel::OrvelModel>& GetModel() const { return model_; }

  /// Raises EditError when no clip is selected.
  void Require() const;
  /// The mode that the clips have in common, and their sections; raise EditError without one.
  std::string GetMode() const;
  orvel::OrvelModel::SectionModels GetSections() const;

  /// Carries out a step, and lets the library announce what it put off.
  void Execute(const boost::intrusive_ptr<orvel::Action>& action) const;
  /// The same after a change that is no step.
  void Announce() const;

 private:
  const Host& host_;
  PresetStore store_;
  boost::intrusive_ptr<orvel::OrvelModel> model_;
  boost::signals2::scoped_connection configured_;
};

}  // namespace orvelhost
