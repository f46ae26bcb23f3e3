#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "orvel/core/action.h"
#include "orvel/core/audio_filter.h"
#include "orvel/core/event_loop.h"
#include "orvel/core/guid.h"
#include "orvel/core/localizer.h"
#include "orvel/core/text.h"
#include "orvel/core/usage_logger.h"

namespace orvel {
namespace {

TEST(EventLoop, TasksPostedByATaskWaitForTheNextTurnUnlessItRunsTheLoopItselfOrThrows) {
  QueuedEventLoop& loop = *teskcore::threads::GetDefaultEventLoop();
  std::string order;
  GetRegisteredMainThread()->Post([&] {
    order += "a";
    loop.Post([&] { order += "c"; });
  });
  loop.Post([&] { order += "b"; });
  EXPECT_EQ(loop.RunTurn(), 2u);
  EXPECT_EQ(order, "ab");
  loop.Post([&] {
    loop.Drain();
    order += "e";
  });
  loop.Post([&] { order += "d"; });
  loop.Drain();
  EXPECT_EQ(order, "abcde");
  loop.Post([] { throw std::runtime_error("host"); });
  loop.Post([&] { loop.Post([&] { order += "f"; }); });
  EXPECT_THROW(loop.RunTurn(), std::runtime_error);
  EXPECT_EQ(order, "abcde");
  loop.Drain();
  EXPECT_EQ(order, "abcdef");
}

TEST(Seams, AHostsCallbackMayReplaceItselfWhileItRuns) {
  const std::string text = "kept until the call is over, and long enough to live elsewhere";
  std::string said;
  UsageLogger::Get().SetSink([&said, text](const UsageEvent&) {
    UsageLogger::Get().SetSink({});
    said = text;
  });
  UsageLogger::Get().Log({});
  EXPECT_EQ(said, text);
  namespace effects = teskaudiofilterhost::utility;
  effects::RegisterAudioFilterFactory([&said, text](const std::u16string& id) {
    effects::RegisterAudioFilterFactory({});
    said = UTF16to8(id) + text;
    return nullptr;
  });
  EXPECT_EQ(effects::CreateAudioFilter(u"a"), nullptr);
  EXPECT_EQ(effects::CreateAudioFilter(u"b"), nullptr);
  EXPECT_EQ(said, "a" + text);
  Localizer::Get().SetLookup([text](const std::string&, std::u16string& found) {
    Localizer::Get().SetLookup({});
    found = UTF8to16(text);
    return true;
  });
  EXPECT_EQ(ZString("$$$/orvel/Sections/Pan=Pan"), UTF8to16(text));
  EXPECT_EQ(ZString("$$$/orvel/Sections/Pan=Pan"), u"Pan");
}

class Step : public Action {
 public:
  Step(std::string& log, char name) : Action(true, true, u"Step"), log_(log), name_(name) {}
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

TEST(MultiActionTest, RedoesInOrderAndUndoesInReverseAndLeavesNothingHalfDone) {
  std::string log;
  const boost::intrusive_ptr<Step> a(new Step(log, 'a'));
  const boost::intrusive_ptr<Step> b(new Step(log, 'b'));
  const boost::intrusive_ptr<Step> c(new Step(log, 'c'));
  const boost::intrusive_ptr<MultiAction> multi(new MultiAction(u"Change Volume"));
  for (const auto& step : {a, b, c}) multi->AddAction(step);
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

TEST(Text, InvalidSequencesAreReplacedAndCounted) {
  int errors = -1;
  EXPECT_EQ(UTF8to16("a\xF0\x9F\x8E\xA7z", &errors), u"a\U0001F3A7z");
  EXPECT_EQ(UTF16to8(u"a\U0001F3A7z"), "a\xF0\x9F\x8E\xA7z");
  EXPECT_EQ(errors, 0);
  EXPECT_EQ(UTF8to16(std::string("\xC3(\0\xFF", 4), &errors),
            std::u16string(u"\uFFFD(\0\uFFFD", 4));
  EXPECT_EQ(errors, 2);
  EXPECT_EQ(UTF16to8(std::u16string{u'a', char16_t{0xD800}, u'z'}), "a\xEF\xBF\xBDz");
  EXPECT_EQ(AsciiToUTF16("json\x80!", 5), u"json\uFFFD");
}

TEST(Guid, HasOneTextFormAndEverythingElseIsNull) {
  const std::string text = "cea63332-1adc-44a9-a6eb-5490f965859b";
  EXPECT_EQ(Guid(text).AsUTF8String(), text);
  EXPECT_EQ(Guid("CEA63332-1ADC-44A9-A6EB-5490F965859B"), Guid(text));
  for (const std::string bad :
       {"", "x", "{cea63332-1adc-44a9-a6eb-5490f965859b}", "cea633321adc44a9a6eb5490f965859b",
        "cea63332-1adc-44a9-a6eb-5490f965859", "cea63332-1adc-44a9-a6eb-5490f965859bb",
        "cea63332-1adc-44a9-a6eb-5490f965859g"}) {
    EXPECT_TRUE(Guid(bad).IsNull()) << bad;
  }
  EXPECT_EQ(Guid(), Guid("00000000-0000-0000-0000-000000000000"));
  EXPECT_EQ(Guid::CreateUnique().AsUTF8String()[14], '4');
}

TEST(ZStringTest, ReplacesPlaceholdersOnceAndKeepsTheRest) {
  EXPECT_EQ(ZString("$$$/a=b=@0 copy", u"A @1 @0"), u"b=A @1 @0 copy");
  EXPECT_EQ(ZString("$$$/a=@1-@0-@2-@", u"x", u"y"), u"y-x-@2-@");
  EXPECT_EQ(ZString("$$$/a=@9", u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9"), u"9");
  EXPECT_EQ(ZString("$$$/a=^QCustom^Q^^^x^"), u"\"Custom\"^^x^");
  // A name that a person typed is no key, whatever it holds.
  EXPECT_EQ(ZString("100 @0 ^Q", u"x"), u"100 @0 ^Q");
  EXPECT_EQ(ZString("$$$ Sale=Loud", u"x"), u"$$$ Sale=Loud");
  EXPECT_EQ(ZString("$$$/a=@/@:", u"x"), u"@/@:");
}

}  // namespace
}  // namespace orvel
