#pragma once

#include <windows.h>

#include <richedit.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// A script editor: a rich edit control whose words are coloured line by line. Lines and columns
/// count from 0; a column counts UTF-16 units.
class TScriptEditor {
 public:
  /// Whether a name, with its leading dot when it follows one, is known as a method or a constant.
  struct TNames {
    std::function<bool(const std::wstring& name)> IsMethod;
    std::function<bool(const std::wstring& name)> IsConstant;
  };
  struct TPosition {
    int Line = 0;
    int Column = 0;
  };

  /// False when the system has no rich edit control. The parent hands the control's EN_CHANGE to
  /// Changed.
  bool Create(HWND parent, int id, TNames names);
  HWND Handle() const { return FHandle; }

  /// Replaces everything; the change cannot be undone.
  void SetText(const std::wstring& text);
  std::wstring Text() const;
  /// The position of the caret, or of the end of the selection.
  TPosition Position() const;
  void SetPosition(TPosition position);

  int LineCount() const { return static_cast<int>(FLines.size()); }
  const std::wstring& Line(int line) const { return FLines[static_cast<std::size_t>(line)]; }
  /// These keep the caret at the character where it was.
  void SetLine(int line, const std::wstring& text);
  void InsertLine(int line, const std::wstring& text);
  void DeleteLine(int line);

  /// Nothing when the selection runs over several lines: it is no part of a line then.
  std::optional<std::wstring> SelectedText() const;
  void ReplaceSelection(const std::wstring& text);

  /// The mouse rests on a name (with its leading dot) at a place of the screen; it moved on.
  std::function<void(const std::wstring& name, POINT below)> OnRestOn;
  std::function<void()> OnMovedOn;

  /// Colours the lines that differ from those coloured before.
  void Changed();

 private:
  static LRESULT CALLBACK EditorProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                     UINT_PTR id, DWORD_PTR data);
  CHARRANGE Selection() const;
  void Select(CHARRANGE range);
  void ReplaceKeepingCaret(CHARRANGE range, const std::wstring& text);
  CHARRANGE LineRange(int line) const;
  void ColourLine(int line);
  void Colour(CHARRANGE range, COLORREF colour, bool automatic);
  void PastePlain();
  void MouseMoved(POINT at);
  void MouseRests(POINT at);
  /// The name under a point of the control, or empty.
  std::wstring NameAt(POINT at) const;

  HWND FHandle = nullptr;
  TNames FNames;
  std::vector<std::wstring> FLines{std::wstring()};
  bool FColouring = false;
  std::wstring FRestsOn;  ///< the name that the mouse rests on
};
