#include "syntax/rules/line_analysis.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "syntax/rules/line_cut.h"
#include "syntax/rules/line_scan.h"
#include "text/collation.h"

namespace {

char At(const std::string& text, int index) { return text[static_cast<std::size_t>(index)]; }

int Length(std::string_view text) { return static_cast<int>(text.size()); }

/// The values as a call has them; empty ones at the end say nothing.
std::string Joined(std::vector<std::string> values) {
  while (!values.empty() && values.back().empty()) values.pop_back();
  std::string text;
  for (const std::string& value : values) {
    if (&value != &values.front()) text += ", ";
    text += value;
  }
  return text;
}

std::string WithParameters(std::string_view head, std::string_view parameters, bool parenthesised) {
  std::string text(head);
  if (parenthesised) {
    text.append(1, '(').append(parameters).append(1, ')');
  } else if (!parameters.empty()) {
    text.append(1, kBlank).append(parameters);
  }
  return text;
}

}  // namespace

void TLineAnalysis::CutHostLine(std::optional<std::string_view> line, int cursor,
                                const TSyntaxNames& names) {
  const TLineCut cut = CutLine(line.value_or(std::string_view()), cursor);
  std::string prefix(cut.Prefix), suffix(cut.Suffix);
  Analyse(std::string(cut.Expression), cut.Position, names);
  FPrefix = std::move(prefix);
  FSuffix = std::move(suffix);
}

void TLineAnalysis::SetExpression(std::string expression, const TSyntaxNames& names) {
  Analyse(std::move(expression), FPosition, names);
}

void TLineAnalysis::Analyse(std::string expression, int position, const TSyntaxNames& names) {
  std::string signs = MaskDoubleBytes(expression);
  // Room for all that can be found: from here on nothing fails, and what there was stayed whole.
  FDots.reserve(static_cast<std::size_t>(std::ranges::count(expression, '.')));
  FValues.reserve(static_cast<std::size_t>(std::ranges::count(expression, ',')) + 1);
  FExpression = std::move(expression);
  FSigns = std::move(signs);
  TestFunction(names);
  FindSegments();
  SelectSegment(position);
}

void TLineAnalysis::TestFunction(const TSyntaxNames& names) {
  FFunctionLength = 0;
  FFunctionMode = FExpression.empty();
  if (FFunctionMode) return;
  const auto end = std::find_if(FSigns.begin(), FSigns.end(), [](char c) {
    return kFunctionStops.Has(c) || kFunctionWordEnd.Has(c);
  });
  if (end != FSigns.end() && kFunctionStops.Has(*end)) return;
  const auto word =
      std::string_view(FExpression).substr(0, static_cast<std::size_t>(end - FSigns.begin()));
  FFunctionMode = names.IsFunction(word);
  FFunctionLength = Length(word);
}

void TLineAnalysis::FindSegments() {
  FDots.clear();
  TNesting nesting;
  char last = '.';
  for (int i = 0; i < Length(FExpression); ++i) {
    const char c = At(FSigns, i);
    const bool enclosed = nesting.Take(c);
    if (!enclosed && c == kBlank) break;
    if (!enclosed && c == '.') FDots.push_back(i);
    last = enclosed ? kQuote : c;
  }
  FEndsWithObject = last != '.';
}

int TLineAnalysis::SegmentCount() const {
  if (FFunctionMode) return 0;
  return static_cast<int>(FDots.size()) + (FEndsWithObject ? 1 : 0);
}

int TLineAnalysis::StartOfSegment(int position) const {
  return position == 0 ? 0 : FDots[static_cast<std::size_t>(position - 1)] + 1;
}

void TLineAnalysis::SelectSegment(int position) {
  FPosition = std::clamp(position, 0, std::max(0, SegmentCount() - 1));
  AnalyseSegment(StartOfSegment(FPosition));
}

void TLineAnalysis::AnalyseSegment(int start) {
  FSegmentStart = start;
  FNames = ScanNames(start);
  FParametersEnd = FNames.MemberEnd;
  FParenthesised = false;
  FValues.clear();
  if (!FNames.ParametersFollow) return;
  const int opening = FNames.MemberEnd + 1;
  FParenthesised = At(FSigns, opening) == '(';
  ScanParameters(opening + 1);
}

TLineAnalysis::TNames TLineAnalysis::ScanNames(int start) const {
  const int length = Length(FExpression);
  int i = start;
  TNames names;
  if (!FFunctionMode) {
    TNesting nesting;
    while (i < length) {
      const char c = At(FSigns, i);
      if (!nesting.Take(c) && (c == '.' || kObjectStops.Has(c))) break;
      ++i;
    }
    names.ObjectEnd = names.MemberEnd = i - 1;
    if (i == length || At(FSigns, i) != '.') return names;
    ++i;
  }

  TNesting nesting;
  for (; i < length; ++i) {
    const char c = At(FSigns, i);
    if (nesting.Idle() && (c == '(' || c == kBlank)) {
      names.ParametersFollow = true;
      break;
    }
    if (!nesting.Take(c) && kMemberStops.Has(c)) break;
  }
  names.MemberEnd = i - 1;
  return names;
}

void TLineAnalysis::ScanParameters(int start) {
  constexpr int none = -1;
  int open = none;      // start of the parameter being read
  int trailing = none;  // start of the blanks after its text
  const auto close = [&](int end) {
    FValues.push_back({open, (trailing != none ? trailing : end) - open});
    open = trailing = none;
  };

  TNesting nesting;
  int i = start;
  for (; i < Length(FExpression); ++i) {
    const char c = At(FSigns, i);
    if (nesting.Idle()) {
      if (c == ')') break;
      if (c == ',') {
        if (open == none) open = i;
        close(i);
        continue;
      }
      if (c == kBlank) {
        if (open != none && trailing == none) trailing = i;
        continue;
      }
    }
    nesting.Take(c);
    if (open == none) open = i;
    trailing = none;
  }
  if (open != none) close(i);
  FParametersEnd = std::min(i, Length(FExpression) - 1);
}

std::string_view TLineAnalysis::Slice(int first, int last) const {
  if (last < first) return {};
  return std::string_view(FExpression)
      .substr(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first + 1));
}

std::string_view TLineAnalysis::Rest(int end) const {
  return std::string_view(FExpression).substr(static_cast<std::size_t>(end + 1));
}

std::string_view TLineAnalysis::MemberNameOf(const TNames& names) const {
  return Slice(FFunctionMode ? 0 : names.ObjectEnd + 2, names.MemberEnd);
}

std::string_view TLineAnalysis::ObjectText() const {
  if (FFunctionMode) return Slice(0, FFunctionLength - 1);
  return Slice(FSegmentStart, FNames.ObjectEnd);
}

std::string_view TLineAnalysis::MemberName() const { return MemberNameOf(FNames); }

std::string_view TLineAnalysis::MemberText() const {
  return Slice(FFunctionMode ? 0 : FNames.ObjectEnd + 2, FParametersEnd);
}

std::string_view TLineAnalysis::TextOf(const TTextRange& range) const {
  return Slice(range.Start, range.Start + range.Length - 1);
}

std::string_view TLineAnalysis::Value(int index) const {
  if (index < 0 || index >= ValueCount()) return {};
  return TextOf(ValueRange(index));
}

std::vector<std::string> TLineAnalysis::Values() const {
  std::vector<std::string> values;
  for (const TTextRange& value : FValues) values.emplace_back(TextOf(value));
  return values;
}

TTextRange TLineAnalysis::ObjectRange() const {
  if (FFunctionMode) return {0, std::min(FNames.MemberEnd + 2, Length(FExpression))};
  return {FSegmentStart, FNames.ObjectEnd - FSegmentStart + 1};
}

void TLineAnalysis::ReplaceMember(std::string_view name, const TSyntaxNames& names) {
  if (!FFunctionMode && !name.empty() && SameText(name, MemberName()) &&
      RespellMemberAt(FPosition, name))
    return;
  std::string text;
  if (!FFunctionMode) text.append(Slice(0, FNames.ObjectEnd)).append(1, '.');
  text.append(name).append(Rest(FNames.MemberEnd));
  SetExpression(std::move(text), names);
}

void TLineAnalysis::SetUseReturn(bool use, const TSyntaxNames& names) {
  std::string parameters;
  const auto isEmpty = [](const TTextRange& value) { return value.Length == 0; };
  if (!FValues.empty() && (isEmpty(FValues.front()) || isEmpty(FValues.back()))) {
    // An empty place has nothing but a comma to be found by.
    parameters = Joined(Values());
  } else if (!FValues.empty()) {
    const TTextRange last = FValues.back();
    parameters = Slice(FValues.front().Start, last.Start + last.Length - 1);
  }
  std::string text = WithParameters(Slice(0, FNames.MemberEnd), parameters, use);
  text.append(Rest(FParametersEnd));
  SetExpression(std::move(text), names);
}

TLineAnalysis::TCallFrame TLineAnalysis::CallFrame() const {
  return {std::string(Slice(0, FNames.MemberEnd)), Values(), FParenthesised,
          std::string(Rest(FParametersEnd))};
}

void TLineAnalysis::SetParam(const TCallFrame& frame, int index, std::string_view value,
                             const TSyntaxNames& names) {
  std::vector<std::string> values = frame.Values;
  const auto place = static_cast<std::size_t>(index);
  if (values.size() <= place) values.resize(place + 1);
  values[place] = value;
  SetExpression(
      WithParameters(frame.Head, Joined(std::move(values)), frame.Parenthesised) + frame.Tail,
      names);
}

void TLineAnalysis::DeleteMember(const TSyntaxNames& names) {
  std::string text(Slice(0, FNames.ObjectEnd));
  text.append(Rest(FParametersEnd));
  SetExpression(std::move(text), names);
}

int TLineAnalysis::FirstObjectLength() const {
  return FFunctionMode ? FFunctionLength : ScanNames(0).ObjectEnd + 1;
}

std::string_view TLineAnalysis::ObjectTextAt(int position) const {
  const int start = StartOfSegment(position);
  return Slice(start, ScanNames(start).ObjectEnd);
}

std::string_view TLineAnalysis::MemberNameAt(int position) const {
  return MemberNameOf(ScanNames(StartOfSegment(position)));
}

bool TLineAnalysis::RespellMemberAt(int position, std::string_view name) {
  // Letter case changes no delimiter, and a length only where characters have several bytes: else
  // all that was found out stays right.
  if (name.size() != MemberNameAt(position).size()) return false;
  const std::size_t at =
      static_cast<std::size_t>(ScanNames(StartOfSegment(position)).ObjectEnd) + 2;
  FExpression.replace(at, name.size(), name);
  return true;
}
