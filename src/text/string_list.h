#pragma once

#include <memory>
#include <string>
#include <string_view>

/// An ordered list of 8-bit lines, sorted or in order of arrival, whose lines may be read as
/// name=value pairs and which converts to and from comma text.
///
/// Equality and order are those of text/collation.h. Adding, looking up a line and looking up a
/// name do not scan the list. What runs out of memory throws std::bad_alloc and changes nothing.
/// Not thread-safe.
class TStringList {
 public:
  struct TOptions {
    bool Sorted = false;
    bool CaseSensitive = false;
    bool KeepDuplicates = false;  ///< else a line equal to one already there is not added again
  };

  explicit TStringList(TOptions options);
  ~TStringList();
  TStringList(TStringList&&) noexcept;
  TStringList& operator=(TStringList&&) noexcept;

  const TOptions& Options() const;
  int Count() const;
  /// The line at a 0-based index; throws std::out_of_range. Valid until the list changes.
  std::string_view At(int index) const;
  /// Index of the line that now holds the text: the new one, or the equal one already there.
  int Add(std::string_view line);
  /// Index of the first line equal to the text, or -1.
  int IndexOf(std::string_view line) const;
  /// Removes the line at a 0-based index; throws std::out_of_range.
  void Delete(int index);
  void Clear();

  /// Index of the first line whose name (the part before the first "=") is this, or -1; of several
  /// in a sorted list, the one that SetValue wrote last. A line without "=" has no name.
  int IndexOfName(std::string_view name) const;
  /// The part after the first "=" of that line; empty when there is none.
  std::string_view Value(std::string_view name) const;
  /// Changes that line's value, or adds name=value; an empty value deletes the line. The value then
  /// reads back, also where the order puts the line behind another one of its name.
  void SetValue(std::string_view name, std::string_view value);

  /// The lines joined by commas; a line that is empty only by itself, or holds a blank, a control
  /// character, a comma or a double quote, stands between double quotes, inner ones doubled.
  std::string CommaText() const;
  /// Replaces the lines. Blanks and control characters part entries outside quotes like commas do,
  /// but runs of them yield no empty entry; a quote opens only at the start of an entry and lacks
  /// nothing when unclosed; a comma at the end yields a last empty line.
  void SetCommaText(std::string_view text);

 private:
  struct TImpl;
  std::unique_ptr<TImpl> FImpl;
};
