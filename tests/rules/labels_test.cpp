#include "forms/rules/labels.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

namespace {

// The layouts themselves, so that a control put between a label and its own comes to light.
TEST(Labels, BelongToTheControlTheyAreLaidOutFor) {
  const std::map<std::string, std::map<std::string, std::string>> expected{
      {"TDlgSyntax",
       {{"EditLigne", "Label1"},
        {"EditObjet", "Label2"},
        {"UpDown", ""},
        {"BoxType", "StaticText1"},
        {"EditHelpType", ""},
        {"EditMethod", "Label3"},
        {"BoxMethod", ""},
        {"TextReturnType", "Label7"},
        {"EditHelpMethod", ""},
        {"ListParam", "Label4"},
        {"EditValue", "Label5"},
        {"TextParamType", ""},
        {"TextDefVal", "Label8"},
        {"EditParamHelp", ""}}},
      {"TDlgSyntaxConst",
       {{"EditResult", "Label2"},
        {"BoxCat", "Label1"},
        {"EditType", ""},
        {"EditHelp", ""},
        {"ListConst", ""},
        {"EditConstHelp", ""}}},
      {"TDlgSyntaxTypes",
       {{"EditNew", "Label1"}, {"BoxConst", ""}, {"EditModif", "Label2"}, {"BoxTypes", "Label3"}}},
      {"TDlgDirSelect", {{"ListRep", "Label1"}, {"EditRep", "Label2"}}},
      {"TDlgSelectTypOp", {{"ListTypOp", "Label1"}, {"ListCB", "Label2"}, {"Memo1", ""}}},
      {"TDlgAskDwld", {{"STVerCur", "Label1"}, {"STVerWeb", "Label2"}, {"Web", "Label3"}}},
      {"TDlgDwnld", {{"ProgressBar", "LabelStatus"}}},
      {"TDlgDebug", {{"Memo", ""}}},
      {"TInputBox", {{"Value", "Prompt"}}},
  };
  for (const auto& [form, controls] : expected) {
    std::ifstream file(std::string(ZEF_SOURCE_DIR) + "/src/resources/" + form + ".form");
    std::ostringstream text;
    text << file.rdbuf();
    const TLayout layout = ParseLayout(text.str());
    std::vector<const TLayoutItem*> items;
    for (const auto& item : layout.Controls) items.push_back(&item);
    std::map<std::string, std::string> labels;
    for (const auto& item : layout.Controls) {
      if (!controls.contains(item.Name)) continue;
      const TLayoutItem* label = LabelOf(item, items);
      labels[item.Name] = label ? label->Name : "";
    }
    EXPECT_EQ(labels, controls) << form;
  }
}

}  // namespace
