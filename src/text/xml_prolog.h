#pragma once

#include <string_view>

/// Whether an XML file may hold a document type declaration: true when its prolog has one, or is in
/// an encoding that this look at its bytes cannot follow (it follows ASCII's kin and UTF-16).
bool MayHaveDocumentType(std::string_view bytes);
