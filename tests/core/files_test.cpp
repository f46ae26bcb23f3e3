#include <array>
#include <csignal>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <boost/numeric/conversion/cast.hpp>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unistd.h>

#include "orvel/core/byte_stream.h"
#include "orvel/core/code_points.h"
#include "orvel/core/dir.h"
#include "orvel/core/file_utils.h"
#include "orvel/core/module_resources.h"
#include "orvel/core/safe_save.h"
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

  const auto isB = [](const std::u16string& name) { return name == u"b.orvel"; };
  const auto found = root.BeginFiles(isB);
  EXPECT_EQ(found->GetTitle(), u"b");
  EXPECT_EQ(found->GetExtension(true), u".orvel");
  EXPECT_EQ(found->GetExtension(false), u"orvel");
  EXPECT_EQ(found->Parent().FullPath(), root.FullPath());
  EXPECT_EQ(root.BeginFiles({}, [] { return true; }), root.EndFiles());
  EXPECT_NE(root.BeginFiles({}, [] { return false; }), root.EndFiles());
  EXPECT_EQ(File(root, u"bare").GetExtension(false), u"");
}

TEST(Files, AFolderIsTheSameWithSlashesAtItsEnd) {
  const Dir folder(u"/a/b//");
  EXPECT_EQ(folder.GetName(), u"b");
  EXPECT_EQ(folder.Parent().FullPath(), u"/a");
  EXPECT_EQ(Dir(u"//").FullPath(), u"/");
  EXPECT_EQ(Dir(u"/").Parent().FullPath(), u"/");
}

TEST(Files, ANameNeverLeadsOutOfItsFolder) {
  for (const std::u16string& name :
       {std::u16string(), std::u16string(u"."), std::u16string(u".."), std::u16string(u"/etc"),
        std::u16string(u"a/../.."), std::u16string(u"a\0.orvel", 8)}) {
    EXPECT_THROW(Dir(Dir(u"/folder"), name), dir_exception) << UTF16to8(name);
    EXPECT_THROW(File(Dir(u"/folder"), name), file_exception) << UTF16to8(name);
  }
  EXPECT_EQ(File(Dir(u"/folder"), u"..a").FullPath(), u"/folder/..a");
}

TEST(Files, WhatCannotBeDoneRaisesTheErrorOfItsKind) {
  const TempDir temp;
  const Dir root = temp.AsDir();
  const Dir full(Dir(root, u"new"), u"deep");
  full.Create();
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
  EXPECT_THROW(Dir(root, u"none").Delete(), dir_exception);
  EXPECT_THROW(File(root, u"none").Delete(), file_exception);
  EXPECT_THROW(File(full.FullPath()).Delete(), file_exception);  // a folder, and not taken away
  EXPECT_TRUE(file.Exists());
  EXPECT_THROW(IPlatformByteStream{File(root, u"none")}, file_exception);
  EXPECT_THROW(IPlatformByteStream{File(full.FullPath())}, file_exception);
  EXPECT_THROW(SafeSave(File(Dir(root, u"none"), u"x")), file_exception);
  EXPECT_THROW(FileUtils::SimpleWriteStringToFile(u"/dev/full", std::string(1 << 16, 'x')),
               file_exception);
  file.Delete();
  full.Delete();
  EXPECT_FALSE(full.Exists());
}

TEST(Files, ANameThatIsNoUtf8CanBeListedAndOpened) {
  const TempDir temp;
  std::ofstream(temp.Path() / "a\xFF\xC3z.txt") << "content";
  const auto found = temp.AsDir().BeginFiles();
  ASSERT_NE(found, temp.AsDir().EndFiles());
  EXPECT_EQ(ReadWholeFile(*found), "content");
}

TEST(Files, AFileIsReadInBlocksToItsEnd) {
  const TempDir temp;
  const File file(temp.AsDir(), u"f");
  FileUtils::SimpleWriteStringToFile(file.FullPath(), std::string("ab\0cd", 5));
  IPlatformByteStream stream(file);
  EXPECT_EQ(stream.Length(), 5u);
  char block[4] = {};
  EXPECT_EQ(stream.ReadBlock(block, 4), 4u);
  EXPECT_EQ(stream.ReadBlock(block, 4), 1u);
  EXPECT_EQ(stream.ReadBlock(block, 4), 0u);
  EXPECT_EQ(ReadWholeFile(file), std::string("ab\0cd", 5));
  EXPECT_THROW(IPlatformByteStream(file, 2), file_exception);
  // More than a block can hold, of which the disk keeps nothing.
  std::filesystem::resize_file(temp.Path() / "f", std::uintmax_t{1} << 32);
  EXPECT_THROW(ReadWholeFile(file), boost::numeric::positive_overflow);
}

TEST(SafeSave, ReplacesTheTargetOnlyOnCommit) {
  const TempDir temp;
  const File file(temp.AsDir(), u"preset.orvel");
  Save(file, "old");
  std::filesystem::permissions(temp.Path() / "preset.orvel", std::filesystem::perms{0640});
  {
    SafeSave save(file);
    FileUtils::SimpleWriteStringToFile(save.GetTempFile().FullPath(), "new");
    EXPECT_EQ(CountFiles(temp.AsDir()), 2u);
  }
  EXPECT_EQ(ReadWholeFile(file), "old");
  EXPECT_EQ(CountFiles(temp.AsDir()), 1u);
  SafeSave nameless(File(temp.AsDir(), std::u16string(300, u'x')));
  EXPECT_THROW(nameless.Commit(), file_exception);
}

TEST(SafeSave, KeepsTheTargetsPermissionsAlsoWhereTheyForbidToWrite) {
  using std::filesystem::perms;
  using std::filesystem::status;
  const TempDir temp;
  const File file(temp.AsDir(), u"f");
  Save(file, "old");
  std::filesystem::permissions(temp.Path() / "f", perms{0440});
  SafeSave save(file);
  // A person who is not root must be able to write here, and nobody else to read.
  EXPECT_EQ(status(save.GetTempFile().FullPath()).permissions(), perms{0600});
  save.Commit();
  EXPECT_EQ(status(temp.Path() / "f").permissions(), perms{0440});
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

TEST(SafeSave, TakesABareNameForAFileInTheCurrentFolder) {
  const TempDir temp;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(temp.Path());
  Save(File(u"bare"), "text");
  std::filesystem::current_path(before);
  EXPECT_EQ(ReadWholeFile(File(temp.AsDir(), u"bare")), "text");
}

TEST(SafeSave, AProcessKilledWhileSavingLeavesTheOldFileOrTheNew) {
  const TempDir temp;
  const File file(temp.AsDir(), u"f");
  const std::string texts[] = {std::string(20000, 'a'), std::string(70000, 'b')};
  Save(file, texts[0]);
  for (int round = 0; round < 40; ++round) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0;; ++i) {
        Save(file, texts[i % 2]);
        if (i == 0 && write(ready[1], "r", 1) != 1) _exit(1);
      }
    }
    char token = 0;
    ASSERT_EQ(read(ready[0], &token, 1), 1);
    usleep(static_cast<useconds_t>(round * 137));  // another instant in each round
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
    const std::string text = ReadWholeFile(file);
    ASSERT_TRUE(text == texts[0] || text == texts[1]) << text.size();
  }
}

TEST(FileNames, OrdinaryNamesStayAsTheyAre) {
  for (const std::u16string name :
       {u"Podcast Voice", u"Wide and Deep", u"In a Large Room", u"(Default)",
        u"St\u00F6rger\u00E4usch", u"\u65E5\u672C\u8A9E", u"\u0645\u0648\u0633\u064A\u0642\u0649",
        u"Remix to 60 Seconds", u"\U0001F3A7", u"Default", u"2.1 Mix", u"Console",
        u"It's 50_50, & More!"}) {
    EXPECT_EQ(FileUtils::NormalizePathForSaving(name), name) << UTF16to8(name);
  }
}

TEST(FileNames, WhatIsNotKeptIsEscapedAndNothingElse) {
  const struct {
    std::u16string name, fileName;
  } cases[] = {
      {u"DJ Mix", u"DJ Mix%~14"},  // a short word is not in capitals as a rule
      {u"Stra\u00DFe", u"Stra\u00DFe%~008"},
      {u"\u0130stanbul", u"\u0130stanbul%~8"},
      {u"\u0393\u03B1\u0390\u03BF\u03C2", u"\u0393\u03B1\u0390\u03BF\u03C2%~088"},
      {u"\u0531\u0580\u0587", u"\u0531\u0580\u0587%~08"},
      {u"\u13A0\uAB70", u"\u13A0\uAB70"},
      {u"\u00C9t\u00E9 e\u0301t\u00E9", u"\u00C9t\u00E9 e%cc%81t\u00E9"},
      {u"A\u200D\u0301b", u"A%e2%80%8d%cc%81b"},
      {u"A/\u0301b", u"A%2f%cc%81b"},
  };
  for (const auto& [name, fileName] : cases) {
    EXPECT_EQ(UTF16to8(FileUtils::NormalizePathForSaving(name)), UTF16to8(fileName));
  }
}

// A name as file systems compare it, which do so by full folding, by capitals or by small letters;
// which take composed characters for their parts; of which some pass over what is not seen, and
// some take the dotless i for an i.
std::array<std::string, 3> ComparedAs(const std::u16string& name) {
  icu::UnicodeString seen;
  for (std::size_t i = 0; i < name.size();) {
    const UChar32 c = teskcore::utility::NextCodePoint(name, i);
    if (!u_hasBinaryProperty(c, UCHAR_DEFAULT_IGNORABLE_CODE_POINT))
      seen.append(c == 0x131 ? 'i' : c);
  }
  std::array<icu::UnicodeString, 3> forms = {icu::UnicodeString(seen).foldCase()};
  for (int i = 0; i < seen.length(); i = seen.moveIndex32(i, 1)) {
    forms[1].append(u_toupper(seen.char32At(i)));
    forms[2].append(u_tolower(seen.char32At(i)));
  }
  UErrorCode status = U_ZERO_ERROR;
  std::array<std::string, 3> texts;
  for (std::size_t i = 0; i < 3; ++i) {
    icu::Normalizer2::getNFDInstance(status)->normalize(forms[i], status).toUTF8String(texts[i]);
  }
  return texts;
}

// Every character that has another case or folds, alone and before what it may be taken for.
void AddLetters(std::set<std::u16string>& names) {
  const auto text = [](const icu::UnicodeString& s) {
    return std::u16string(s.getBuffer(), static_cast<std::size_t>(s.length()));
  };
  UErrorCode status = U_ZERO_ERROR;
  for (UChar32 c = 0x80; c <= 0x1FFFF; ++c) {
    const icu::UnicodeString letter(c);
    const icu::UnicodeString folded = icu::UnicodeString(letter).foldCase();
    if (u_tolower(c) == c && u_toupper(c) == c && folded == letter) continue;
    const auto composed = icu::Normalizer2::getNFCInstance(status)->normalize(folded, status);
    for (const auto& form :
         {letter, folded, composed, icu::UnicodeString(letter).toUpper(icu::Locale::getRoot())}) {
      for (const char16_t* next : {u"", u"s", u"i", u"\u03B9", u"\u0301", u"\u0307"}) {
        names.insert(text(form) + next);
      }
    }
  }
}

TEST(FileNames, NoNameIsRefusedByAFileSystemAndNoTwoNamesShareAFile) {
  const char16_t zero = u'\0';
  // clang-format off
  std::set<std::u16string> names = {
      u"", u".", u"..", u"...", u" ", u"a ", u" a", u"a.", u".a", u"a", u"A", u"aa", u"aA", u"Aa",
      u"AA", u"a/b", u"a\\b", u"a:b", u"a*b", u"a?b", u"a\"b", u"a<b", u"a>b", u"a|b", u"a%2fb",
      u"a%b", u"%", u"%25", u"%~", u"%~1", u"a%~1", u"con", u"CON", u"Con", u"Con.txt", u"con .x",
      u"COM1", u"com\u00B9", u"LPT9.orvel", u"nul", u"conin$", u"Default", u"default", u"DEFAULT",
      u"a\nb", u"a\tb", u"a\x7F", u"a\x85z", u"\u00E9", u"e\u0301", u"\u00C9", u"E\u0301",
      u"warm voice", u"Warm Voice", u"WARM VOICE", u"Warm voice", u"Stra\u00DFe", u"STRASSE",
      u"Strasse", u"ab", u"a\u200Db", u"a\uFE0Fb", u"st", u"ffi", u"ss", u"ib", u"\u0131b",
      u"%ud800", u"\uFFFD", {&zero, 1}, std::u16string(1, char16_t{0xD800}),
      std::u16string(1, char16_t{0xDC00}), std::u16string(300, u'x'), std::u16string(299, u'x'),
      std::u16string(300, u'X'), std::u16string(150, u'\u65E5'), std::u16string(149, u'\u65E5'),
      std::u16string(200, u'/'), std::u16string(100, u'\u0431') + u"1",
      std::u16string(100, u'\u0431') + u"2",
  };
  // clang-format on
  AddLetters(names);
  const std::regex device("(con|nul|com1|lpt9|conin\\$) *([.].*)?");
  const std::regex escaped("%|([^%]|%[0-9a-f]{2}|%u[0-9a-f]{4}|%~[0-9a-f]+)*");
  std::array<std::map<std::string, std::u16string>, 3> taken;
  for (const auto& name : names) {
    const std::u16string safe = FileUtils::NormalizePathForSaving(name);
    const std::string bytes = UTF16to8(safe);
    EXPECT_LE(bytes.size(), 200u);
    EXPECT_FALSE(safe.empty() || safe.front() == u'.' || safe.front() == u' ' ||
                 safe.back() == u'.' || safe.back() == u' ')
        << bytes;
    EXPECT_EQ(safe.find_first_of(u"/\\:*?\"<>|"), safe.npos) << bytes;
    for (const char16_t unit : safe) EXPECT_TRUE(unit >= 0x20 && unit != 0x7F) << bytes;
    EXPECT_EQ(bytes.find("\xEF\xBF\xBD"), name == u"\uFFFD" ? 0u : bytes.npos) << bytes;
    EXPECT_TRUE(std::regex_match(bytes, escaped)) << bytes;
    const auto compared = ComparedAs(safe);
    EXPECT_FALSE(std::regex_match(compared[0], device)) << bytes;
    for (std::size_t i = 0; i < compared.size(); ++i) {
      const auto [at, isNew] = taken[i].emplace(compared[i], name);
      EXPECT_TRUE(isNew) << UTF16to8(name) << " and " << UTF16to8(at->second) << ": " << bytes;
    }
  }
}

TEST(FileNames, AUniqueNameCountsUpwards) {
  const TempDir temp;
  const Dir root = temp.AsDir();
  EXPECT_EQ(FileUtils::UniqueFileName(root, u"A/b", u".orvel"), u"A%2fb.orvel");
  for (const char16_t* expected : {u"Voice.orvel", u"Voice 2.orvel", u"Voice 3.orvel"}) {
    const std::u16string name = FileUtils::UniqueFileName(root, u"Voice", u".orvel");
    EXPECT_EQ(name, expected);
    File(root, name).Create(false);
  }
}

TEST(PrefDir, IsTheHostsFolderOrThePlatforms) {
  const TempDir temp;
  Dir::SetPrefDir(temp.AsDir());
  EXPECT_EQ(GetPresetsBaseDir().FullPath(), temp.AsDir().FullPath() + u"/Presets");
  Dir::SetPrefDir(Dir());
  setenv("XDG_CONFIG_HOME", "/somewhere", 1);
  EXPECT_EQ(Dir::PrefDir().FullPath(), u"/somewhere");
  setenv("XDG_CONFIG_HOME", "relative", 1);
  setenv("HOME", "/home/me", 1);
  EXPECT_EQ(Dir::PrefDir().FullPath(), u"/home/me/.config");
  setenv("HOME", "", 1);
  EXPECT_EQ(Dir::PrefDir().FullPath(), u"/.config");  // never relative
}

TEST(ModuleResources, BelongToTheirModuleAndAreFoundWithoutRegardToCase) {
  static const unsigned char kData[] = {1, 2, 3};
  int module = 0;
  int otherModule = 0;
  teskcore::filesupport::RegisterModuleResource(&module, u"OrvelPresets", u"json", kData, 3);
  std::vector<unsigned char> bytes = {9};
  EXPECT_FALSE(GetBinaryFromModule(&otherModule, u"OrvelPresets", u"json", bytes));
  EXPECT_FALSE(GetBinaryFromModule(&module, u"OrvelPresets", u"text", bytes));
  EXPECT_EQ(bytes, std::vector<unsigned char>{9});
  EXPECT_TRUE(GetBinaryFromModule(&module, u"ORVELPRESETS", u"JSON", bytes));
  EXPECT_EQ(bytes, (std::vector<unsigned char>{1, 2, 3}));
}

}  // namespace
}  // namespace orvel
