#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What is done to an XML file before the system's reader has it, whose versions agree neither on
/// encodings nor on document types.

/// How a file's bytes are to be decoded.
struct TXmlEncoding {
  static constexpr unsigned Utf8 = 65001, Utf16 = 1200, Utf16BigEndian = 1201, Unknown = 0;

  unsigned CodePage = Utf8;  ///< by the system's numbers
  std::size_t MarkSize = 0;  ///< bytes of the mark before the text
};

/// By the byte order mark, else by the look of the first characters, else by the name in the
/// declaration, else UTF-8. Unknown when the declaration names an encoding that is not known here
/// or that these bytes cannot be in.
TXmlEncoding XmlEncodingOf(std::string_view bytes);

enum class TXmlText {
  Ready,
  DefinesEntities,  ///< through which a text could grow without end or be fetched from elsewhere
  Broken,           ///< holds characters or a document type declaration that no document may
};

/// Makes decoded text ready: every line ends in a line feed alone; the name of the encoding, no
/// longer true, and the document type declaration give way to blanks. A declaration that defines no
/// entity says nothing that is needed (defaults of attributes are not supplied), and what it refers
/// to is never fetched. Unless the outcome is Ready the text is to be thrown away.
TXmlText PrepareXmlText(std::u16string& text);
