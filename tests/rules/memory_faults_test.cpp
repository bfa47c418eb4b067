// Memory that runs out at any allocation: an operation then throws and changes nothing, or does all
// that it was to do, and the same object works on.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
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

int allocationsLeft = -1;            // -1: as many as wanted
bool lasts = false, failed = false;  // all later ones fail as well; one did

}  // namespace

void* operator new(std::size_t size) {
  if (allocationsLeft == 0) {
    failed = true;
    if (!lasts) allocationsLeft = -1;
    throw std::bad_alloc();
  }
  if (allocationsLeft > 0) --allocationsLeft;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept try {
  return operator new(size);
} catch (const std::bad_alloc&) {
  return nullptr;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

/// What is done to an object, how it is set right when that was done in part, and all that can be
/// told of it.
struct TTrial {
  std::function<void()> Act, Restart;
  std::function<std::string()> Show;
};

const std::string kLong(40, 'l'), kLonger(300, 'm');
const TSampleSyntax kSyntax;
const TSyntaxView kView = kSyntax.View();
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

template <class TObject, class TAct>
TTrial On(TObject object, TAct act) {
  auto held = std::make_shared<TObject>(std::move(object));
  return {[=] { act(*held); }, [=] { Restart(*held); }, [=] { return Shown(*held); }};
}

/// Runs a trial with each allocation failing in turn, alone or with all that follow.
void Torture(const std::function<TTrial()>& make) {
  TTrial whole = make();
  const std::string before = whole.Show();
  whole.Act();
  const std::string after = whole.Show();
  for (const bool lasting : {false, true}) {
    failed = true;
    for (int n = 0; failed; ++n) {
      TTrial trial = make();
      bool thrown = failed = false;
      lasts = lasting;
      allocationsLeft = n;
      try {
        trial.Act();
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      allocationsLeft = -1;
      if (thrown) trial.Show(), trial.Restart();
      ASSERT_EQ(trial.Show(), thrown ? before : after) << "allocation " << n << lasting;
      if (thrown) trial.Act();
      ASSERT_EQ(trial.Show(), after) << "after allocation " << n << lasting;
    }
  }
}

TEST(MemoryFaults, ListsKeepTheirLines) {
  const std::function<void(TStringList&)> acts[] = {
      [](TStringList& list) { list.Add(kLong); },
      [](TStringList& list) { list.SetValue("n7", kLonger); },
      [](TStringList& list) { list.SetValue(kLonger, "2"); },
      [](TStringList& list) { list.SetValue(kLonger, ""); },
      [](TStringList& list) { list.SetCommaText("b,\"a b \"\"" + kLong + "\",c"); },
  };
  for (int bits = 0; bits < 16; ++bits)
    for (const auto& act : acts) {
      SCOPED_TRACE(std::to_string(bits) + " " + std::to_string(&act - acts));
      Torture([&] {
        TStringList list({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0});
        for (int i = bits > 7 && &act == acts ? 253 : 3; i >= 0; --i)
          list.Add("n" + std::to_string(i) + "=" + kLong);
        for (const char* value : {"=1", "=3"}) list.Add(kLonger + value);
        return On(std::move(list), act);
      });
    }
}

template <class TMake, class TAct>
std::function<TTrial()> With(TMake make, TAct act) {
  return [=] { return On(make(), act); };
}

TLineAnalysis Line() {
  TLineAnalysis line;
  line.CutHostLine("If c.Item(1).Add(" + kLong + ", 2) Then", 16, kSyntax.Names);
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
  const std::function<TTrial()> trials[] = {
      With(Line, [&](auto& l) { l.CutHostLine("x = a(" + kLonger + ").c(1, 2)", 330, names); }),
      With(Line, [&](auto& l) { l.SetExpression("a.b.c.d.e " + kLong + ",,,,,,1", names); }),
      With(Line, [&](auto& l) { l.SetParam(l.CallFrame(), 4, kLonger, names); }),
      With(Model, [](auto& m) { m.EditLine(kView, "c.add 1, \"" + kLonger + "\""); }),
      With(Model, [](auto& m) { m.ChooseMember(kView, 1); }),
      With(Model, [](auto& m) { m.ChooseType(kView, "Categorie"); }),
      With(Model, [](auto& m) { m.SelectParam(kView, 2), m.SetValue(kView, kLonger); }),
      With(Model, [](auto& m) { m.ClickUseReturn(kView), m.DeleteMember(kView); }),
      With(Model, [](auto& m) { m.Step(kView, 1), m.SetDeclared("c=Compte,d=" + kLonger); }),
      With([] { return TDirectoryList(); }, [](auto& l) { l.Add(kLonger); }),
      With(Directories, [](auto& l) { l.Add("a" + kLonger); }),
      With(Directories, [](auto& l) { l.Rename(0, kLonger); }),
      With(Directories,
           [](auto& l) {
             TMemoryStore store;
             store.Values = {{"NbDirAlias", "1"}, {"DirAliasName0", "n"}, {"DirAliasPath0", kLong}};
             l.Load(store);
           }),
      With(Choice, [](auto& c) { c.Parse(kLonger + "+" + kLong); }),
      With(Choice, [](auto& c) { c.Tick(1, true); }),
      With([] { return TConstantChoice(); }, [](auto& c) { c.Fill(kConstants, "L"); }),
      With([] { return TSharedText(); }, [](auto& t) { t.Set(kLonger); }),
      With(Variables, [](auto& v) { v.Rename(kLong, kLonger); }),
      With(Variables, [](auto& v) { v.Add(kLonger); }),
      With(Variables, [](auto& v) { v.Delete(kLong); }),
      With(Variables, [](auto& v) { v.Load("x=" + kLonger + ",y=T"); }),
      With(Text, [](auto& t) { t = Variables().CommaText() + kLonger; }),
      With(Text, [](auto& t) { t = DatabaseFromXml(kXml).Elements()[0].Name; }),
      With(Text, [](auto& t) { t = ParseLayout("form F caption \"" + t + "\"").Form.Name; }),
  };
  for (const auto& make : trials) {
    SCOPED_TRACE(&make - trials);
    Torture(make);
  }
}

}  // namespace
