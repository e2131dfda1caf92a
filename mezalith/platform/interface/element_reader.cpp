// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/element_reader.hpp>
#include <mezalith/platform/json/json_document.hpp>
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

std::optional<double> numberOf(const ArchiveValue& node) {
    if (const auto* integer = node.as<std::int64_t>()) return static_cast<double>(*integer);
    const auto* number = node.as<double>();
    return number != nullptr ? std::optional(*number) : std::nullopt;
}

/// Empty for what is no text.
std::string textOf(const ArchiveValue& node) {
    const auto* text = node.as<std::string>();
    return text != nullptr ? *text : std::string();
}

/// Empty for what is no object.
const ArchiveObject& membersOf(const ArchiveValue& node) {
    static const ArchiveObject kNone;
    const auto* members = node.as<ArchiveObject>();
    return members != nullptr ? *members : kNone;
}

/// Reads the nodes of one file. The first fault is kept; what is read after it does not matter.
class Reader {
  public:
    Reader(std::string_view text, const InterfaceDocument::ImageSource& images)
        : text_(text), images_(images) {}

    const std::string& error() const { return error_; }

    Element document(const ArchiveValue& node);

    // --- single values
    double number(const ArchiveValue& node, double least, double most) {
        const auto value = numberOf(node);
        if (value && *value >= least && *value <= most) return *value;
        fail(node, "a number from " + shortestText(least) + " to " + shortestText(most) +
                       " belongs here");
        return least;
    }
    double length(const ArchiveValue& node) { return number(node, 0, kLargestLength); }

    bool truth(const ArchiveValue& node) {
        const auto* value = node.as<bool>();
        if (value == nullptr) fail(node, "true or false belongs here");
        return value != nullptr && *value;
    }

    std::string text(const ArchiveValue& node) {
        std::string value = textOf(node);
        if (node.as<std::string>() == nullptr) fail(node, "a text belongs here");
        if (value.size() > longestText) {
            fail(node, "a text of more than " + std::to_string(longestText) + " bytes");
        }
        return value;
    }

    TextTemplate textTemplate(const ArchiveValue& node) {
        std::string reason;
        const auto made = TextTemplate::templateWithText(text(node), reason);
        if (!made) fail(node, reason);
        return made.value_or(TextTemplate());
    }

    ColorPointer color(const ArchiveValue& node) {
        ColorPointer made = Color::colorWithText(text(node));
        if (made == nullptr) fail(node, inQuotes(textOf(node)) + " is no colour");
        return made;
    }

    Alignment alignment(const ArchiveValue& node) {
        constexpr std::array<std::string_view, 3> kNames{"start", "center", "end"};
        const auto found = std::ranges::find(kNames, text(node));
        if (found == kNames.end()) {
            fail(node, inQuotes(textOf(node)) + " is none of start, center and end");
            return Alignment::Start;
        }
        return static_cast<Alignment>(found - kNames.begin());
    }

    std::shared_ptr<const Image> image(const ArchiveValue& node);
    Insets insets(const ArchiveValue& node);
    std::vector<Element> members(const ArchiveValue& node);

    void fail(const ArchiveValue& node, const std::string& reason) { fail(node.offset, reason); }
    void fail(std::size_t offset, const std::string& reason) {
        if (error_.empty()) error_ = jsonErrorText(text_, {reason, offset});
    }

  private:
    Element element(const ArchiveValue& node);

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
    void (*take)(Reader& reader, const ArchiveValue& node, Content& content);
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
Element contentOf(Reader& reader, const ArchiveValue& node,
                  std::span<const Property<Content>> properties, Content content) {
    for (const ArchiveMember& entry : membersOf(node)) {
        const auto found = std::ranges::find(properties, entry.key, &Property<Content>::key);
        if (found != properties.end()) {
            found->take(reader, entry.value, content);
        } else {
            reader.fail(entry.offset,
                        "the key " + inQuotes(entry.key) + " is none of " + keysOf(properties));
        }
    }
    return {std::move(content)};
}

// --- the elements and their keys

template <typename Content>
constexpr Property<Content> kTextSize{
    "size", [](Reader& reader, const ArchiveValue& node, Content& content) {
        content.style.size = reader.number(node, kSmallestText, kLargestText);
    }};

template <bool isRow>
constexpr std::array<Property<StackElement>, 6> kStack{
    {{isRow ? "row" : "column", [](Reader& reader, const ArchiveValue& node,
                                   StackElement& stack) { stack.members = reader.members(node); }},
     {"spacing", [](Reader& reader, const ArchiveValue& node,
                    StackElement& stack) { stack.spacing = reader.length(node); }},
     {"insets", [](Reader& reader, const ArchiveValue& node,
                   StackElement& stack) { stack.insets = reader.insets(node); }},
     {"minWidth", [](Reader& reader, const ArchiveValue& node,
                     StackElement& stack) { stack.minWidth = reader.length(node); }},
     {"align", [](Reader& reader, const ArchiveValue& node,
                  StackElement& stack) { stack.alignment = reader.alignment(node); }},
     {"background", [](Reader& reader, const ArchiveValue& node, StackElement& stack) {
          stack.background = reader.color(node);
      }}}};

constexpr std::array<Property<LabelElement>, 9> kLabel{
    {{"label", [](Reader& reader, const ArchiveValue& node,
                  LabelElement& label) { label.text = reader.textTemplate(node); }},
     kTextSize<LabelElement>,
     {"family", [](Reader& reader, const ArchiveValue& node,
                   LabelElement& label) { label.style.family = reader.text(node); }},
     {"bold", [](Reader& reader, const ArchiveValue& node,
                 LabelElement& label) { label.style.bold = reader.truth(node); }},
     {"italic", [](Reader& reader, const ArchiveValue& node,
                   LabelElement& label) { label.style.italic = reader.truth(node); }},
     {"color", [](Reader& reader, const ArchiveValue& node,
                  LabelElement& label) { label.color = reader.color(node); }},
     {"align", [](Reader& reader, const ArchiveValue& node,
                  LabelElement& label) { label.style.alignment = reader.alignment(node); }},
     {"maxWidth",
      [](Reader& reader, const ArchiveValue& node, LabelElement& label) {
          label.style.maxWidth = reader.number(node, 1, kLargestLength);
      }},
     {"maxLines", [](Reader& reader, const ArchiveValue& node, LabelElement& label) {
          label.style.maxLines = static_cast<int>(reader.number(node, 1, kMostLines));
      }}}};

constexpr std::array<Property<ButtonElement>, 3> kButton{
    {{"button", [](Reader& reader, const ArchiveValue& node,
                   ButtonElement& button) { button.title = reader.textTemplate(node); }},
     {"action", [](Reader& reader, const ArchiveValue& node,
                   ButtonElement& button) { button.action = reader.text(node); }},
     kTextSize<ButtonElement>}};

constexpr std::array<Property<ImageElement>, 3> kImage{
    {{"image", [](Reader& reader, const ArchiveValue& node,
                  ImageElement& image) { image.image = reader.image(node); }},
     {"width", [](Reader& reader, const ArchiveValue& node,
                  ImageElement& image) { image.width = reader.number(node, 1, kLargestLength); }},
     {"height", [](Reader& reader, const ArchiveValue& node, ImageElement& image) {
          image.height = reader.number(node, 1, kLargestLength);
      }}}};

constexpr std::array<Property<SpaceElement>, 1> kSpace{
    {{"space", [](Reader& reader, const ArchiveValue& node, SpaceElement& space) {
          space.length = reader.length(node);
      }}}};

/// A kind of element, told by one of its keys.
struct Kind {
    std::string_view key;
    Element (*read)(Reader& reader, const ArchiveValue& node);
};

template <const auto& properties, typename Content>
Element readAs(Reader& reader, const ArchiveValue& node, Content content) {
    return contentOf<Content>(reader, node, properties, std::move(content));
}

StackElement emptyStack(bool isRow) {
    StackElement stack;
    stack.isRow = isRow;
    return stack;
}

constexpr std::array<Kind, 6> kKinds{
    {{"column",
      [](Reader& reader, const ArchiveValue& node) {
          return readAs<kStack<false>>(reader, node, emptyStack(false));
      }},
     {"row",
      [](Reader& reader, const ArchiveValue& node) {
          return readAs<kStack<true>>(reader, node, emptyStack(true));
      }},
     {"label",
      [](Reader& reader, const ArchiveValue& node) {
          return readAs<kLabel>(reader, node, LabelElement{});
      }},
     {"button",
      [](Reader& reader, const ArchiveValue& node) {
          return readAs<kButton>(reader, node, ButtonElement{});
      }},
     {"image",
      [](Reader& reader, const ArchiveValue& node) {
          return readAs<kImage>(reader, node, ImageElement{});
      }},
     {"space", [](Reader& reader, const ArchiveValue& node) {
          return readAs<kSpace>(reader, node, SpaceElement{});
      }}}};

std::string kindNames() {
    std::string names;
    for (const Kind& kind : kKinds) names += (names.empty() ? "" : ", ") + std::string(kind.key);
    return names;
}

std::shared_ptr<const Image> Reader::image(const ArchiveValue& node) {
    const std::string name = text(node);
    if (++imageCount_ > mostImages)
        fail(node, "more than " + std::to_string(mostImages) + " images");
    if (!error_.empty()) return nullptr;
    std::string reason = "there are no images here";
    auto made = images_ ? images_(name, reason) : nullptr;
    if (made == nullptr) fail(node, inQuotes(name) + ": " + reason);
    return made;
}

Insets Reader::insets(const ArchiveValue& node) {
    const auto* list = node.as<ArchiveList>();
    if (list == nullptr) {
        const double all = length(node);
        return {all, all, all, all};
    }
    if (list->size() != 4) {
        fail(node, "four insets belong here: top, right, bottom and left");
        return {};
    }
    return {length((*list)[0]), length((*list)[1]), length((*list)[2]), length((*list)[3])};
}

std::vector<Element> Reader::members(const ArchiveValue& node) {
    std::vector<Element> elements;
    const auto* list = node.as<ArchiveList>();
    if (list == nullptr) {
        fail(node, "a list of elements belongs here");
        return elements;
    }
    for (const ArchiveValue& member : *list) {
        if (!error_.empty()) break;
        elements.push_back(element(member));
    }
    return elements;
}

Element Reader::element(const ArchiveValue& node) {
    const auto kind = std::ranges::find_if(
        kKinds, [&](const Kind& known) { return memberOf(membersOf(node), known.key) != nullptr; });
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

Element Reader::document(const ArchiveValue& node) {
    const ArchiveObject& members = membersOf(node);
    const ArchiveValue* const format = memberOf(members, kFormatKey);
    if (format == nullptr || textOf(*format) != kFormat) {
        fail(format != nullptr ? *format : node, "no mezalith interface");
    }
    const ArchiveValue* const version = memberOf(members, kVersionKey);
    if (version == nullptr || numberOf(*version) != kVersion) {
        fail(version != nullptr ? *version : node, "not of version 1");
    }
    for (const ArchiveMember& entry : members) {
        if (entry.key != kFormatKey && entry.key != kVersionKey && entry.key != kContentKey) {
            fail(entry.offset, "the key " + inQuotes(entry.key) + " is unknown");
        }
    }
    const ArchiveValue* const content = memberOf(members, kContentKey);
    if (content == nullptr) fail(node, "there is no content");
    const bool isComplete = content != nullptr && error_.empty();
    return isComplete ? element(*content) : Element{};
}

}  // namespace

std::optional<Element> readInterface(std::string_view text,
                                     const InterfaceDocument::ImageSource& images,
                                     std::string& error) {
    if (text.size() > longestInterface) {
        error = "longer than " + std::to_string(longestInterface) + " bytes";
        return std::nullopt;
    }
    ArchiveError fault;
    const auto node = jsonTree(text, fault);
    if (!node) {
        error = jsonErrorText(text, fault);
        return std::nullopt;
    }
    Reader reader(text, images);
    Element made = reader.document(*node);
    if (reader.error().empty()) return made;
    error = reader.error();
    return std::nullopt;
}

}  // namespace mezalith::platform::detail
