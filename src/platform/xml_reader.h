#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>

/// Takes the nodes of a document in document order. Texts are in the ANSI code page and valid
/// during the call only.
class TXmlSink {
 public:
  using TAttribute = std::pair<std::string_view, std::string_view>;  ///< name, value

  virtual ~TXmlSink() = default;
  /// The line, from 1, of the end of the tag whose element comes next.
  virtual void AtLine(int /*line*/) {}
  virtual void StartElement(std::string_view name, std::span<const TAttribute> attributes) = 0;
  virtual void EndElement() = 0;
  /// A whole text node; character references are resolved.
  virtual void Characters(std::string_view text) = 0;
  virtual void CDataSection(std::string_view text) = 0;
  /// A comment, or a processing instruction where the system's component reports those.
  virtual void OtherNode() = 0;
};

enum class TXmlReading {
  Done,
  NoFile,       ///< missing, not a file, not readable, or too large for memory
  Refused,      ///< defines entities, through which it could grow or fetch
  Broken,       ///< not well-formed, in no known encoding, or past a limit of the component
  NoComponent,  ///< the system's XML component is not there
};

/// Reads a file (ANSI path) with the system's XML component, in any encoding that names a code page
/// of the system. A document type declaration is read over. Unless the outcome is
/// Done, what the sink was given is to be thrown away. What the sink throws comes out of here;
/// nothing else is thrown but std::bad_alloc and std::length_error. For any thread.
TXmlReading ReadXmlFile(const std::string& path, TXmlSink& sink);
