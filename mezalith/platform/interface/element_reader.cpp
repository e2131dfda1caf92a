// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/element_reader.hpp>
#include <mezalith/platform/interface/json_node.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace mezalith::platform::detail {
namespace {

constexpr std::string_view kFormatKey = "format";
constexpr std::string_view kFormat = "mezalith interface";
constexpr std::string_view kVersionKey = "version";
constexpr double kVersion = 1;
constexpr std::string_view kContentKey = "content";

constexpr double kLargestLength = 1000;
constexpr double kSmallestText = 4;
constexpr double kLargestText = 200;
constexpr double kMostLines = 100;
/// What a message repeats of a text of the file.
constexpr std::size_t kLongestQuotation = 40;

std::string inQuotes(std::string_view text) {
    std::string shown(text.substr(0, kLongestQuotation));
    std::ranges::replace_if(
        shown, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, ' ');
    return '"' + shown + (text.size() > kLongestQuotation ? "...\"" : "\"");
}

/// Reads the nodes of one file. The first fault is kept; what is read after it does not matter.
class Reader {
  public:
    Reader(std::string_view text, const InterfaceDocument::ImageSource& images)
        : text_(text), images_(images) {}

    const std::string& error() const { return error_; }

    Element document(const JsonNode& node);

    // --- single values
    double number(const JsonNode& node, double least, double most) {
        const bool fits =
            node.kind == JsonNode::Kind::Number && node.number >= least && node.number <= most;
        if (!fits) {
            fail(node, "a number from " + shortestText(least) + " to " + shortestText(most) +
                           " belongs here");
        }
        return fits ? node.number : least;
    }
    double length(const JsonNode& node) { return number(node, 0, kLargestLength); }

    bool truth(const JsonNode& node) {
        if (node.kind != JsonNode::Kind::Boolean) fail(node, "true or false belongs here");
        return node.boolean;
    }

    std::string text(const JsonNode& node) {
        if (node.kind != JsonNode::Kind::Text) fail(node, "a text belongs here");
        if (node.text.size() > longestText) {
            fail(node, "a text of more than " + std::to_string(longestText) + " bytes");
        }
        return node.text;
    }

    TextTemplate textTemplate(const JsonNode& node) {
        std::string reason;
        const auto made = TextTemplate::templateWithText(text(node), reason);
        if (!made) fail(node, reason);
        return made.value_or(TextTemplate());
    }

    ColorPointer color(const JsonNode& node) {
        ColorPointer made = Color::colorWithText(text(node));
        if (made == nullptr) fail(node, inQuotes(node.text) + " is no colour");
        return made;
    }

    Alignment alignment(const JsonNode& node) {
        constexpr std::array<std::string_view, 3> kNames{"start", "center", "end"};
        const auto found = std::ranges::find(kNames, text(node));
        if (found == kNames.end()) {
            fail(node, inQuotes(node.text) + " is none of start, center and end");
            return Alignment::Start;
        }
        return static_cast<Alignment>(found - kNames.begin());
    }

    std::shared_ptr<const Image> image(const JsonNode& node);
    Insets insets(const JsonNode& node);
    std::vector<Element> members(const JsonNode& node);

    void fail(const JsonNode& node, const std::string& reason) { fail(node.position, reason); }
    void fail(std::size_t position, const std::string& reason) {
        if (error_.empty()) error_ = placeOf(text_, position) + ": " + reason;
    }

  private:
    Element element(const JsonNode& node);

    std::string_view text_;
    const InterfaceDocument::ImageSource& images_;
    std::string error_;
    std::size_t depth_ = 0;
    std::size_t count_ = 0;
    std::size_t imageCount_ = 0;
};

/// A key of an element, and how its value is taken.
template <typename Content>
struct Property {
    std::string_view key;
    void (*take)(Reader& reader, const JsonNode& node, Content& content);
};

template <typename Content>
std::string keysOf(std::span<const Property<Content>> properties) {
    std::string keys;
    for (const auto& property : properties)
        keys += (keys.empty() ? "" : ", ") + std::string(property.key);
    return keys;
}

/// Takes every entry of the table; the first property is the one that names the element.
template <typename Content>
Element contentOf(Reader& reader, const JsonNode& node,
                  std::span<const Property<Content>> properties, Content content) {
    for (const JsonEntry& entry : node.table) {
        const auto found = std::ranges::find(properties, entry.key, &Property<Content>::key);
        if (found != properties.end()) {
            found->take(reader, entry.value, content);
        } else {
            reader.fail(entry.position,
                        "the key " + inQuotes(entry.key) + " is none of " + keysOf(properties));
        }
    }
    return {std::move(content)};
}

// --- the elements and their keys

template <typename Content>
constexpr Property<Content> kTextSize{
    "size", [](Reader& reader, const JsonNode& node, Content& content) {
        content.style.size = reader.number(node, kSmallestText, kLargestText);
    }};

template <bool isRow>
constexpr std::array<Property<StackElement>, 6> kStack{
    {{isRow ? "row" : "column", [](Reader& reader, const JsonNode& node,
                                   StackElement& stack) { stack.members = reader.members(node); }},
     {"spacing", [](Reader& reader, const JsonNode& node,
                    StackElement& stack) { stack.spacing = reader.length(node); }},
     {"insets", [](Reader& reader, const JsonNode& node,
                   StackElement& stack) { stack.insets = reader.insets(node); }},
     {"minWidth", [](Reader& reader, const JsonNode& node,
                     StackElement& stack) { stack.minWidth = reader.length(node); }},
     {"align", [](Reader& reader, const JsonNode& node,
                  StackElement& stack) { stack.alignment = reader.alignment(node); }},
     {"background", [](Reader& reader, const JsonNode& node, StackElement& stack) {
          stack.background = reader.color(node);
      }}}};

constexpr std::array<Property<LabelElement>, 9> kLabel{
    {{"label", [](Reader& reader, const JsonNode& node,
                  LabelElement& label) { label.text = reader.textTemplate(node); }},
     kTextSize<LabelElement>,
     {"family", [](Reader& reader, const JsonNode& node,
                   LabelElement& label) { label.style.family = reader.text(node); }},
     {"bold", [](Reader& reader, const JsonNode& node,
                 LabelElement& label) { label.style.bold = reader.truth(node); }},
     {"italic", [](Reader& reader, const JsonNode& node,
                   LabelElement& label) { label.style.italic = reader.truth(node); }},
     {"color", [](Reader& reader, const JsonNode& node,
                  LabelElement& label) { label.color = reader.color(node); }},
     {"align", [](Reader& reader, const JsonNode& node,
                  LabelElement& label) { label.style.alignment = reader.alignment(node); }},
     {"maxWidth",
      [](Reader& reader, const JsonNode& node, LabelElement& label) {
          label.style.maxWidth = reader.number(node, 1, kLargestLength);
      }},
     {"maxLines", [](Reader& reader, const JsonNode& node, LabelElement& label) {
          label.style.maxLines = static_cast<int>(reader.number(node, 1, kMostLines));
      }}}};

constexpr std::array<Property<ButtonElement>, 3> kButton{
    {{"button", [](Reader& reader, const JsonNode& node,
                   ButtonElement& button) { button.title = reader.textTemplate(node); }},
     {"action", [](Reader& reader, const JsonNode& node,
                   ButtonElement& button) { button.action = reader.text(node); }},
     kTextSize<ButtonElement>}};

constexpr std::array<Property<ImageElement>, 3> kImage{
    {{"image", [](Reader& reader, const JsonNode& node,
                  ImageElement& image) { image.image = reader.image(node); }},
     {"width", [](Reader& reader, const JsonNode& node,
                  ImageElement& image) { image.width = reader.number(node, 1, kLargestLength); }},
     {"height", [](Reader& reader, const JsonNode& node, ImageElement& image) {
          image.height = reader.number(node, 1, kLargestLength);
      }}}};

constexpr std::array<Property<SpaceElement>, 1> kSpace{
    {{"space", [](Reader& reader, const JsonNode& node, SpaceElement& space) {
          space.length = reader.length(node);
      }}}};

/// A kind of element, told by one of its keys.
struct Kind {
    std::string_view key;
    Element (*read)(Reader& reader, const JsonNode& node);
};

template <const auto& properties, typename Content>
Element readAs(Reader& reader, const JsonNode& node, Content content) {
    return contentOf<Content>(reader, node, properties, std::move(content));
}

constexpr std::array<Kind, 6> kKinds{
    {{"column",
      [](Reader& reader, const JsonNode& node) {
          return readAs<kStack<false>>(reader, node, StackElement{});
      }},
     {"row",
      [](Reader& reader, const JsonNode& node) {
          return readAs<kStack<true>>(reader, node, StackElement{.isRow = true});
      }},
     {"label", [](Reader& reader,
                  const JsonNode& node) { return readAs<kLabel>(reader, node, LabelElement{}); }},
     {"button",
      [](Reader& reader, const JsonNode& node) {
          return readAs<kButton>(reader, node, ButtonElement{});
      }},
     {"image", [](Reader& reader,
                  const JsonNode& node) { return readAs<kImage>(reader, node, ImageElement{}); }},
     {"space", [](Reader& reader, const JsonNode& node) {
          return readAs<kSpace>(reader, node, SpaceElement{});
      }}}};

std::string kindNames() {
    std::string names;
    for (const Kind& kind : kKinds) names += (names.empty() ? "" : ", ") + std::string(kind.key);
    return names;
}

std::shared_ptr<const Image> Reader::image(const JsonNode& node) {
    const std::string name = text(node);
    if (++imageCount_ > mostImages)
        fail(node, "more than " + std::to_string(mostImages) + " images");
    if (!error_.empty()) return nullptr;
    std::string reason = "there are no images here";
    auto made = images_ ? images_(name, reason) : nullptr;
    if (made == nullptr) fail(node, inQuotes(name) + ": " + reason);
    return made;
}

Insets Reader::insets(const JsonNode& node) {
    if (node.kind != JsonNode::Kind::List) {
        const double all = length(node);
        return {all, all, all, all};
    }
    if (node.list.size() != 4) {
        fail(node, "four insets belong here: top, right, bottom and left");
        return {};
    }
    return {length(node.list[0]), length(node.list[1]), length(node.list[2]), length(node.list[3])};
}

std::vector<Element> Reader::members(const JsonNode& node) {
    std::vector<Element> elements;
    if (node.kind != JsonNode::Kind::List) fail(node, "a list of elements belongs here");
    for (const JsonNode& member : node.list) {
        if (!error_.empty()) break;
        elements.push_back(element(member));
    }
    return elements;
}

Element Reader::element(const JsonNode& node) {
    const auto kind = std::ranges::find_if(
        kKinds, [&](const Kind& known) { return node.find(known.key) != nullptr; });
    if (kind == kKinds.end()) {
        fail(node, "no element: it has none of the keys " + kindNames());
        return {};
    }
    if (++count_ > mostElements)
        fail(node, "more than " + std::to_string(mostElements) + " elements");
    if (++depth_ > deepestElement) {
        fail(node, "elements nested deeper than " + std::to_string(deepestElement));
        return {};
    }
    Element made = kind->read(*this, node);
    --depth_;
    return made;
}

Element Reader::document(const JsonNode& node) {
    const JsonNode* const format = node.find(kFormatKey);
    if (format == nullptr || format->text != kFormat) {
        fail(format != nullptr ? *format : node, "no mezalith interface");
    }
    const JsonNode* const version = node.find(kVersionKey);
    if (version == nullptr || version->number != kVersion) {
        fail(version != nullptr ? *version : node, "not of version 1");
    }
    for (const JsonEntry& entry : node.table) {
        if (entry.key != kFormatKey && entry.key != kVersionKey && entry.key != kContentKey) {
            fail(entry.position, "the key " + inQuotes(entry.key) + " is unknown");
        }
    }
    const JsonNode* const content = node.find(kContentKey);
    if (content == nullptr) fail(node, "there is no content");
    return error_.empty() ? element(*content) : Element{};
}

}  // namespace

std::optional<Element> readInterface(std::string_view text,
                                     const InterfaceDocument::ImageSource& images,
                                     std::string& error) {
    if (text.size() > longestInterface) {
        error = "longer than " + std::to_string(longestInterface) + " bytes";
        return std::nullopt;
    }
    const auto node = readJson(text, error);
    if (!node) return std::nullopt;
    Reader reader(text, images);
    Element made = reader.document(*node);
    if (reader.error().empty()) return made;
    error = reader.error();
    return std::nullopt;
}

}  // namespace mezalith::platform::detail
