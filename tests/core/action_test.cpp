#include "orvel/core/action.h"

#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace orvel {
namespace {

class Step : public Action {
 public:
  Step(std::string& log, char name) : Action(true, true, u"Step"), log_(log), name_(name) {}
  bool DoStillViable() const override { return viable; }
  bool viable = true;
  std::string failing;  // the signs of what throws

 private:
  void RedoSelf() override { Log('+'); }
  void UndoSelf() override {
    if (failing == "-") throw "not even a std::exception";
    Log('-');
  }
  void Log(char sign) {
    if (failing.find(sign) != failing.npos) throw std::runtime_error("model");
    log_ += {sign, name_};
  }
  std::string& log_;
  char name_;
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

TEST_F(MultiActionTest, RedoesInOrderAndUndoesInReverseAndLeavesNothingHalfDone) {
  multi->AddAction(nullptr);
  multi->Redo();
  multi->Undo();
  EXPECT_EQ(std::exchange(log, {}), "+a+b+c-c-b-a");
  c->failing = "+";
  EXPECT_THROW(multi->Redo(), std::runtime_error);
  EXPECT_EQ(std::exchange(log, {}), "+a+b-b-a");
  b->failing = "-";  // the first failure is the one that is told
  EXPECT_THROW(multi->Redo(), std::runtime_error);
  EXPECT_EQ(std::exchange(log, {}), "+a+b-a");
  b->failing = c->failing = "";
  a->failing = "+-";
  EXPECT_THROW(multi->Undo(), std::runtime_error);
  EXPECT_EQ(log, "-c-b+b+c");
}

TEST_F(MultiActionTest, IsNamedForTheMenuAndViableWhileEveryChildIs) {
  EXPECT_EQ(multi->GetUndoDescription(), u"Undo Change Volume");
  EXPECT_EQ(multi->GetRedoDescription(), u"Redo Change Volume");
  EXPECT_TRUE(multi->DoStillViable());
  b->viable = false;
  EXPECT_FALSE(multi->DoStillViable());
}

}  // namespace
}  // namespace orvel
