#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "syntax/rules/syntax_database.h"

/// Feeds a sink of nodes from a text in the small part of XML that tests write: no entities, no
/// white space inside tags but one blank before an attribute, double quotes only.
template <class TSink>
void FeedXml(std::string_view xml, TSink& sink) {
  const auto take = [&xml](std::string_view end) {
    const std::size_t at = xml.find(end);
    const std::string_view part = xml.substr(0, at);
    xml.remove_prefix(at == std::string_view::npos ? xml.size() : at + end.size());
    return part;
  };
  while (!xml.empty()) {
    if (xml.front() != '<') {
      const std::string_view text = xml.substr(0, xml.find('<'));  // in pieces, as readers give it
      sink.Characters(text.substr(0, text.size() / 2));
      sink.Characters(text.substr(text.size() / 2));
      xml.remove_prefix(text.size());
    } else if (xml.starts_with("<![CDATA[")) {
      sink.CDataSection(take("]]>").substr(9));
    } else if (xml.starts_with("<!--")) {
      take("-->");
      sink.OtherNode();
    } else if (xml.starts_with("</")) {
      take(">");
      sink.EndElement();
    } else {
      std::string_view tag = take(">").substr(1);
      const bool closed = tag.ends_with('/');
      if (closed) tag.remove_suffix(1);
      std::vector<TSyntaxDatabaseBuilder::TAttribute> attributes;
      const std::string_view name = tag.substr(0, tag.find(' '));
      for (std::size_t at = name.size(), end = 0; at < tag.size(); at = end + 1) {
        const std::size_t equals = tag.find('=', at);
        end = tag.find('"', equals + 2);
        attributes.emplace_back(tag.substr(at + 1, equals - at - 1),
                                tag.substr(equals + 2, end - equals - 2));
      }
      sink.StartElement(name, attributes);
      if (closed) sink.EndElement();
    }
  }
}

inline TSyntaxDatabase DatabaseFromXml(std::string_view xml) {
  TSyntaxDatabaseBuilder builder;
  FeedXml(xml, builder);
  return builder.Finish();
}
