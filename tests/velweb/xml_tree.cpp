#include "tests/velweb/xml_tree.h"

namespace vel::test {
namespace {

class Parser {
 public:
  Parser(std::string_view xml, std::string& problem) : rest_(xml), problem_(problem) {}

  std::unique_ptr<XmlElement> document() {
    if (rest_.starts_with("<?xml ")) {
      const std::size_t end = rest_.find("?>");
      if (end == std::string_view::npos) return fail("declaration without end");
      rest_.remove_prefix(end + 2);
    }
    space();
    auto root = element();
    space();
    if (root && !rest_.empty()) return fail("something after the root element");
    return root;
  }

 private:
  std::unique_ptr<XmlElement> fail(const std::string& what) {
    problem_ = what + " before: " + std::string(rest_.substr(0, 60));
    return nullptr;
  }

  void space() {
    while (!rest_.empty() && (rest_[0] == ' ' || rest_[0] == '\n')) rest_.remove_prefix(1);
  }

  std::string name() {
    std::size_t size = 0;
    const auto isName = [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
             c == '_' || c == ':';
    };
    while (size < rest_.size() && isName(rest_[size])) ++size;
    std::string taken(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return taken;
  }

  bool resolve(std::string_view raw, std::string& text) {
    while (!raw.empty()) {
      if (raw[0] == '<') return false;
      if (raw[0] != '&') {
        text += raw[0];
        raw.remove_prefix(1);
        continue;
      }
      static const std::map<std::string_view, char> kEntities = {
          {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&#39;", '\''}};
      const auto entity = kEntities.find(raw.substr(0, raw.find(';') + 1));
      if (entity == kEntities.end()) return false;
      text += entity->second;
      raw.remove_prefix(entity->first.size());
    }
    return true;
  }

  std::unique_ptr<XmlElement> element() {
    if (!rest_.starts_with('<')) return fail("no element");
    rest_.remove_prefix(1);
    auto made = std::make_unique<XmlElement>();
    made->name = name();
    if (made->name.empty()) return fail("an element without a name");
    while (rest_.starts_with(' ')) {
      space();
      const std::string key = name();
      if (!rest_.starts_with("=\"")) return fail("an attribute without a value");
      rest_.remove_prefix(2);
      const std::size_t end = rest_.find('"');
      std::string value;
      if (end == std::string_view::npos || !resolve(rest_.substr(0, end), value)) {
        return fail("a bad attribute");
      }
      if (!made->attributes.emplace(key, value).second) return fail("an attribute twice");
      rest_.remove_prefix(end + 1);
    }
    if (!rest_.starts_with('>')) return fail("a tag without end");
    rest_.remove_prefix(1);
    while (true) {
      const std::size_t tag = rest_.find('<');
      if (tag == std::string_view::npos || !resolve(rest_.substr(0, tag), made->text)) {
        return fail("bad text");
      }
      rest_.remove_prefix(tag);
      if (rest_.starts_with("</")) {
        rest_.remove_prefix(2);
        if (name() != made->name || !rest_.starts_with('>')) return fail("a wrong end tag");
        rest_.remove_prefix(1);
        return made;
      }
      auto inner = element();
      if (!inner) return nullptr;
      made->children.push_back(std::move(inner));
    }
  }

  std::string_view rest_;
  std::string& problem_;
};

}  // namespace

const XmlElement* XmlElement::child(std::string_view wanted) const {
  for (const auto& inner : children) {
    if (inner->name == wanted) return inner.get();
  }
  return nullptr;
}

std::vector<const XmlElement*> XmlElement::all(std::string_view wanted) const {
  std::vector<const XmlElement*> found;
  for (const auto& inner : children) {
    if (inner->name == wanted) found.push_back(inner.get());
  }
  return found;
}

std::vector<std::string> XmlElement::childNames() const {
  std::vector<std::string> names;
  for (const auto& inner : children) names.push_back(inner->name);
  return names;
}

std::unique_ptr<XmlElement> parseXml(std::string_view xml, std::string& problem) {
  return Parser(xml, problem).document();
}

std::string textProblem(std::string_view document) {
  for (std::size_t i = 0; i < document.size();) {
    const auto byte = static_cast<unsigned char>(document[i]);
    const std::string place = " at byte " + std::to_string(i);
    if (byte < 0x80) {
      if ((byte < 0x20 && byte != '\n') || byte == 0x7F) return "a control character" + place;
      ++i;
      continue;
    }
    const std::size_t size = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
    if (byte < 0xC2 || byte > 0xF4 || i + size > document.size()) return "a bad byte" + place;
    for (std::size_t k = 1; k < size; ++k) {
      if ((static_cast<unsigned char>(document[i + k]) & 0xC0) != 0x80) return "a bad byte" + place;
    }
    const auto second = static_cast<unsigned char>(document[i + 1]);
    if ((byte == 0xE0 && second < 0xA0) || (byte == 0xED && second > 0x9F) ||
        (byte == 0xF0 && second < 0x90) || (byte == 0xF4 && second > 0x8F)) {
      return "a bad character" + place;
    }
    if (byte == 0xC2 && second < 0xA0) return "a control character" + place;
    i += size;
  }
  return {};
}

}  // namespace vel::test
