#include "forms/rules/labels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace {

// The layouts themselves, so that a control put between a label and its own comes to light.
TEST(Labels, BelongToTheControlTheyAreLaidOutFor) {
  const std::pair<const char*, const char*> expected[] = {
      {"TDlgSyntax",
       "EditLigne=Label1 EditObjet=Label2 UpDown= BoxType=StaticText1 EditHelpType= "
       "EditMethod=Label3 BoxMethod= TextReturnType=Label7 EditHelpMethod= ListParam=Label4 "
       "EditValue=Label5 TextParamType= TextDefVal=Label8 EditParamHelp="},
      {"TDlgSyntaxConst",
       "EditResult=Label2 BoxCat=Label1 EditType= EditHelp= ListConst= EditConstHelp="},
      {"TDlgSyntaxTypes", "EditNew=Label1 BoxConst= EditModif=Label2 BoxTypes=Label3"},
      {"TDlgDirSelect", "ListRep=Label1 EditRep=Label2"},
      {"TDlgSelectTypOp", "ListTypOp=Label1 ListCB=Label2 Memo1="},
      {"TDlgAskDwld", "STVerCur=Label1 STVerWeb=Label2 Web=Label3"},
      {"TDlgDwnld", "ProgressBar=LabelStatus"},
      {"TDlgDebug", "Memo="},
      {"TInputBox", "Value=Prompt"},
      // Where rows and columns end.
      {"form F\nlabel L 0 12\nedit E 9 0 9 13\n", "E=L"},
      {"form F\nlabel L 0 13\nedit E 9 0 9 13\n", "E="},
      {"form F\nlabel L 0 0\nedit E 9 12 9 13\n", "E=L"},
      {"form F\nlabel L 0 0\nedit E 9 13 9 13\n", "E="},
      {"form F\nlabel L 0 0\nedit E 0 24 9 13\n", "E=L"},
      {"form F\nlabel L 0 0\nedit E 0 25 9 13\n", "E="},
      {"form F\nlabel L 0 0 hidden\nedit E 9 0\n", "E="},
  };
  for (const auto& [form, controls] : expected) {
    std::ifstream file(std::string(ZEF_SOURCE_DIR) + "/src/resources/" + form + ".form");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const TLayout layout = ParseLayout(text.empty() ? form : text);
    std::vector<const TLayoutItem*> items;
    for (const auto& item : layout.Controls) items.push_back(&item);
    std::istringstream pairs(controls);
    for (std::string pair; pairs >> pair;) {
      const std::string name = pair.substr(0, pair.find('='));
      const auto item = std::ranges::find(layout.Controls, name, &TLayoutItem::Name);
      ASSERT_NE(item, layout.Controls.end()) << form << pair;
      const TLayoutItem* label = LabelOf(*item, items);
      EXPECT_EQ(name + "=" + (label ? label->Name : ""), pair) << form;
    }
  }
}

}  // namespace
