#include "outside/syntax_test.h"

#include <oleacc.h>

#include <algorithm>
#include <regex>

namespace {
constexpr int OpeningMs = 60000;  ///< the database may be large
}  // namespace

const char TSyntaxTest::SampleDatabase[] = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<objects>
  <object name="Agence"><comment>Une agence.</comment><data name="Nom" type="String"/></object>
  <object name="Application"><comment>Le programme.</comment>
    <data name="Compte" type="Compte"/><data name="Nom" type="String"/></object>
  <object name="Banque"><comment>Une banque.</comment><data name="Agence" type="Agence"/></object>
  <object name="Compte"><comment>Un compte.</comment>
    <method name="Ajouter"><comment>Ajoute une écriture.</comment>
      <return type="Ecriture">La nouvelle.</return>
      <param name="montant" type="Double">Montant en euros.</param>
      <oparam name="style" type="Integer" list="Styles" def="Gras">Mise en évidence.</oparam>
      <oparam name="visible" type="bool" def="True">Visible ou non.</oparam></method>
    <method name="Fermer"><comment>Ferme le compte.</comment>
      <oparam name="raison" type="String" list="BoutonsEtStyle">Pourquoi.</oparam></method>
    <data name="Premiere" type="Ecriture"/><data name="Solde" type="Double"/></object>
  <object name="Ecriture"><comment>Une écriture.</comment><data name="Tiers" type="Tiers"/>
    <data name="Montant" type="Double"/></object>
  <object name="Tiers"><comment>Un tiers.</comment><data name="Banque" type="Banque"/></object>
  <type name="Cpt">Un compte, en bref.</type>
  <type name="Double">Un nombre.</type>
  <type name="String">Un texte.</type>
  <const name="ZEF" type="Application"/>
  <method name="MsgBox"><comment>Affiche un message.</comment>
    <return type="Integer">Le bouton choisi.</return>
    <param name="texte" type="String">Le message.</param>
    <oparam name="boutons" type="Integer" list="Boutons">Les boutons.</oparam></method>
  <list name="Style" flag="" type="Integer"><listconst name="Normal">Sans style.</listconst></list>
  <list name="Styles" flag="add" type="Integer"><comment>Styles du texte.</comment>
    <comment>Ils s'ajoutent.</comment>
    <listconst name="Gras">En gras.</listconst><listconst name="Italique">En italique.</listconst>
    <listconst name="Souligné">Souligné.</listconst></list>
  <list name="Boutons" flag="" type="Integer"><listconst name="OkSeul">Un bouton.</listconst>
    <listconst name="OuiNon">Deux boutons.</listconst></list>
  <list name="bool" flag="" type="bool"><listconst name="True">Vrai.</listconst>
    <listconst name="False">Faux.</listconst></list>
</objects>
)xml";

const std::vector<TSyntaxTest::TWayOut> TSyntaxTest::WaysOut{
    {"OK", true, [](TFormDriver& form) { form.Click("ButtonOK"); }},
    {"Enter on OK", true,
     [](TFormDriver& form) {
       form.TabTo("ButtonOK");
       form.Press(VK_RETURN);
     }},
    {"Cancel", false, [](TFormDriver& form) { form.Click("ButtonCancel"); }},
    {"Escape", false, [](TFormDriver& form) { form.Press(VK_ESCAPE); }},
    {"close box", false, [](TFormDriver& form) { form.CloseBox(); }},
    {"Alt+F4", false,
     [](TFormDriver& form) {
       // Not every system's combo boxes pass this key on.
       form.TabTo("ButtonOK");
       form.Press(VK_F4, mdAlt);
     }},
};

void TSyntaxTest::SetUp() {
  TOutsideTest::SetUp();
  Database.emplace(SampleDatabase);
}

void TSyntaxTest::TearDown() {
  Database.reset();
  TOutsideTest::TearDown();
}

void TSyntaxTest::WithDialog(const char* className, const TCall& call, const TScript& script) {
  During(call, [&](TScriptedUser& user) {
    TFormDriver form = user.WaitForForm(className, OpeningMs);
    script(user, form);
    if (!form.Gone()) form.Click("ButtonOK");
    form.WaitGone();
  });
}

TSyntaxTest::TAssisted TSyntaxTest::Assist(std::string_view line, int cursor, const TScript& script,
                                           std::string_view types) {
  const char* result = nullptr;
  WithDialog(
      "TDlgSyntax",
      [&] { Library->VCLSyntaxHelpBox(Ansi(line).c_str(), &cursor, &result, Ansi(types).c_str()); },
      script);
  return {result ? FromAnsi(result) : "(null)", cursor};
}

std::string TSyntaxTest::Pick(std::string_view text, const TScript& script) {
  const char* result = nullptr;
  WithDialog(
      "TDlgSyntaxConst", [&] { Library->VCLSyntaxConstHelpBox(Ansi(text).c_str(), &result); },
      script);
  return result ? FromAnsi(result) : "(null)";
}

std::string TSyntaxTest::EditTypes(std::string_view variables, const TScript& script) {
  const char* result = nullptr;
  WithDialog(
      "TDlgSyntaxTypes", [&] { Library->VCLSyntaxTypesBox(Ansi(variables).c_str(), &result); },
      script);
  return result ? FromAnsi(result) : "(null)";
}

std::optional<std::string> TSyntaxTest::NewTypes() {
  const char* result = nullptr;
  if (!Library->VCLSyntaxGetNewTypes(&result)) {
    EXPECT_STREQ(result, "");
    return std::nullopt;
  }
  return result ? FromAnsi(result) : "(null)";
}

std::vector<std::pair<std::string, int>> TSyntaxTest::HelpContexts(const std::string& className) {
  const HRSRC found = FindResourceA(Library->Module, className.c_str(), "FORM");
  const std::string layout(
      static_cast<const char*>(LockResource(LoadResource(Library->Module, found))),
      SizeofResource(Library->Module, found));
  std::vector<std::pair<std::string, int>> contexts;
  // An item begins at the start of a line; what belongs to it is indented.
  const std::regex item("(?:^|\\n)[a-z-]+ (\\w+)((?:[^\\n]|\\n[ \\t])*)");
  const std::regex help("\\bhelp (\\d+)");
  for (std::sregex_iterator at(layout.begin(), layout.end(), item), end; at != end; ++at) {
    const std::string properties = (*at)[2];
    std::smatch context;
    if (std::regex_search(properties, context, help))
      contexts.emplace_back((*at)[1], std::stoi(context[1]));
  }
  return contexts;
}

void TSyntaxTest::ExpectLayout(TScriptedUser& user, TFormDriver& form, int helpContext,
                               const std::vector<TLaidOut>& controls) {
  form.Click("ButtonHelp");
  const THelpServer::TRequest asked{form.Handle(), HELP_CONTEXT, helpContext, HelpFile};
  user.WaitUntil("the help request", [&] { return !HelpServer->Requests().empty(); });
  EXPECT_EQ(HelpServer->Requests().back(), asked);

  const auto contexts = HelpContexts(ClassOf(form.Handle()));
  for (const TLaidOut& control : controls) {
    SCOPED_TRACE(control.Name);
    if (*control.Caption) {
      EXPECT_EQ(form.Text(control.Name), control.Caption);
    }
    if (control.HelpContext) {
      const std::pair<std::string, int> entry(control.Name, control.HelpContext);
      EXPECT_EQ(std::ranges::count(contexts, entry), 1);
    }
    if (!*control.Hint) continue;
    // Without a context of its own a control is explained by its tooltip only.
    if (control.HelpContext)
      form.AskAbout(control.Name);
    else
      form.PointAt(control.Name);
    std::string hint;
    user.WaitUntil(std::string("the hint of ") + control.Name,
                   [&] { return (hint = user.WaitForBubble()) == control.Hint; });
  }
  // The last bubble lies over what a click could be meant for.
  form.Press(VK_ESCAPE);
}

std::string TSyntaxTest::SpokenName(HWND control) {
  IAccessible* accessible = nullptr;
  if (FAILED(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                        reinterpret_cast<void**>(&accessible))))
    return "(not accessible)";
  VARIANT self{};
  self.vt = VT_I4;
  BSTR name = nullptr;
  accessible->get_accName(self, &name);
  std::string spoken = name ? Utf8(name) : "(no name)";
  SysFreeString(name);
  accessible->Release();
  return spoken;
}

void TSyntaxTest::Timed(const char* what, const std::function<void()>& act) {
  constexpr ULONGLONG SlowMs = 10000;
  const ULONGLONG start = GetTickCount64();
  act();
  const ULONGLONG taken = GetTickCount64() - start;
  std::printf("%s: %d ms\n", what, static_cast<int>(taken));
  EXPECT_LT(taken, SlowMs) << what;
}

// ---- interruptions ----

namespace {
TInterruption* Interruption = nullptr;
}  // namespace

TInterruption::TInterruption(std::function<void()> work)
    : FWork(std::move(work)), FTimer(SetTimer(nullptr, 0, 20, Tick)) {
  Interruption = this;
}

TInterruption::~TInterruption() {
  KillTimer(nullptr, FTimer);
  Interruption = nullptr;
}

void TInterruption::Happen(TUser& user) {
  FDone = false;
  FWanted = true;
  user.WaitUntil("the interruption", [this] { return FDone.load(); });
}

void CALLBACK TInterruption::Tick(HWND, UINT, UINT_PTR, DWORD) {
  if (!Interruption || !Interruption->FWanted.exchange(false)) return;
  Interruption->FWork();
  Interruption->FDone = true;
}
