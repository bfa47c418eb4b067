#include "forms/rules/layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "forms/rules/arrangement.h"
#include "forms/rules/glyph.h"
#include "forms/rules/labels.h"
#include "forms/rules/layout_words.h"

namespace {

std::map<std::string, std::string> Resources(const char* folder, const char* extension) {
  std::map<std::string, std::string> files;
  const auto root = std::filesystem::path(ZEF_SOURCE_DIR) / "src/resources" / folder;
  for (const auto& entry : std::filesystem::directory_iterator(root)) {
    if (entry.path().extension() != extension) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    files[entry.path().stem().string()].assign(std::istreambuf_iterator<char>(file), {});
  }
  return files;
}

TEST(Layout, ReadsFormControlsAndProperties) {
  const auto layout = ParseLayout(
      "# a dialog\n"
      "form TDlgDebug inherits TDlgBase\n"
      "\tcaption\t\"Dlg \"\"Debug\"\"\"client 382 150  icons system minimize\r\n"
      "memo Memo 0 -1 382 102  anchors left top right bottom  # inside a line too\n"
      "  lines \"a\" \"\"  scroll both\n"
      "button ButtonOK 96 115  click ButtonOKClick\n"
      "label Label1 caption \"\"");
  EXPECT_EQ(layout.BaseName, "TDlgBase");
  EXPECT_EQ(layout.Form.Find("caption")->Values, std::vector<std::string>{"Dlg \"Debug\""});
  ASSERT_EQ(layout.Controls.size(), 3u);
  EXPECT_EQ(layout.Controls[0].Bounds[1], -1);
  EXPECT_EQ(layout.Controls[0].Find("lines")->Values, (std::vector<std::string>{"a", ""}));
  EXPECT_FALSE(layout.Controls[1].Bounds[2]);
}

TEST(Layout, RefusesWhatItDoesNotKnow) {
  EXPECT_TRUE(FindLayoutWord("click")->Event && !FindLayoutWord("caption")->Event);
  const struct {
    const char *Text, *Complaint;
  } cases[] = {
      {"", "line 1: a layout starts with its form"},
      {"button B 1 2 3 4\n", "line 1: a layout starts with its form"},
      {"  form F\n", "line 1: an item starts with its kind"},
      {"form F\n\"button\" B 1 2 3 4\n", "line 2: an item starts with its kind"},
      {"form F\nbutton", "F, line 2: the name is missing"},
      {"form F\nslider S 1 2 3 4\n", "unknown kind slider"},
      {"form F\nbutton 1 2 3 4\n", "F, line 2: the name is missing"},
      {"form F\nbutton B 1 2 3 4 colour face\n", "F, line 2: B: unknown property colour"},
      {"form F\nbutton B 1 2 3 4 5\n", "F, line 2: B: a property is missing"},
      {"form F\nbutton B 1 2 3 4 default default\n", "F, line 2: B: default is given twice"},
      {"form F\nbitmap-button B 1 2 3 4 change BChange\n", "a bitmap-button takes no change"},
      {"form F tab 1\n", "F, line 1: a form takes no tab"},
      {"form F icons system glyph add\n", "F, line 1: a form takes no glyph"},
      {"form F\nedit E 1 2 anchors\n  tab 1\n", "E: anchors cannot be tab"},
      {"form F client 1\n", "client lacks a value"},
      {"form F\nbutton B 1 2 3\n", "two or four"},
      {"form F\nbutton B 1 2\nbutton B 3 4\n", "F, line 3: B: is given twice"},
      {"form F\nbutton B 1 2 caption \"a\n", "not closed"},
      {"form F\nbutton B 1 2 caption \"a", "not closed"},
      {"form F\nbutton B 1 99999999999\n", "F, line 2: B: a position"},
  };
  EXPECT_THROW(LayoutNumber("1a"), TLayoutError);
  for (const auto& each : cases) {
    try {
      ParseLayout(each.Text);
      ADD_FAILURE() << each.Text;
    } catch (const TLayoutError& error) {
      EXPECT_NE(std::string(error.what()).find(each.Complaint), std::string::npos)
          << each.Text << " -> " << error.what();
    }
  }
}

TEST(Layout, ADerivedLayoutOverridesItsBase) {
  const auto base = ParseLayout(
      "form A\n  caption \"a\" client 1 2\n"
      "button OK 1 2 3 4 caption \"&OK\" default\nbutton No 5 6 7 8\n");
  const auto merged = MergeLayouts(
      base, ParseLayout("form B inherits A\n  caption \"b\"\n"
                        "edit E 1 1 1 1\nbutton OK 10 20 caption \"&Ouvrir\" help 3\n"));
  EXPECT_EQ(merged.Form.Name + merged.BaseName + merged.Form.Find("caption")->Values[0], "BAb");
  EXPECT_TRUE(merged.Form.Find("client"));
  ASSERT_EQ(merged.Controls.size(), 3u);
  const auto& ok = merged.Controls[0];
  EXPECT_EQ(ok.Bounds, (decltype(ok.Bounds){10, 20, 3, 4}));
  EXPECT_EQ(ok.Find("caption")->Values[0], "&Ouvrir");
  EXPECT_TRUE(ok.Find("default") && ok.Find("help"));
  EXPECT_EQ(merged.Controls[2].Name, "E");
  EXPECT_THROW(MergeLayouts(base, ParseLayout("form B inherits A\nedit OK 1 2\n")), TLayoutError);
}

TEST(Arrangement, GoesByTheAnchorsDownToWhereControlsWouldMeet) {
  const TAnchors fixed, right{false, true, true, false}, wide{true, true, true, false},
      low{true, false, false, true}, corner{false, false, true, true}, all{true, true, true, true};
  const struct {
    const char* Name;
    std::vector<TArrangedItem> Items;
    TExtent Least;  ///< of a form designed 200 x 100
  } cases[] = {
      {"nothing moves", {{{10, 10, 60, 30}, fixed, {}}}, {60, 30}},
      {"meets the side", {{{150, 10, 190, 30}, right, {}}}, {50, 30}},
      {"gets narrow", {{{10, 10, 190, 30}, wide, {48, 20}}}, {68, 30}},
      {"meets another", {{{10, 10, 60, 30}, fixed, {}}, {{90, 10, 190, 30}, right, {}}}, {170, 30}},
      {"passes above another",
       {{{10, 10, 60, 30}, fixed, {}}, {{90, 40, 190, 60}, right, {}}},
       {110, 60}},
      {"never meets a hidden one",
       {{{10, 10, 60, 30}, fixed, {}, false}, {{90, 10, 190, 30}, right, {}}},
       {110, 30}},
      {"gives way below",
       {{{10, 10, 60, 50}, all, {48, 15}}, {{10, 60, 60, 80}, low, {}}},
       {198, 75}},
      {"touches",
       {{{10, 30, 60, 50}, low, {}}, {{10, 10, 60, 30}, fixed, {}}, {{60, 10, 190, 30}, right, {}}},
       {200, 100}},
      {"lies over another", {{{10, 10, 60, 50}, fixed, {}}, {{10, 40, 60, 80}, low, {}}}, {60, 60}},
      {"stands apart both ways",
       {{{10, 10, 60, 30}, fixed, {}}, {{90, 60, 190, 80}, corner, {}}},
       {110, 70}},
      {"stops above", {{{10, 10, 60, 50}, fixed, {}}, {{10, 60, 60, 80}, low, {}}}, {60, 90}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.Name);
    const TArrangement arrangement(each.Items, {200, 100});
    const TExtent size = arrangement.Least();
    EXPECT_TRUE(size.Width == each.Least.Width && size.Height == each.Least.Height);
    // Below the least size nothing moves any more.
    const auto least = arrangement.At(size), less = arrangement.At({1, 1}),
               grown = arrangement.At({260, 170});
    for (std::size_t i = 0; i < each.Items.size(); ++i) {
      const auto& [box, anchors, room, shown] = each.Items[i];
      EXPECT_TRUE(less[i].Left == least[i].Left && less[i].Bottom == least[i].Bottom);
      EXPECT_EQ(grown[i].Right, box.Right + (anchors.Right ? 60 : 0));
      EXPECT_EQ(grown[i].Left, box.Left + (anchors.Right && !anchors.Left ? 60 : 0));
      EXPECT_EQ(grown[i].Bottom, box.Bottom + (anchors.Bottom ? 70 : 0));
      EXPECT_EQ(grown[i].Top, box.Top + (anchors.Bottom && !anchors.Top ? 70 : 0));
    }
  }
}

TEST(Arrangement, FieldsMakeRoomForTheLabelsBesideThem) {
  const TAnchors fixed;
  std::vector<TArrangedItem> items = {
      {{50, 8, 150, 29}, fixed, {40, 21}},       // a field
      {{8, 12, 60, 25}, fixed, {}},              // its label that needs more
      {{8, 42, 40, 55}, fixed, {}},              // one that does not
      {{50, 38, 150, 59}, fixed, {40, 21}},      // its field stays in the column
      {{160, 8, 180, 29}, fixed, {2, 21}},       // further right: stays
      {{50, 80, 90, 101}, fixed, {38, 21}},      // of the column, with little to give
      {{50, 120, 98, 133}, fixed, {}},           // a label in the column
      {{8, 0, 190, 140}, fixed, {2, 2}},         // around them all
      {{0, 8, 6, 29}, fixed, {2, 21}},           // before the label
      {{30, 8, 49, 29}, fixed, {2, 21}, false},  // between it and its field, but hidden
      {{30, 80, 49, 101}, fixed, {2, 21}},       // between them, but on another line
      {{40, 8, 49, 25}, fixed, {}},              // another label between them
      {{100, 118, 150, 139}, fixed, {40, 21}},   // the field of the label in the column
  };
  MakeRoomForLabels(items, {1, 2, 6, 11}, 4);
  const int lefts[] = {64, 8, 8, 64, 160, 52, 50, 8, 0, 30, 30, 40, 102};
  for (std::size_t i = 0; i < items.size(); ++i) EXPECT_EQ(items[i].Box.Left, lefts[i]) << i;
  EXPECT_EQ(items[0].Box.Right, 150);
}

/// A dialog is usable by keyboard only when each of its fields has a place of its own in the Tab
/// order, and a control that lies outside the form cannot be seen at all.
TEST(Layout, EveryLayoutOfTheLibraryIsSound) {
  const auto files = Resources("", ".form");
  const auto glyphs = Resources("glyphs", ".glyph");
  const std::function<TLayout(const std::string&)> load = [&](const std::string& name) {
    const auto layout = ParseLayout(files.at(name));
    return layout.BaseName.empty() ? layout : MergeLayouts(load(layout.BaseName), layout);
  };
  ASSERT_FALSE(files.empty());
  for (const auto& [name, text] : files) {
    SCOPED_TRACE(name);
    const auto layout = load(name);
    EXPECT_EQ(layout.Form.Name, name);
    const auto* size =
        layout.Form.Find("client") ? layout.Form.Find("client") : layout.Form.Find("size");
    ASSERT_NE(size, nullptr);
    std::set<std::string> tabs;
    for (const auto& control : layout.Controls) {
      SCOPED_TRACE(control.Name);
      if (control.Find("hidden")) continue;
      ASSERT_TRUE(control.Bounds[0] && control.Bounds[1]);
      EXPECT_LE(*control.Bounds[0] + control.Bounds[2].value_or(0), LayoutNumber(size->Values[0]));
      EXPECT_LE(*control.Bounds[1] + control.Bounds[3].value_or(0), LayoutNumber(size->Values[1]));
      const auto* tab = control.Find("tab");
      EXPECT_TRUE(!tab || tabs.insert(tab->Values[0]).second);
      const auto* glyph = control.Find("glyph");
      EXPECT_TRUE(!glyph || glyphs.contains(glyph->Values[0]));
    }
  }
}

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
      {"form F\nlabel L\nedit E 1 0 9 9\nedit D 1 13 9 13\n", "E=L D="},
      {"form F\nlabel L 0 0\nedit E 0 0\nedit D 9 0\n", "E= D=L"},
  };
  const auto files = Resources("", ".form");
  for (const auto& [form, controls] : expected) {
    const auto file = files.find(form);
    const TLayout layout = ParseLayout(file == files.end() ? form : file->second);
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

TEST(Glyph, ScalingAveragesAndRefusalsName) {
  for (const auto& [name, text] : Resources("glyphs", ".glyph"))
    EXPECT_EQ(ScaleGlyph(ParseGlyph(text), 20).Pixels.size(), 400u) << name;
  const std::string color = "b 1D5FA8", row = "b.b.b.b.b.b.b.b.\n", clear = "................\n";
  std::string rest;  // after the first two rows
  for (int i = 0; i < 7; ++i) rest += row + clear;
  const TGlyph glyph = ParseGlyph(color + " \r\n \n\n" + row + clear + rest);
  // Colours are multiplied by their alpha.
  constexpr std::uint32_t Full = 0xFF1D5FA8u, Half = 0x800F3054u, Quarter = 0x4007182Au;
  const struct {
    int Size, Across, Down;
    std::uint32_t Pixel;
  } pixels[] = {{8, 7, 7, Quarter}, {16, 14, 14, Full}, {16, 14, 15, 0},       {20, 1, 0, Quarter},
                {24, 1, 0, Half},   {24, 3, 0, Full},   {24, 22, 22, Quarter}, {32, 29, 29, Full}};
  for (const auto& [size, across, down, pixel] : pixels)
    EXPECT_EQ(ScaleGlyph(glyph, size).Pixels.at(static_cast<std::size_t>(down * size + across)),
              pixel)
        << size;
  for (const auto& wrong :
       {color + "\n" + row, color + "\n" + row + clear + clear, "\n" + row + clear,
        "b 1D5FAG\n" + row + clear, "b 1D5FA\n" + row + clear, "b G1D5FA\n" + row + clear,
        color + "\n...............\n.................\n"})
    EXPECT_THROW(ParseGlyph(wrong + rest), TLayoutError) << wrong;
}

}  // namespace
