#include "host/ribbon_description.h"

#include <algorithm>
#include <rapidxml/rapidxml.hpp>
#include <set>
#include <stdexcept>

#include "foundation/text.h"

namespace qv::devhost {
namespace {

using Node = rapidxml::xml_node<wchar_t>;

/// What the schema allows in one element.
struct ElementRule {
  const wchar_t* name;
  /// The element inside which it may stand; null: the document.
  const wchar_t* parent;
  std::vector<const wchar_t*> attributes;
  /// It is a control, with exactly one of the three kinds of id.
  bool hasId = false;
};

const std::vector<ElementRule>& ElementTable() {
  static const std::vector<const wchar_t*> kTab = {
      L"id",           L"idQ",          L"idMso",  L"tag",       L"label",          L"getLabel",
      L"visible",      L"getVisible",   L"keytip", L"getKeytip", L"insertAfterMso", L"insertBeforeMso",
      L"insertAfterQ", L"insertBeforeQ"};
  static const auto kWith = [](std::vector<const wchar_t*> base, std::initializer_list<const wchar_t*> more) {
    base.insert(base.end(), more);
    return base;
  };
  static const auto kGroup = kWith(
      kTab, {L"image", L"imageMso", L"getImage", L"screentip", L"getScreentip", L"supertip", L"getSupertip"});
  static const std::vector<ElementRule> kTable = {
      {L"customUI", nullptr, {L"onLoad", L"loadImage"}},
      {L"ribbon", L"customUI", {L"startFromScratch"}},
      {L"tabs", L"ribbon", {}},
      {L"tab", L"tabs", kTab, true},
      {L"group", L"tab", kGroup, true},
      {L"button", L"group",
       kWith(kGroup, {L"size", L"getSize", L"enabled", L"getEnabled", L"description", L"getDescription",
                      L"showImage", L"getShowImage", L"showLabel", L"getShowLabel", L"onAction"}),
       true},
  };
  return kTable;
}

/// Pairs of which only one may stand in an element: both would name the same thing.
constexpr const wchar_t* kExclusive[][2] = {
    {L"label", L"getLabel"},   {L"screentip", L"getScreentip"}, {L"supertip", L"getSupertip"},
    {L"image", L"getImage"},   {L"imageMso", L"getImage"},      {L"image", L"imageMso"},
    {L"size", L"getSize"},     {L"visible", L"getVisible"},     {L"enabled", L"getEnabled"},
    {L"keytip", L"getKeytip"}, {L"showLabel", L"getShowLabel"}, {L"showImage", L"getShowImage"}};

constexpr std::wstring_view kNamespaces[] = {L"http://schemas.microsoft.com/office/2006/01/customui",
                                             L"http://schemas.microsoft.com/office/2009/07/customui"};

[[noreturn]] void Refuse(const std::wstring& why) {
  throw std::runtime_error(ToUtf8(why));
}

std::wstring NameOf(const Node& node) {
  return {node.name(), node.name_size()};
}

std::wstring Attribute(const Node& node, const wchar_t* name) {
  const auto* attribute = node.first_attribute(name);
  return attribute ? std::wstring(attribute->value(), attribute->value_size()) : std::wstring();
}

std::wstring IdOf(const Node& node) {
  for (const wchar_t* name : {L"id", L"idMso", L"idQ"}) {
    if (const auto id = Attribute(node, name); !id.empty()) return id;
  }
  return {};
}

/// "<button> btnX", or just "<tabs>".
std::wstring Describe(const Node& node) {
  const auto id = IdOf(node);
  return Concat(L"<", NameOf(node), id.empty() ? L">" : L"> ", id);
}

class Reader {
 public:
  RibbonDescription Read(const Node& root) {
    Check(root, nullptr);
    if (std::ranges::find(kNamespaces, Attribute(root, L"xmlns")) == std::end(kNamespaces)) {
      Refuse(L"<customUI> is not of the namespace of 2006/01 or 2009/07");
    }
    RibbonDescription description;
    description.onLoad = Attribute(root, L"onLoad");
    for (const Node* ribbon : Children(root)) {
      for (const Node* tabs : Children(*ribbon)) {
        for (const Node* tab : Children(*tabs))
          description.tabs.push_back(Item(*tab));
      }
    }
    return description;
  }

 private:
  /// The child elements, each allowed where it stands.
  std::vector<const Node*> Children(const Node& parent) {
    std::vector<const Node*> children;
    for (const Node* child = parent.first_node(); child != nullptr; child = child->next_sibling()) {
      if (child->type() != rapidxml::node_element) {
        if (child->type() == rapidxml::node_data || child->type() == rapidxml::node_cdata)
          Refuse(Concat(L"text inside ", Describe(parent)));
        continue;
      }
      Check(*child, &parent);
      children.push_back(child);
    }
    return children;
  }

  RibbonItem Item(const Node& node) {
    RibbonItem item;
    item.id = IdOf(node);
    item.tag = Attribute(node, L"tag");
    item.label = {Attribute(node, L"label"), Attribute(node, L"getLabel")};
    item.screentip = {Attribute(node, L"screentip"), Attribute(node, L"getScreentip")};
    item.getImage = Attribute(node, L"getImage");
    item.onAction = Attribute(node, L"onAction");
    item.isLarge = Attribute(node, L"size") == L"large";
    for (const Node* child : Children(node))
      item.children.push_back(Item(*child));
    return item;
  }

  void Check(const Node& node, const Node* parent) {
    const auto& table = ElementTable();
    const auto rule = std::ranges::find_if(
        table, [name = NameOf(node)](const ElementRule& candidate) { return name == candidate.name; });
    if (rule == table.end()) Refuse(Concat(Describe(node), L" is not an element that this host shows"));
    if ((parent == nullptr) != (rule->parent == nullptr) || (parent && NameOf(*parent) != rule->parent)) {
      Refuse(Concat(Describe(node), L" may not stand ",
                    parent ? Concat(L"in ", Describe(*parent)) : std::wstring(L"at the top")));
    }
    CheckAttributes(node, *rule);
    if (rule->hasId) CheckId(node);
  }

  static void CheckAttributes(const Node& node, const ElementRule& rule) {
    std::set<std::wstring> seen;
    for (const auto* attribute = node.first_attribute(); attribute; attribute = attribute->next_attribute()) {
      const std::wstring name(attribute->name(), attribute->name_size());
      if (!seen.insert(name).second) Refuse(Concat(Describe(node), L" has \"", name, L"\" twice"));
      if (name == L"xmlns" || name.starts_with(L"xmlns:")) continue;
      if (std::ranges::find(rule.attributes, name) == rule.attributes.end())
        Refuse(Concat(Describe(node), L" may not have \"", name, L"\""));
    }
    for (const auto& [one, other] : kExclusive) {
      if (seen.contains(one) && seen.contains(other))
        Refuse(Concat(Describe(node), L" may not have both \"", one, L"\" and \"", other, L"\""));
    }
    const auto size = Attribute(node, L"size");
    if (seen.contains(L"size") && size != L"large" && size != L"normal")
      Refuse(Concat(Describe(node), L" has a \"size\" that is neither large nor normal"));
  }

  void CheckId(const Node& node) {
    int ids = 0;
    for (const wchar_t* name : {L"id", L"idMso", L"idQ"})
      ids += node.first_attribute(name) != nullptr ? 1 : 0;
    if (ids != 1 || IdOf(node).empty())
      Refuse(Concat(Describe(node), L" needs exactly one of \"id\", \"idMso\" and \"idQ\""));
    if (!ids_.insert(IdOf(node)).second) Refuse(Concat(L"the id \"", IdOf(node), L"\" is there twice"));
  }

  std::set<std::wstring> ids_;
};

}  // namespace

RibbonDescription ReadRibbon(std::wstring_view xml) {
  // The parser works in place and wants its end marked.
  std::wstring text(xml);
  rapidxml::xml_document<wchar_t> document;
  try {
    document.parse<rapidxml::parse_validate_closing_tags>(text.data());
  } catch (const rapidxml::parse_error& failure) {
    Refuse(Concat(L"not well-formed at character ", failure.where<wchar_t>() - text.data(), L": ",
                  Widen(failure.what())));
  }
  const Node* root = document.first_node();
  if (root == nullptr || root->next_sibling() != nullptr) Refuse(L"there is not exactly one root element");
  return Reader().Read(*root);
}

}  // namespace qv::devhost
