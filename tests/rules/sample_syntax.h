#pragma once

#include "database_from_xml.h"
#include "syntax/rules/assistant_model.h"

/// A small database whose types chain, as a budget program would offer it.
struct TSampleSyntax {
  const TSyntaxDatabase Database = DatabaseFromXml(R"(<objects>
    <object name="Application"><data name="Comptes" type="Comptes"/></object>
    <object name="Comptes">
      <method name="Item"><return type="Compte"/><param name="Index"/></method>
      <data name="Count" type="Entier"/></object>
    <object name="Compte"><comment>cpt</comment>
      <method name="Add"><param name="Prix"/><oparam name="Oui" type="bool"/>
        <oparam name="Gras" list="Styles" def="0">le style</oparam></method>
      <method name="Solde"><comment>net</comment>
        <return type="Monnaie">le solde</return></method>
      <data name="Ecritures" type="Ecritures"/><data name="Nom" type="Texte"/></object>
    <object name="Ecritures">
      <method name="Item"><return type="Ecriture"/><param name="Index"/></method></object>
    <object name="Ecriture"><data name="Categorie" type="categorie"/></object>
    <object name="Categorie"><data name="Nom" type="Texte"/>
      <data name="Haut" type="Categorie"/></object>
    <object><data name="Comptes"/></object><method><param name="sans nom"/></method>
    <type name="Texte">mots</type>
    <const name="App" type="Application"/>
    <method name="MsgBox"><return type="Entier">le bouton</return>
      <param name="Prompt"/><oparam name="Buttons"/></method>
    <method name="Left"><return type="Texte"/><param name="Text"/><param name="Length"/></method>
    <data name="Date" type="Texte"/>
    </objects>)");
  TSyntaxNames Names;

  TSampleSyntax() {
    Names.BuildWords(Database);
    Names.BuildTypes(Database);
  }
};

inline const TSampleSyntax kSyntax;
inline const TSyntaxView kView{kSyntax.Database, kSyntax.Names};
