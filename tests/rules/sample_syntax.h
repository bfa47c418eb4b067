#pragma once

#include <string>
#include <vector>

#include "syntax/rules/assistant_model.h"

/// A small database whose types chain, as a budget program would offer it.
struct TSampleSyntax {
  TSyntaxDatabase Database;
  TSyntaxNames Names;

  TSampleSyntax() {
    Object("Application", {Data("Comptes", "Comptes")});
    Object("Comptes", {Method("Item", TSyntaxReturn{"Compte", "le compte"}, {Required("Index")}),
                       Data("Count", "Entier")});
    TSyntaxParam force = Optional("Force");
    force.Type = "bool";
    TSyntaxParam style = Optional("Style");
    style.List = "Styles";
    style.Default = "0";
    style.Help = "le style";
    Object("Compte", {Method("Add", {}, {Required("Montant"), force, style}),
                      Method("Solde", TSyntaxReturn{"Monnaie", "le solde"}, {}),
                      Data("Ecritures", "Ecritures"), Data("Nom", "Texte")});
    Object("Ecritures", {Method("Item", TSyntaxReturn{"Ecriture", ""}, {Required("Index")})});
    Object("Ecriture", {Data("Categorie", "categorie")});  // another letter case than the type's
    Object("Categorie", {Data("Nom", "Texte")});
    Element(TSyntaxKind::Type, "Texte").Text = "une suite de lettres";
    Element(TSyntaxKind::Const, "App").Type = "Application";
    Function(Method("MsgBox", TSyntaxReturn{"Entier", "le bouton"},
                    {Required("Prompt"), Optional("Buttons")}));
    Function(Method("Left", TSyntaxReturn{"Texte", ""}, {Required("Text"), Required("Length")}));
    Names.BuildWords(Database);
    Names.BuildTypes(Database);
  }

  TSyntaxView View() const { return {Database, Names}; }

 private:
  static TSyntaxParam Required(std::string name) {
    TSyntaxParam param;
    param.Name = std::move(name);
    return param;
  }
  static TSyntaxParam Optional(std::string name) {
    TSyntaxParam param = Required(std::move(name));
    param.Required = false;
    return param;
  }
  static TSyntaxMember Data(std::string name, std::string type) {
    TSyntaxMember member;
    member.Kind = TSyntaxKind::Data;
    member.Name = std::move(name);
    member.Type = std::move(type);
    return member;
  }
  static TSyntaxMember Method(std::string name, std::optional<TSyntaxReturn> result,
                              std::vector<TSyntaxParam> params) {
    TSyntaxMember member = Data(std::move(name), {});
    member.Kind = TSyntaxKind::Method;
    member.Comment = "aide sur " + member.Name;
    member.Return = std::move(result);
    member.Params = std::move(params);
    return member;
  }
  TSyntaxElement& Element(TSyntaxKind kind, std::string name) {
    TSyntaxElement& element = Database.Elements.emplace_back();
    element.Kind = kind;
    element.Name = std::move(name);
    return element;
  }
  void Object(std::string name, std::vector<TSyntaxMember> members) {
    TSyntaxElement& element = Element(TSyntaxKind::Object, std::move(name));
    element.Comment = "aide sur " + element.Name;
    element.Members = std::move(members);
  }
  void Function(TSyntaxMember member) {
    Element(member.Kind, member.Name).Function = std::move(member);
  }
};
