#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <boost/signals2/connection.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/orvel.h"

namespace orvelhost {

/// Runs actions and remembers those that can be undone. Each run, undo and redo is bracketed by the
/// scope notification, also when it throws. An action that is executed again while it is the last
/// step, which a control does while it is dragged, runs again and stays that one step. Main thread
/// only.
///
/// While an action runs, `Execute`, `Undo`, `Redo` and `Clear` refuse; `ExecuteWithoutUndo` runs
/// inside of the scope there is.
class UndoStack : public orvel::ActionExecutor {
 public:
  /// False for null, and while an action runs. An exception of the action goes on; it is then no
  /// step. What was undone can no longer be redone.
  bool Execute(const boost::intrusive_ptr<orvel::Action>& action) override;

  /// `sendSignals` says whether what the scope held back is sent at its end.
  bool ExecuteWithoutUndo(const boost::intrusive_ptr<orvel::Action>& action,
                          bool sendSignals) override;

  boost::signals2::connection RegisterForActionExecutionScopeChanges(
      const ScopeSignal::slot_type& slot) override;

  /// Undo the last step and redo the next. Steps that can no longer be applied are dropped first.
  /// False when there is none.
  bool Undo();
  bool Redo();

  /// The names of the steps, oldest first, and how many of them are done.
  std::vector<std::string> GetStepNames() const;
  std::size_t GetDoneCount() const { return done_; }

  /// Forgets all steps: a document was opened.
  void Clear();

  /// Whether the document differs from what it was at the last `MarkSaved` or `Clear`. Undoing the
  /// steps since then makes it clean again.
  bool IsModified() const;
  void MarkSaved();

  /// Notes a change of the document that is no step.
  void MarkModified() { isModifiedOtherwise_ = true; }

 private:
  template <typename Work>
  void RunInScope(bool sendSignals, const Work& work);
  void Record(const boost::intrusive_ptr<orvel::Action>& action);

  using Step = boost::intrusive_ptr<orvel::Action>;

  std::vector<Step> steps_;
  std::size_t done_ = 0;
  std::size_t saved_ = 0;   // how many steps were done then
  bool canBeClean_ = true;  // the steps up to that place are still there
  bool isModifiedOtherwise_ = false;
  bool isRunning_ = false;
  ScopeSignal scopeChanged_;
};

}  // namespace orvelhost
