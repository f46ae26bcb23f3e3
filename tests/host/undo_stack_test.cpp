#include "host/session/undo_stack.h"

#include <functional>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvelhost::testing {
namespace {

using ::testing::ElementsAre;

/// Moves a number.
class AddAction : public orvel::Action {
 public:
  AddAction(int& number, int amount, const std::u16string& name, bool undoable = true,
            bool changesDocument = true)
      : Action(undoable, changesDocument, name), step(amount), number_(number) {}

  bool DoStillViable() const override { return isViable; }

  int step;
  bool isViable = true;

 private:
  // Like a control, it goes from where it was at first.
  void RedoSelf() override {
    if (!began_) start_ = number_;
    began_ = true;
    if (step == 0) throw std::runtime_error("no amount");
    number_ = start_ + step;
  }
  void UndoSelf() override { number_ = start_; }

  int& number_;
  int start_ = 0;
  bool began_ = false;
};

class UndoStackTest : public ::testing::Test {
 protected:
  UndoStackTest() {
    stack_->RegisterForActionExecutionScopeChanges([this](bool begin, bool sendSignals) {
      scopes_ += begin ? "[" : sendSignals ? "]" : ")";
      if (begin && during_) during_();
    });
  }

  boost::intrusive_ptr<AddAction> Add(int amount, const std::u16string& name = u"Add") {
    const boost::intrusive_ptr<AddAction> action(new AddAction(number_, amount, name));
    EXPECT_TRUE(stack_->Execute(action));
    return action;
  }

  int number_ = 0;
  std::string scopes_;
  std::function<void()> during_;
  boost::intrusive_ptr<UndoStack> stack_{new UndoStack};
};

TEST_F(UndoStackTest, WhatRunsWithoutUndoIsNoStep) {
  Add(1);
  const boost::intrusive_ptr<orvel::Action> silent(new AddAction(number_, 5, u"Silent"));
  EXPECT_TRUE(stack_->ExecuteWithoutUndo(silent, false));
  EXPECT_TRUE(stack_->Execute(new AddAction(number_, 7, u"Not undoable", false)));
  EXPECT_EQ(number_, 13);
  EXPECT_THAT(stack_->GetStepNames(), ElementsAre("Add"));
  EXPECT_EQ(scopes_, "[][)[]");
}

TEST_F(UndoStackTest, AnActionThatThrowsIsNoStepAndEndsItsScope) {
  Add(1);
  EXPECT_THROW(stack_->Execute(new AddAction(number_, 0, u"Broken")), std::runtime_error);
  EXPECT_THAT(stack_->GetStepNames(), ElementsAre("Add"));
  EXPECT_EQ(scopes_, "[][]");
  EXPECT_TRUE(stack_->Undo());
}

TEST_F(UndoStackTest, WithinAScopeNothingIsRecorded) {
  Add(1);
  during_ = [this] {
    during_ = nullptr;
    EXPECT_FALSE(stack_->Execute(new AddAction(number_, 5, u"Nested")));
    EXPECT_FALSE(stack_->Undo());
    EXPECT_FALSE(stack_->Redo());
    stack_->Clear();
    EXPECT_TRUE(stack_->ExecuteWithoutUndo(new AddAction(number_, 5, u"Nested"), true));
  };
  stack_->Undo();
  EXPECT_EQ(scopes_, "[][]");
  EXPECT_THAT(stack_->GetStepNames(), ElementsAre("Add"));
}

TEST_F(UndoStackTest, StepsThatCanNoLongerBeAppliedAreDropped) {
  Add(1);
  const auto dead = Add(2);
  Add(3);
  stack_->Undo();
  dead->isViable = false;
  EXPECT_TRUE(stack_->Undo());
  EXPECT_EQ(number_, 0);
  EXPECT_THAT(stack_->GetStepNames(), ElementsAre("Add", "Add"));
  dead->isViable = true;
  EXPECT_TRUE(stack_->Redo());
  EXPECT_EQ(number_, 1);
}

TEST_F(UndoStackTest, TheDocumentComesCleanAgainOnTheWayBackToWhatWasSaved) {
  Add(1);
  stack_->MarkSaved();
  Add(2);
  EXPECT_TRUE(stack_->IsModified());
  stack_->Undo();
  EXPECT_FALSE(stack_->IsModified());
  stack_->Undo();
  EXPECT_TRUE(stack_->IsModified());
  stack_->Redo();
  EXPECT_FALSE(stack_->IsModified());

  EXPECT_TRUE(stack_->Execute(new AddAction(number_, 5, u"View", true, false)));
  EXPECT_FALSE(stack_->IsModified()) << "it changes nothing of the document";
  stack_->Undo();
  stack_->Undo();
  Add(4);
  stack_->Undo();
  EXPECT_TRUE(stack_->IsModified()) << "the saved step is gone";

  stack_->MarkSaved();
  const auto dragged = Add(6);
  stack_->MarkSaved();
  dragged->step = 7;
  stack_->Execute(dragged);
  stack_->Undo();
  stack_->Redo();
  EXPECT_TRUE(stack_->IsModified()) << "the drag went on after the save";
}

}  // namespace
}  // namespace orvelhost::testing
