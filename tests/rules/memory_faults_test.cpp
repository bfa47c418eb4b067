// Memory that runs out at any allocation: an operation then throws and changes nothing, or does all
// that it was to do, and the same object works on.

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <new>

#include "forms/rules/layout.h"
#include "memory_store.h"
#include "plain_list.h"
#include "sample_syntax.h"
#include "syntax/rules/constant_value.h"
#include "syntax/rules/script_variables.h"
#include "text/shared_text.h"

#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

namespace {

int allocationsLeft = -1;  // -1: as many as wanted
std::size_t bytesHeld = 0;
bool lasts = false, failed = false;  // all later ones fail as well; one did

}  // namespace

void* operator new(std::size_t size) {
  if (allocationsLeft == 0) {
    failed = true;
    if (!lasts) allocationsLeft = -1;
    throw std::bad_alloc();
  }
  if (allocationsLeft > 0) --allocationsLeft;
  void* memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  bytesHeld += malloc_usable_size(memory);
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept try {
  return operator new(size);
} catch (const std::bad_alloc&) {
  return nullptr;
}
void operator delete(void* memory) noexcept {
  bytesHeld -= malloc_usable_size(memory);
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

namespace {

const std::string kLong(40, 'l'), kLonger(300, 'm');
const std::string kXml = "<objects><list name=\"L\" flag=\"add\"><comment>" + kLong +
                         "</comment><listconst name=\"" + kLong + "\"/><listconst name=\"" +
                         kLonger + "\">" + kLong + "</listconst></list></objects>";
const TSyntaxDatabase kConstants = DatabaseFromXml(kXml);

std::string Shown(const std::string& text) { return text; }
std::string Shown(const TSharedText& text) { return std::string(text.View()); }
std::string Shown(const TScriptVariables& variables) { return variables.CommaText(); }
std::string Shown(const TStringList& list) {
  std::string text;
  for (const auto& line : LinesOf(list))
    text.append(line).append(list.Value(line.substr(0, line.find('=')))) += ';';
  return text + std::to_string(list.IndexOf("n7=" + kLong)) + kLonger;
}
std::string Shown(const TConstantChoice& choice) {
  std::string text = choice.Value() + std::to_string(choice.Help().size());
  for (int i = 0; i < choice.Count(); ++i) text += choice.Name(i) + choice.ConstantHelp(i);
  return text;
}
std::string Shown(const TLineAnalysis& line) {
  std::string text = line.Prefix() + "|" + line.Expression() + "|" + line.Suffix() + "|";
  text.append(line.ObjectText()).append(line.MemberText());
  for (int i = 0; i < line.ValueCount(); ++i) text.append("|").append(line.Value(i));
  return text;
}
std::string Shown(const TAssistantModel& model) {
  std::string text = Shown(model.Analysis()) + model.SelectedType() + model.Value();
  for (const TParamRow& row : model.ParamRows()) text += row.Text + (row.Checked ? "x" : "");
  return model.SelectedItem() < 0 ? text : text + model.MemberItems().Text(model.SelectedItem());
}

void Restart(TAssistantModel& model) {
  model.SetDeclared("c=Compte");
  model.AnalyseHostLine(kView, "x = c.Add(1, , " + kLong + ")", 7);
}
template <class TObject>
void Restart(TObject&) {}

/// Does something to an object with each allocation failing in turn, alone or with all that follow.
template <class TMake, class TAct>
void Torture(TMake make, TAct act, int line = __builtin_LINE()) {
  SCOPED_TRACE(line);
  auto whole = make();
  const std::string before = Shown(whole);
  act(whole);
  const std::string after = Shown(whole);
  for (const bool lasting : {false, true}) {
    failed = true;
    for (int n = 0; failed; ++n) {
      auto object = make();
      bool thrown = failed = false;
      lasts = lasting;
      allocationsLeft = n;
      try {
        act(object);
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      allocationsLeft = -1;
      if (thrown) Shown(object), Restart(object);
      ASSERT_EQ(Shown(object), thrown ? before : after) << "allocation " << n << lasting;
      if (thrown) act(object);
      ASSERT_EQ(Shown(object), after) << "after allocation " << n << lasting;
    }
  }
}

TEST(MemoryFaults, ListsKeepTheirLines) {
  for (int bits = 0; bits < 8; ++bits) {
    SCOPED_TRACE(bits);
    const auto lines = [bits](int count) {
      return [=] {
        TStringList list({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0});
        for (int i = count - 1; i >= 0; --i) list.Add("n" + std::to_string(i) + "=" + kLong);
        for (const char* value : {"=1", "=3"}) list.Add(kLonger + value);
        list.Add("huge=" + std::string(70'000, 'h'));
        return list;
      };
    };
    // Into a chunk with room and into one that is split.
    for (const int count : {4, 253}) Torture(lines(count), [](auto& l) { l.Add(kLong); });
    Torture(lines(4), [](auto& l) { l.SetValue("n7", kLonger); });
    Torture(lines(4), [](auto& l) { l.SetValue(kLonger, "2"); });
    Torture(lines(4), [](auto& l) { l.SetValue(kLonger, ""); });
    Torture(lines(4), [](auto& l) { l.SetValue("huge", "no more"); });
    Torture(lines(4), [](auto& l) { l.SetCommaText("b,\"a b \"\"" + kLong + "\",c"); });
  }
}

TEST(MemoryFaults, LinesThatAreNoMoreGiveTheirRoomBack) {
  for (const bool deletes : {false, true}) {
    TStringList list({});
    const std::size_t before = bytesHeld;
    for (int i = 0; i < 1000; ++i) {
      list.SetValue("n", kLonger + kLonger + std::to_string(i));
      if (deletes) list.Delete(0);
    }
    EXPECT_LT(bytesHeld - before, 300'000u) << deletes;
  }
}

TLineAnalysis Line() {
  TLineAnalysis line;
  line.CutHostLine("If c.Item(1).Add(" + kLong + ", 2) Then", 15, kSyntax.Names);
  return line;
}
TAssistantModel Model() {
  TAssistantModel model;
  Restart(model);
  return model;
}
TDirectoryList Directories() {
  TDirectoryList list;
  list.SetDefault(list.Import(kLong, kLong));
  return list;
}
TConstantChoice Choice() {
  TConstantChoice choice;
  choice.Fill(kConstants, "L");
  return choice;
}
std::string Text() { return kLong; }
TScriptVariables Variables() {
  TScriptVariables variables;
  variables.Load(kLong + "=T,b=T");
  return variables;
}

TEST(MemoryFaults, OperationsChangeNothingOrAll) {
  const TSyntaxNames& names = kSyntax.Names;
  Torture(Line, [&](auto& l) { l.CutHostLine("x = a(" + kLonger + ").c(1, 2)", 330, names); });
  Torture(Line, [&](auto& l) { l.SetExpression("a.b.c(" + kLong + ",,,,,,1).d.e", names); });
  Torture(Line, [&](auto& l) { l.SetParam(l.CallFrame(), 4, kLonger, names); });
  Torture(Model, [](auto& m) { m.EditLine(kView, "c.add 1, \"" + kLonger + "\""); });
  Torture(Model, [](auto& m) { m.ChooseMember(kView, 1); });
  Torture(Model, [](auto& m) { m.ChooseType(kView, "Categorie"); });
  Torture(Model, [](auto& m) { m.SelectParam(kView, 2), m.SetValue(kView, kLonger); });
  Torture(Model, [](auto& m) { m.ClickUseReturn(kView), m.DeleteMember(kView); });
  Torture(Model, [](auto& m) { m.Step(kView, 1), m.SetDeclared("c=Compte,d=" + kLonger); });
  Torture([] { return TDirectoryList(); }, [](auto& l) { l.Add(kLonger); });
  Torture(Directories, [](auto& l) { l.Add("a" + kLonger); });
  Torture(Directories, [](auto& l) { l.Rename(0, kLonger); });
  Torture(Directories, [](auto& l) {
    TMemoryStore store;
    store.Values = {{"NbDirAlias", "1"}, {"DirAliasName0", "n"}, {"DirAliasPath0", kLong}};
    l.Load(store);
  });
  Torture(Choice, [](auto& c) { c.Parse(kLonger + "+" + kLong); });
  Torture(Choice, [](auto& c) { c.Tick(1, true); });
  Torture([] { return TConstantChoice(); }, [](auto& c) { c.Fill(kConstants, "L"); });
  Torture([] { return TSharedText(); }, [](auto& t) { t.Set(kLonger); });
  Torture(Variables, [](auto& v) { v.Rename(kLong, kLonger); });
  Torture(Variables, [](auto& v) { v.Add(kLonger); });
  Torture(Variables, [](auto& v) { v.Delete(kLong); });
  Torture(Variables, [](auto& v) { v.Load("x=" + kLonger + ",y=T"); });
  Torture(Text, [](auto& t) { t = DatabaseFromXml(kXml).Elements()[0].Name; });
  Torture(Text, [](auto& t) { t = ParseLayout("form F caption \"" + t + "\"").Form.Name; });
}

}  // namespace
