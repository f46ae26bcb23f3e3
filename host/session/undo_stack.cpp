#include "host/session/undo_stack.h"

#include <algorithm>
#include <exception>

namespace orvelhost {
namespace {

bool ChangesDocument(const boost::intrusive_ptr<orvel::Action>& action) {
  return action->ChangesDocument();
}

}  // namespace

// The scope ends whatever happens in it; the first exception goes on afterwards.
template <typename Work>
void UndoStack::RunInScope(bool sendSignals, const Work& work) {
  const boost::intrusive_ptr<UndoStack> self(this);
  std::exception_ptr failure;
  const auto attempt = [&failure](const auto& part) {
    try {
      part();
    } catch (...) {
      if (!failure) failure = std::current_exception();
    }
  };
  isRunning_ = true;
  attempt([&] {
    scopeChanged_(true, sendSignals);
    work();
  });
  attempt([&] { scopeChanged_(false, sendSignals); });
  isRunning_ = false;
  if (failure) std::rethrow_exception(failure);
}

bool UndoStack::Execute(const boost::intrusive_ptr<orvel::Action>& action) {
  if (!action || isRunning_) return false;
  RunInScope(true, [&] {
    action->Redo();
    Record(action);
  });
  return true;
}

void UndoStack::Record(const Step& action) {
  if (!action->IsUndoable()) {
    isModifiedOtherwise_ |= action->ChangesDocument();
    return;
  }
  const bool isAgain = done_ > 0 && steps_[done_ - 1] == action;
  // When the document was saved after that step, the step made another change.
  if (saved_ > done_ || (isAgain && saved_ == done_)) canBeClean_ = false;
  steps_.resize(done_);
  if (isAgain) return;
  steps_.push_back(action);
  ++done_;
}

bool UndoStack::ExecuteWithoutUndo(const boost::intrusive_ptr<orvel::Action>& action,
                                   bool sendSignals) {
  if (!action) return false;
  const auto work = [&] {
    action->Redo();
    isModifiedOtherwise_ |= action->ChangesDocument();
  };
  if (isRunning_) {
    work();
  } else {
    RunInScope(sendSignals, work);
  }
  return true;
}

boost::signals2::connection UndoStack::RegisterForActionExecutionScopeChanges(
    const ScopeSignal::slot_type& slot) {
  return scopeChanged_.connect(slot);
}

bool UndoStack::Undo() {
  if (isRunning_) return false;
  while (done_ > 0 && !steps_[done_ - 1]->DoStillViable()) {
    steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(--done_));
    canBeClean_ = canBeClean_ && saved_ <= done_;
  }
  if (done_ == 0) return false;
  RunInScope(true, [&] {
    steps_[done_ - 1]->Undo();
    --done_;
  });
  return true;
}

bool UndoStack::Redo() {
  if (isRunning_) return false;
  while (done_ < steps_.size() && !steps_[done_]->DoStillViable()) {
    steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(done_));
    canBeClean_ = canBeClean_ && saved_ <= done_;
  }
  if (done_ == steps_.size()) return false;
  RunInScope(true, [&] {
    steps_[done_]->Redo();
    ++done_;
  });
  return true;
}

std::vector<std::string> UndoStack::GetStepNames() const {
  std::vector<std::string> names;
  for (const Step& step : steps_) names.push_back(orvel::UTF16to8(step->GetActionString()));
  return names;
}

void UndoStack::Clear() {
  if (isRunning_) return;
  steps_.clear();
  done_ = 0;
  MarkSaved();
}

bool UndoStack::IsModified() const {
  if (isModifiedOtherwise_ || !canBeClean_) return true;
  const auto [from, to] = std::minmax(saved_, done_);
  return std::any_of(steps_.begin() + static_cast<std::ptrdiff_t>(from),
                     steps_.begin() + static_cast<std::ptrdiff_t>(to), &ChangesDocument);
}

void UndoStack::MarkSaved() {
  saved_ = done_;
  canBeClean_ = true;
  isModifiedOtherwise_ = false;
}

}  // namespace orvelhost
