#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "outside/outside_test.h"

namespace {
std::string ReadBesideProgram(std::string_view name) {
  std::ifstream file(BesideProgram(name), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  std::erase(text, '\r');
  return text;
}

std::set<std::string> AllMatches(const std::string& text, const std::regex& pattern) {
  std::set<std::string> names;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
    names.insert((*match)[1]);
  return names;
}

/// The names between "EXPORTS" and the end, quoted or not, without what they stand for.
std::set<std::string> DefinitionNames(const std::string& text) {
  const std::string exports = text.substr(std::min(text.size(), text.find("EXPORTS") + 7));
  const std::regex name("(?:^|\\n)[ \\t]*\"?([A-Za-z_@?][^\"=; \\t\\n]*)");
  return AllMatches(exports, name);
}

std::set<std::string> ExportedNames(HMODULE module) {
  const auto* image = reinterpret_cast<const char*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(image + dos->e_lfanew);
  const auto& entry = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + entry.VirtualAddress);
  const auto* names = reinterpret_cast<const DWORD*>(image + table->AddressOfNames);
  std::set<std::string> result;
  for (DWORD index = 0; index < table->NumberOfNames; ++index) result.insert(image + names[index]);
  return result;
}

/// What the header calls a function that is exported under a compiler's decoration.
std::string PlainName(const std::string& name) {
  static const std::regex Decorated("^(?:@|\\?|_Z\\d+)([A-Za-z]+?)(?:\\$|@@|P|$).*");
  std::smatch match;
  return std::regex_match(name, match, Decorated) ? match[1].str() : name;
}
}  // namespace

/// Without a host around it.
TEST(BareLibrary, TellsItsVersionBeforeAnythingElse) {
  const TLibrary library;
  EXPECT_EQ(library.VCLGetVersion(), 1102U);
  EXPECT_EQ(library.VCLGetVersion(), static_cast<unsigned>(ZEF_INTERFACE_VERSION));
}

TEST(BareLibrary, HeaderDefinitionAndExportTableAgree) {
  const TLibrary library;
  const std::set<std::string> exported = ExportedNames(library.Module);
  EXPECT_EQ(exported, DefinitionNames(ReadBesideProgram("zefext.def")));
  std::set<std::string> plain;
  std::ranges::transform(exported, std::inserter(plain, plain.end()), PlainName);
  const std::regex declaration("ZEFEXT_API\\s+(\\w+)\\s*\\(");
  EXPECT_EQ(plain, AllMatches(ReadBesideProgram("zefext.h"), declaration));
  EXPECT_TRUE(plain.contains("VCLGetVersion"));
}

TEST(BareLibrary, ServesWithoutAHost) {
  const TLibrary library;
  library.VCLSetMainHelpFile(nullptr);
  library.VCLFree();
  TScriptedUser().During([&] { EXPECT_EQ(library.VCLInvokeModalDialog(nullptr) & 0xFF, 0); },
                         [](TScriptedUser& user) {
                           TFormDriver form = user.WaitForForm("TDlgBase");
                           EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), nullptr);
                           form.Press(VK_ESCAPE);
                           form.WaitGone();
                         });
}

constexpr char Database[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><objects>"
    "<object name=\"Panier\"><method name=\"Ajouter\"/><data name=\"Total\"/></object>"
    "<method name=\"Vérifier\"/><list name=\"Jours\"><listconst "
    "name=\"jrLundi\"/></list></objects>";

class LoadedLibrary : public TOutsideTest {
 protected:
  void UseADialog(const TLibrary& library) {
    During([&] { library.VCLInvokeModalDialog(nullptr); },
           [](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgBase");
             form.Press(VK_RETURN);
             form.WaitGone();
           });
  }
};

TEST_F(LoadedLibrary, IsFreedAnyNumberOfTimesAndServesAgain) {
  for (int round = 0; round < 3; ++round) {
    Library->VCLFree();
    Library->VCLFree();
    UseADialog(*Library);
  }
}

TEST_F(LoadedLibrary, KnowsTheWordsOfTheDatabaseBesideTheHost) {
  EXPECT_EQ(Library->VCLSyntaxIsMethod(".Ajouter"), 0);
  Library->VCLFree();
  const TDatabaseFile database(Database);
  const struct {
    const char* Word;
    int IsMethod;
    int IsConstant;
  } words[] = {{".Ajouter", 1, 0}, {".TOTAL", 1, 0}, {"Ajouter", 0, 0}, {"vérifier", 1, 0},
               {"JrLundi", 0, 1},  {"Panier", 0, 0}, {"", 0, 0}};
  for (const auto& [word, isMethod, isConstant] : words) {
    SCOPED_TRACE(word);
    EXPECT_EQ(Library->VCLSyntaxIsMethod(Ansi(word).c_str()), isMethod);
    EXPECT_EQ(Library->VCLSyntaxIsConstant(Ansi(word).c_str()), isConstant);
  }
  EXPECT_EQ(Library->VCLSyntaxIsMethod(nullptr), 0);
  EXPECT_EQ(Library->VCLSyntaxIsConstant(nullptr), 0);
}

TEST_F(LoadedLibrary, LoadedTwiceStaysUntilTheLastUnload) {
  {
    const TLibrary second;
    EXPECT_EQ(second.Module, Library->Module);
  }
  UseADialog(*Library);
  EXPECT_EQ(Library->VCLGetVersion(), 1102U);
}

TEST_F(LoadedLibrary, LoadsAndUnloadsAHundredTimesAndLeavesNothing) {
  const TDatabaseFile database(Database);
  Library.reset();
  constexpr int WarmUp = 3;  // the system makes and keeps things of its own at first
  constexpr int Rounds = 100;
  TCensus early{};
  for (int round = 0; round < Rounds; ++round) {
    if (round == WarmUp) early = TCensus::Take();
    const TLibrary library;
    library.VCLSetMainWindowHandle(MainWindow);
    UseADialog(library);
    EXPECT_EQ(library.VCLSyntaxIsMethod(".ajouter"), 1);
    if (round % 2) library.VCLFree();
  }
  const TCensus late = TCensus::Take();
  EXPECT_EQ(late.NewSince(early), "");
  EXPECT_EQ(late.Modules, early.Modules);
  // The system caches a few; what each round lost would be many more.
  EXPECT_LT(late.GdiObjects, early.GdiObjects + 20);
}
