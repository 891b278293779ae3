#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace vel::test {

/// Reads an XML document. What is not well formed about it, or nothing.
std::string readXml(std::string_view text, pugi::xml_document& xml);

/// What the bytes hold that a document must not: ill-formed UTF-8 or control
/// characters other than line feeds. Empty when there is nothing.
std::string textProblem(std::string_view document);

}  // namespace vel::test
