#include "outside/syntax_test.h"

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

void TSyntaxTest::SetUp() {
  TOutsideTest::SetUp();
  Database.emplace(SampleDatabase);
}

void TSyntaxTest::TearDown() {
  Database.reset();
  TOutsideTest::TearDown();
}

void TSyntaxTest::WithDialog(const char* className, const std::function<void()>& call,
                             const TScript& script) {
  During(call, [&](TScriptedUser& user) {
    TFormDriver form = user.WaitForForm(className);
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
