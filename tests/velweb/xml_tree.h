#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vel::test {

/// An XML element as the tests look at one.
struct XmlElement {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::string text;  ///< of the element itself, entities resolved
  std::vector<std::unique_ptr<XmlElement>> children;

  [[nodiscard]] const XmlElement* child(std::string_view wanted) const;
  [[nodiscard]] std::vector<const XmlElement*> all(std::string_view wanted) const;
  /// The names of the children, in order.
  [[nodiscard]] std::vector<std::string> childNames() const;
};

/// Reads the XML that the program writes (no comments, no CDATA). On anything
/// that is not well formed gives null and says what in `problem`.
std::unique_ptr<XmlElement> parseXml(std::string_view xml, std::string& problem);

/// What the bytes hold that a document must not: ill-formed UTF-8 or control
/// characters other than line feeds. Empty when there is nothing.
std::string textProblem(std::string_view document);

}  // namespace vel::test
