#include "orvel/core/text.h"

#include <set>

#include <gtest/gtest.h>

#include "orvel/core/guid.h"
#include "orvel/core/immutable_string.h"
#include "orvel/core/localizer.h"

namespace orvel {
namespace {

TEST(Text, InvalidSequencesAreReplacedAndCounted) {
  int errors = -1;
  EXPECT_EQ(UTF8to16("a\xF0\x9F\x8E\xA7z", &errors), u"a\U0001F3A7z");
  EXPECT_EQ(errors, 0);
  EXPECT_EQ(UTF8to16(std::string("\xC3(\0\xFF", 4), &errors),
            std::u16string(u"\uFFFD(\0\uFFFD", 4));
  EXPECT_EQ(errors, 2);
  EXPECT_EQ(UTF16to8(std::u16string{u'a', char16_t{0xD800}, u'z'}), "a\xEF\xBF\xBDz");
  EXPECT_EQ(UTF16to8(u"\u20AC\U0001F3A7"), "\xE2\x82\xAC\xF0\x9F\x8E\xA7");
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
  std::set<Guid> guids = {Guid(), Guid(text)};
  for (int i = 0; i < 1000; ++i) guids.insert(Guid::CreateUnique());
  EXPECT_EQ(guids.size(), 1002u);
  EXPECT_EQ(Guid::CreateUnique().AsUTF8String()[14], '4');
}

TEST(ImmutableString, EqualTextsAreOneString) {
  const auto first = ImmutableString::CreateStatic("BasicAdjustmentsProperty");
  const auto again = ImmutableString::CreateStatic(std::string("Basic") + "AdjustmentsProperty");
  EXPECT_EQ(&first.AsUTF8String(), &again.AsUTF8String());
  EXPECT_FALSE(first == ImmutableString::CreateStatic("other"));
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

TEST(ZStringTest, TheHostsTranslationWinsOverTheDefault) {
  Localizer::Get().SetLookup([](const std::string& path, std::u16string& text) {
    text = u"@0: Lautst\u00E4rke";
    return path == "orvel/Sections/Volume";
  });
  EXPECT_EQ(ZString("$$$/orvel/Sections/Volume=Volume", u"1"), u"1: Lautst\u00E4rke");
  EXPECT_EQ(ZString("$$$/orvel/Sections/Pan=Pan"), u"Pan");
  Localizer::Get().SetLookup({});
}

}  // namespace
}  // namespace orvel
