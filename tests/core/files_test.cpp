#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <boost/numeric/conversion/cast.hpp>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvel/core/byte_stream.h"
#include "orvel/core/dir.h"
#include "orvel/core/file_utils.h"
#include "orvel/core/safe_save.h"
#include "orvel/core/taken_names.h"
#include "orvel/core/text.h"
#include "orvel/presets/presets_base_dir.h"
#include "tests/support/temp_dir.h"

namespace orvel {
namespace {

using test::TempDir;

void Save(const File& file, const std::string& text) {
  SafeSave save(file);
  FileUtils::SimpleWriteStringToFile(save.GetTempFile().FullPath(), text);
  save.Commit();
}

std::size_t CountFiles(const Dir& folder) {
  return static_cast<std::size_t>(std::distance(folder.BeginFiles(), folder.EndFiles()));
}

TEST(Files, FoldersAreListedByNameWithFilterAndCancel) {
  const TempDir temp;
  const Dir root = temp.AsDir();
  for (const char16_t* name : {u"b", u"a", u"\u00E9", u"B"}) {
    Dir(root, name).Create();
    File(root, std::u16string(name) + u".orvel").Create(false);
  }
  std::vector<std::u16string> names;
  for (auto at = root.BeginSubdirs(); at != root.EndSubdirs(); ++at)
    names.push_back((*at).GetName());
  EXPECT_EQ(names, (std::vector<std::u16string>{u"B", u"a", u"b", u"\u00E9"}));

  const auto found = root.BeginFiles([](const auto& name) { return name == u"b.orvel"; });
  EXPECT_EQ(found->GetTitle() + found->GetExtension(true), u"b.orvel");
  EXPECT_EQ(root.BeginFiles({}, [] { return true; }), root.EndFiles());
}

TEST(Files, ANameNeverLeadsOutOfItsFolder) {
  for (const std::u16string& name :
       {std::u16string(), std::u16string(u"."), std::u16string(u".."), std::u16string(u"/etc"),
        std::u16string(u"a/../.."), std::u16string(u"a\0.orvel", 8)}) {
    EXPECT_THROW(Dir(Dir(u"/folder"), name), dir_exception) << UTF16to8(name);
    EXPECT_THROW(File(Dir(u"/folder"), name), file_exception) << UTF16to8(name);
  }
  EXPECT_EQ(File(Dir(u"/folder//"), u"..a").FullPath(), u"/folder/..a");
  EXPECT_EQ(Dir(u"//").Parent().FullPath(), u"/");
}

TEST(Files, WhatCannotBeDoneRaisesTheErrorOfItsKind) {
  const TempDir temp;
  const Dir root = temp.AsDir();
  const Dir full(Dir(root, u"new"), u"deep");
  full.Create();
  const File file(full, u"f.txt");
  file.Create(false);
  EXPECT_THROW(file.Create(false), file_exception);
  FileUtils::SimpleWriteStringToFile(file.FullPath(), "text");
  file.Create(true);
  EXPECT_EQ(ReadWholeFile(file), "");
  std::filesystem::create_symlink("nowhere", temp.Path() / "dangling");
  EXPECT_THROW(File(root, u"dangling").Create(false), file_exception);  // taken all the same
  EXPECT_THROW(full.Delete(), dir_exception);                           // not empty
  EXPECT_THROW(Dir(file.FullPath()).Create(), dir_exception);
  EXPECT_THROW(Dir(root, u"none").BeginFiles(), dir_exception);
  EXPECT_THROW(File(root, u"none").Delete(), file_exception);
  EXPECT_THROW(Dir(file.FullPath()).Delete(), dir_exception);
  EXPECT_NO_THROW(file.Delete());
  EXPECT_THROW(File(full.FullPath()).Delete(), file_exception);  // a folder, and not taken away
  EXPECT_TRUE(full.Exists() && !file.Exists());
  EXPECT_THROW(IPlatformByteStream{File(root, u"none")}, file_exception);
  EXPECT_THROW(IPlatformByteStream{File(full.FullPath())}, file_exception);
  EXPECT_THROW(SafeSave(File(Dir(root, u"none"), u"x")), file_exception);
  EXPECT_THROW(FileUtils::SimpleWriteStringToFile(u"/dev/full", std::string(1 << 16, 'x')),
               file_exception);
}

TEST(Files, ANameThatIsNoUtf8CanBeListedAndOpened) {
  const TempDir temp;
  std::ofstream(temp.Path() / "a\xFF\xC3z.txt") << "content";
  const auto found = temp.AsDir().BeginFiles();
  ASSERT_NE(found, temp.AsDir().EndFiles());
  EXPECT_EQ(ReadWholeFile(*found), "content");
}

TEST(Files, AFileIsReadToItsEnd) {
  const TempDir temp;
  const File file(temp.AsDir(), u"f");
  FileUtils::SimpleWriteStringToFile(file.FullPath(), std::string("ab\0cd", 5));
  EXPECT_EQ(ReadWholeFile(file), std::string("ab\0cd", 5));
  EXPECT_THROW(IPlatformByteStream(file, 2), file_exception);
  // More than a block can hold, of which the disk keeps nothing.
  std::filesystem::resize_file(temp.Path() / "f", std::uintmax_t{1} << 32);
  EXPECT_THROW(ReadWholeFile(file), boost::numeric::positive_overflow);
}

TEST(SafeSave, ReplacesTheTargetOnlyOnCommitAndKeepsItsPermissions) {
  using std::filesystem::perms;
  using std::filesystem::status;
  const TempDir temp;
  const File file(temp.AsDir(), u"f");
  Save(file, "old");
  // They may forbid to write.
  std::filesystem::permissions(temp.Path() / "f", perms{0440});
  {
    SafeSave save(file);
    FileUtils::SimpleWriteStringToFile(save.GetTempFile().FullPath(), "new");
    // A person who is not root must be able to write here, and nobody else to read.
    EXPECT_EQ(status(save.GetTempFile().FullPath()).permissions(), perms{0600});
    EXPECT_EQ(CountFiles(temp.AsDir()), 2u);
  }
  EXPECT_EQ(ReadWholeFile(file), "old");
  EXPECT_EQ(CountFiles(temp.AsDir()), 1u);
  Save(file, "new");
  EXPECT_EQ(ReadWholeFile(file), "new");
  EXPECT_EQ(status(temp.Path() / "f").permissions(), perms{0440});
  SafeSave nameless(File(temp.AsDir(), std::u16string(300, u'x')));
  EXPECT_THROW(nameless.Commit(), file_exception);
}

TEST(SafeSave, WritesThroughALinkAndRefusesWhatIsNoFile) {
  namespace fs = std::filesystem;
  const TempDir temp;
  const Dir root = temp.AsDir();
  Dir(root, u"deep").Create();
  fs::create_symlink("deep/second", temp.Path() / "first");
  fs::create_symlink("target", temp.Path() / "deep/second");
  for (const std::string text : {"new", "newer"}) {  // the first leads to nothing yet
    Save(File(root, u"first"), text);
    EXPECT_EQ(ReadWholeFile(File(Dir(root, u"deep"), u"target")), text);
  }
  EXPECT_TRUE(fs::is_symlink(temp.Path() / "first") && fs::is_symlink(temp.Path() / "deep/second"));
  fs::create_symlink("loop", temp.Path() / "loop");
  ASSERT_EQ(mkfifo((temp.Path() / "pipe").c_str(), 0600), 0);
  for (const char16_t* name : {u"deep", u"pipe", u"loop"}) {
    EXPECT_THROW(SafeSave{File(root, name)}, file_exception) << UTF16to8(name);
  }
  EXPECT_THROW(SafeSave{File(u"/dev/null")}, file_exception);
}

TEST(FileNames, WhatNoFileSystemRefusesStaysAsItIs) {
  for (const std::u16string name :
       {u"(Default)", u"St\u00F6rger\u00E4usch", u"\u65E5\u672C", u"\U0001F468\u200D\U0001F3A4",
        u"e\u0301t\u00E9", u".a", u" a", u"Console", u"It's 50_50, & More!"}) {
    EXPECT_EQ(FileUtils::NormalizePathForSaving(name), name) << UTF16to8(name);
  }
}

TEST(FileNames, NoNameIsRefusedByAFileSystemAndNoTwoNamesShareAFile) {
  const char16_t zero = u'\0';
  // clang-format off
  const std::set<std::u16string> names = {
      u"", u".", u"..", u"...", u" ", u"a ", u" a", u"a.", u".a", u"a", u"A", u"a/b", u"a\\b",
      u"a:b", u"a*b", u"a?b", u"a\"b", u"a<b", u"a>b", u"a|b", u"a%2fb", u"a%b", u"%", u"%25", u"%~",
      u"%~1", u"a%~1", u"con", u"CON", u"Con.txt", u"con .x", u"COM1", u"com\u00B9", u"LPT9.orvel",
      u"nul", u"conin$", u"a\nb", u"a\tb", u"a\x7F", u"a\x85z", u"\u00E9", u"e\u0301", u"%ud800",
      u"\uFFFD", {&zero, 1}, std::u16string(1, char16_t{0xD800}), std::u16string(1, char16_t{0xDC00}),
      std::u16string(300, u'x'), std::u16string(299, u'x'), std::u16string(150, u'\u65E5'),
      std::u16string(149, u'\u65E5'), std::u16string(200, u'/'),
  };
  // clang-format on
  const std::regex device("(con|nul|com1|lpt9|conin\\$) *([.].*)?", std::regex::icase);
  const std::regex escaped("%|([^%]|%[0-9a-f]{2})*(%~[0-9a-f]{32})?");
  std::set<std::string> taken;
  for (const auto& name : names) {
    const std::u16string safe = FileUtils::NormalizePathForSaving(name);
    const std::string bytes = UTF16to8(safe);
    EXPECT_LE(bytes.size(), 200u);
    EXPECT_FALSE(safe.empty() || safe.back() == u'.' || safe.back() == u' ') << bytes;
    EXPECT_EQ(safe.find_first_of(u"/\\:*?\"<>|"), safe.npos) << bytes;
    for (const char16_t unit : safe) EXPECT_TRUE(unit >= 0x20 && unit != 0x7F) << bytes;
    EXPECT_EQ(bytes.find("\xEF\xBF\xBD"), name == u"\uFFFD" ? 0u : bytes.npos) << bytes;
    EXPECT_TRUE(std::regex_match(bytes, escaped)) << bytes;
    EXPECT_FALSE(std::regex_match(bytes, device)) << bytes;
    EXPECT_TRUE(taken.insert(bytes).second) << bytes;
    const bool isText = !name.empty() && UTF8to16(UTF16to8(name)) == name;
    EXPECT_TRUE(!isText || FileUtils::IsNormalizedFrom(safe, name)) << bytes;
  }
}

TEST(FileNames, NamesThatAFileSystemMayTakeForOneAreToldApart) {
  const std::u16string pairs[][2] = {{u"voice", u"Voice"},
                                     {u"\u00E9t\u00E9", u"E\u0301t\u00E9"},
                                     {u"Stra\u00DFe", u"STRASSE"},
                                     {u"\u0130b", u"ib"},
                                     {u"\u0131b", u"Ib"},
                                     {u"a\u200Db", u"ab"},
                                     {u"\u03BF\u03C2", u"\u039F\u03A3"},
                                     {u"a/b", u"A/B"}};
  for (const auto& [first, second] : pairs) {
    const std::u16string other = FileUtils::NormalizePathForSaving(first);
    FileUtils::TakenNames taken;
    for (const auto& here : {std::u16string(u"x"), other}) taken.Insert(here);
    const std::u16string title = taken.Choose(second);
    EXPECT_EQ(title, FileUtils::NormalizePathForSaving(second) + u"%~2") << UTF16to8(title);
    taken.Insert(title);
    EXPECT_EQ(taken.Choose(second), title) << "it is its own";
    EXPECT_TRUE(FileUtils::IsNormalizedFrom(title, second));
    EXPECT_FALSE(FileUtils::IsNormalizedFrom(title, first));
  }
  FileUtils::TakenNames taken;
  for (const char16_t* name : {u"voice", u"Voice%~2", u"VoicE", u"voice"}) taken.Insert(name);
  EXPECT_EQ(taken.Choose(u"VOICE"), u"VOICE%~3");
  EXPECT_EQ(taken.Choose(u"Voices"), u"Voices");
  taken.Erase(u"Voice%~2");
  taken.Erase(u"VoicE");
  EXPECT_EQ(taken.Choose(u"VOICE"), u"VOICE%~2") << "one is left that it may be taken for";
  taken.Erase(u"voice");
  EXPECT_EQ(taken.Choose(u"VOICE"), u"VOICE");
}

TEST(FileNames, ThoseOfEarlierVersionsAreKnown) {
  EXPECT_TRUE(FileUtils::IsNormalizedFrom(u"DJ Mix%~14", u"DJ Mix"));
  EXPECT_TRUE(FileUtils::IsNormalizedFrom(u"%ef%ac%81ne%~2", u"\uFB01ne"));
  FileUtils::TakenNames taken;
  taken.Insert(u"voice%~4");
  EXPECT_EQ(taken.Choose(u"voice"), u"voice%~4");
  EXPECT_FALSE(FileUtils::IsNormalizedFrom(u"voice%~copy", u"voice"));
  EXPECT_FALSE(FileUtils::IsNormalizedFrom(u"Voice", u"voice"));
  EXPECT_FALSE(FileUtils::IsNormalizedFrom(u"%~4", u"")) << "no preset is without a name";
}

TEST(PrefDir, IsTheHostsFolderOrThePlatforms) {
  const TempDir temp;
  Dir::SetPrefDir(temp.AsDir());
  EXPECT_EQ(GetPresetsBaseDir().FullPath(), temp.AsDir().FullPath() + u"/Presets");
  Dir::SetPrefDir(Dir());
  setenv("XDG_CONFIG_HOME", "relative", 1);
  setenv("HOME", "/home/me", 1);
  EXPECT_EQ(Dir::PrefDir().FullPath(), u"/home/me/.config");
  setenv("HOME", "", 1);
  EXPECT_EQ(Dir::PrefDir().FullPath(), u"/.config");  // never relative
}

}  // namespace
}  // namespace orvel
