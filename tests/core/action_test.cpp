#include "orvel/core/action.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace orvel {
namespace {

class Step : public Action {
 public:
  Step(std::string& log, char name) : Action(true, true, u"Step"), log_(log), name_(name) {}
  bool DoStillViable() const override { return viable; }
  bool viable = true;
  bool throws = false;

 private:
  void RedoSelf() override { Log('+'); }
  void UndoSelf() override { Log('-'); }
  void Log(char sign) {
    if (throws) throw std::runtime_error("model");
    log_ += {sign, name_};
  }
  std::string& log_;
  char name_;
};

// Can be done and not be undone.
class Stubborn : public Action {
 public:
  Stubborn() : Action(true, true, u"Stubborn") {}

 private:
  void RedoSelf() override {}
  void UndoSelf() override { throw "not even a std::exception"; }
};

class MultiActionTest : public ::testing::Test {
 protected:
  MultiActionTest() {
    for (const auto& step : {a, b, c}) multi->AddAction(step);
  }
  std::string log;
  boost::intrusive_ptr<Step> a{new Step(log, 'a')};
  boost::intrusive_ptr<Step> b{new Step(log, 'b')};
  boost::intrusive_ptr<Step> c{new Step(log, 'c')};
  boost::intrusive_ptr<MultiAction> multi{new MultiAction(u"Change Volume")};
};

TEST_F(MultiActionTest, RedoesInOrderAndUndoesInReverse) {
  multi->AddAction(nullptr);
  EXPECT_EQ(std::distance(multi->begin(), multi->end()), 3);
  multi->Redo();
  multi->Undo();
  EXPECT_EQ(log, "+a+b+c-c-b-a");
}

TEST_F(MultiActionTest, AChildThatFailsLeavesNothingHalfDone) {
  c->throws = true;
  EXPECT_THROW(multi->Redo(), std::runtime_error);
  EXPECT_EQ(log, "+a+b-b-a");
  log.clear();
  c->throws = false;
  a->throws = true;
  EXPECT_THROW(multi->Undo(), std::runtime_error);
  EXPECT_EQ(log, "-c-b+b+c");
}

TEST_F(MultiActionTest, TheFirstFailureIsTheOneThatIsTold) {
  c->throws = true;
  boost::intrusive_ptr<Stubborn> stubborn(new Stubborn);
  boost::intrusive_ptr<MultiAction> outer(new MultiAction(u"Outer"));
  for (const boost::intrusive_ptr<Action>& child :
       {boost::intrusive_ptr<Action>(a), boost::intrusive_ptr<Action>(stubborn),
        boost::intrusive_ptr<Action>(c)}) {
    outer->AddAction(child);
  }
  EXPECT_THROW(outer->Redo(), std::runtime_error);
  EXPECT_EQ(log, "+a-a");
}

TEST_F(MultiActionTest, IsViableWhileEveryChildIs) {
  EXPECT_TRUE(multi->DoStillViable());
  b->viable = false;
  EXPECT_FALSE(multi->DoStillViable());
}

TEST_F(MultiActionTest, IsNamedForTheMenu) {
  EXPECT_EQ(multi->GetActionString(), u"Change Volume");
  EXPECT_EQ(multi->GetUndoDescription(), u"Undo Change Volume");
  EXPECT_EQ(multi->GetRedoDescription(), u"Redo Change Volume");
  multi->SetActionType(u"Kind");
  EXPECT_EQ(multi->GetActionType(), u"Kind");
}

}  // namespace
}  // namespace orvel
