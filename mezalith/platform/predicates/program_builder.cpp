// SPDX-License-Identifier: MIT
#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/predicates/program_builder.hpp>
#include <mezalith/platform/predicates/syntax.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>
#include <utility>

namespace mezalith::platform::predicates {
namespace {

/// Each may take up to `kPatternMemory`.
constexpr std::size_t kMostPatterns = 64;
constexpr std::int64_t kPatternMemory = std::int64_t{1} << 20;

constexpr char kComparisonWanted[] = "a comparison such as == or IN";
constexpr char kTextWanted[] = "an argument that is UTF-8 text";

bool equalsWord(std::string_view text, std::string_view word) {
    return std::ranges::equal(text, word, {}, [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
}

RE2::Options patternOptions(TextOptions options) {
    RE2::Options result;
    result.set_case_sensitive(!options.ignoresCase);
    result.set_log_errors(false);
    result.set_max_mem(kPatternMemory);
    return result;
}

std::string patternProblem(const RE2& pattern) {
    std::string text = "a regular expression (" + pattern.error();
    const auto code = pattern.error_code();
    if (code == RE2::ErrorBadEscape || code == RE2::ErrorBadPerlOp ||
        code == RE2::ErrorBadNamedCapture) {
        text += "; there are no back references and no look-around";
    }
    return text + ")";
}

}  // namespace

ProgramBuilder::ProgramBuilder(std::string_view format, Arguments arguments)
    : format_(format), arguments_(arguments) {}

void ProgramBuilder::failAt(std::size_t offset, std::string found, std::string expected) const {
    throw SyntaxError{offset, std::move(found), std::move(expected)};
}

void ProgramBuilder::fail(const char* place, std::string expected) const {
    failAt(offsetOf(place), {}, std::move(expected));
}

std::size_t ProgramBuilder::offsetOf(const char* place) const {
    return static_cast<std::size_t>(place - format_.data());
}

bool ProgramBuilder::endsInValue() const {
    return !operands_.empty() && !isCondition((*program_)[operands_.back().node]);
}

std::uint32_t ProgramBuilder::add(const Node& node) {
    program_->nodes.push_back(node);
    lastOperand_.push_back(kNoNode);
    return static_cast<std::uint32_t>(program_->nodes.size() - 1);
}

void ProgramBuilder::push(const Node& node, std::string_view from) {
    const std::size_t begin = offsetOf(from.data());
    operands_.push_back({add(node), begin, begin + from.size()});
}

ProgramBuilder::Operand ProgramBuilder::pop() {
    const Operand operand = operands_.back();
    operands_.pop_back();
    return operand;
}

void ProgramBuilder::checkValue(const Operand& operand) const {
    if (isCondition((*program_)[operand.node])) failAt(operand.begin, "a condition", "a value");
}

void ProgramBuilder::checkCondition(const Operand& operand) const {
    if (!isCondition((*program_)[operand.node])) failAt(operand.end, {}, kComparisonWanted);
}

std::uint32_t ProgramBuilder::constant(Value value) {
    program_->constants.push_back(std::move(value));
    return static_cast<std::uint32_t>(program_->constants.size() - 1);
}

void ProgramBuilder::addWord(std::string_view word) {
    Node node{Operation::Constant};
    if (equalsWord(word, "TRUEPREDICATE")) {
        node.operation = Operation::True;
    } else if (equalsWord(word, "FALSEPREDICATE")) {
        node.operation = Operation::False;
    } else if (equalsWord(word, "TRUE") || equalsWord(word, "YES")) {
        node.index = constant(true);
    } else if (equalsWord(word, "FALSE") || equalsWord(word, "NO")) {
        node.index = constant(false);
    } else {
        node.index = constant(std::monostate{});
    }
    push(node, word);
}

void ProgramBuilder::addNumber(std::string_view digits) {
    std::int64_t whole = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, whole);
    Node node{Operation::Constant};
    if (error == std::errc{} && stop == end) {
        node.index = constant(whole);
    } else if (const auto real = numberFromText(digits)) {
        node.index = constant(*real);
    } else {
        fail(digits.data(), "a number that a double can hold");
    }
    push(node, digits);
}

void ProgramBuilder::addText(std::string_view quotedText) {
    std::string text;
    std::size_t offset = 0;
    if (!unescape(quotedText.substr(1, quotedText.size() - 2), text, offset)) {
        fail(quotedText.data() + 1 + offset, "the escape of a character");
    }
    push({.operation = Operation::Constant, .index = constant(std::move(text))}, quotedText);
}

const PredicateArgument& ProgramBuilder::nextArgument(std::string_view mark) {
    if (usedArguments_ == arguments_.size()) fail(mark.data(), "an argument for it");
    return arguments_[usedArguments_++];
}

const Value& ProgramBuilder::valueArgument(std::string_view mark, const char* expected) {
    const auto* value = std::get_if<Value>(&nextArgument(mark));
    if (value == nullptr) failAt(offsetOf(mark.data()), "a list", expected);
    return *value;
}

void ProgramBuilder::checkArgument(const Value& value, std::string_view mark) const {
    const auto* text = std::get_if<std::string>(&value);
    if (text != nullptr && !isUTF8(*text)) fail(mark.data(), kTextWanted);
    const auto* real = std::get_if<double>(&value);
    if (real != nullptr && !std::isfinite(*real)) fail(mark.data(), "an argument that is finite");
}

std::uint32_t ProgramBuilder::listOf(std::span<const Value> values, std::string_view mark) {
    Chain chain;
    for (const Value& value : values) {
        checkArgument(value, mark);
        append(chain, add({.operation = Operation::Constant, .index = constant(value)}));
    }
    return chain.first;
}

void ProgramBuilder::addArgument(std::string_view mark) {
    if (mark != "%@") return addNumberArgument(mark);
    const PredicateArgument& argument = nextArgument(mark);
    if (const auto* values = std::get_if<std::vector<Value>>(&argument)) {
        const Node node{.operation = Operation::List, .first = listOf(*values, mark)};
        // Written out it stands in braces.
        enter(mark.data());
        leave();
        push(node, mark);
    } else {
        pushArgument(std::get<Value>(argument), mark);
    }
}

void ProgramBuilder::addNumberArgument(std::string_view mark) {
    const bool wantsReal = std::string_view("fFeEgG").find(mark.back()) != std::string_view::npos;
    const char* expected = wantsReal ? "a number as its argument" : "an integer as its argument";
    const Value& value = valueArgument(mark, expected);
    const bool isWhole = std::holds_alternative<std::int64_t>(value);
    if (!isWhole && !(wantsReal && std::holds_alternative<double>(value))) {
        fail(mark.data(), expected);
    }
    pushArgument(value, mark);
}

void ProgramBuilder::pushArgument(const Value& value, std::string_view mark) {
    checkArgument(value, mark);
    push({.operation = Operation::Constant, .index = constant(value)}, mark);
}

void ProgramBuilder::addKeyArgument(std::string_view mark) {
    constexpr char kExpected[] = "a key or a path of keys as its argument";
    const auto* path = std::get_if<std::string>(&valueArgument(mark, kExpected));
    if (path == nullptr) fail(mark.data(), kExpected);
    checkArgument(*path, mark);
    for (std::size_t begin = 0; begin <= path->size();) {
        const std::size_t end = std::min(path->find('.', begin), path->size());
        if (end == begin) fail(mark.data(), kExpected);
        path_.push_back(path->substr(begin, end - begin));
        begin = end + 1;
    }
}

void ProgramBuilder::addName(std::string_view name) {
    if (name[0] == '%') return addKeyArgument(name);
    if (name[0] == '#') name.remove_prefix(1);
    std::string key(name);
    std::size_t offset = 0;
    if (!beginsName(name[0])) {
        key.clear();
        if (!unescape(name.substr(1, name.size() - 2), key, offset)) {
            fail(name.data() + 1 + offset, "the escape of a character");
        }
    }
    path_.push_back(std::move(key));
}

void ProgramBuilder::addPath(std::string_view path) {
    if (path_.empty()) return push({Operation::Self}, path);
    program_->paths.push_back(std::exchange(path_, {}));
    const std::size_t index = program_->paths.size() - 1;
    push({.operation = Operation::Path, .index = static_cast<std::uint32_t>(index)}, path);
}

void ProgramBuilder::join(Operation operation, bool inverse) {
    const Operand right = pop(), left = pop();
    const bool conditions = operation == Operation::And || operation == Operation::Or;
    for (const Operand& operand : {left, right}) {
        conditions ? checkCondition(operand) : checkValue(operand);
    }
    std::vector<Node>& nodes = program_->nodes;
    nodes[right.node].inverse = inverse;
    std::uint32_t whole = left.node;
    if (nodes[whole].operation == operation && operation != Operation::Power) {
        nodes[lastOperand_[whole]].next = right.node;
    } else {
        whole = add({.operation = operation, .first = left.node});
        nodes[left.node].next = right.node;
    }
    lastOperand_[whole] = right.node;
    operands_.push_back({whole, left.begin, right.end});
}

void ProgramBuilder::negate(std::string_view all) {
    const Operand operand = pop();
    checkValue(operand);
    Node node = (*program_)[operand.node];
    Value* value =
        node.operation == Operation::Constant ? &program_->constants[node.index] : nullptr;
    if (auto* real = std::get_if<double>(value)) {
        *real = -*real;
    } else if (const auto* whole = std::get_if<std::int64_t>(value)) {
        // The least integer has no opposite.
        *value = *whole == std::numeric_limits<std::int64_t>::min() ? Value(0x1p63) : -*whole;
    } else {
        node = {.operation = Operation::Minus, .first = operand.node};
    }
    push(node, all);
    operands_.back().end = operand.end;
}

void ProgramBuilder::deny(std::string_view all) {
    const Operand operand = pop();
    checkCondition(operand);
    push({.operation = Operation::Not, .first = operand.node}, all);
    operands_.back().end = operand.end;
}

void ProgramBuilder::beginComparison(std::string_view sign) {
    const auto* found = std::ranges::find_if(
        kSigns, [sign](const Sign& known) { return equalsWord(sign, known.text); });
    comparisons_.push_back({found->operation, {}});
}

void ProgramBuilder::setOptions(std::string_view letters) {
    for (const char letter : letters) {
        if (letter == 'c' || letter == 'C') comparisons_.back().options.ignoresCase = true;
        if (letter == 'd' || letter == 'D') comparisons_.back().options.ignoresDiacritics = true;
    }
}

void ProgramBuilder::endComparison() {
    const Operand right = pop(), left = pop();
    checkValue(left);
    checkValue(right);
    const Comparison comparison = comparisons_.back();
    comparisons_.pop_back();
    Node node{.operation = comparison.operation, .options = comparison.options, .first = left.node};
    if (node.operation == Operation::Between) checkBounds(right);
    if (node.operation == Operation::Matches) {
        node.index = compilePattern(right, node.options);
    } else if (node.options.any()) {
        foldTexts(left.node, node.options);
        foldTexts(right.node, node.options);
    }
    program_->nodes[left.node].next = right.node;
    operands_.push_back({add(node), left.begin, right.end});
}

void ProgramBuilder::checkBounds(const Operand& right) const {
    const Program& program = *program_;
    const Node& node = program[right.node];
    const std::uint32_t low = node.operation == Operation::List ? node.first : kNoNode;
    const std::uint32_t high = low != kNoNode ? program[low].next : kNoNode;
    if (high == kNoNode || program[high].next != kNoNode) {
        failAt(right.begin, {}, "two values in braces");
    }
}

std::uint32_t ProgramBuilder::compilePattern(const Operand& right, TextOptions options) {
    const Node& node = (*program_)[right.node];
    const bool isText = node.operation == Operation::Constant &&
                        std::holds_alternative<std::string>(program_->constants[node.index]);
    if (!isText) failAt(right.begin, {}, "a regular expression as text in quotes");
    foldTexts(right.node, {.ignoresCase = false, .ignoresDiacritics = options.ignoresDiacritics});
    auto pattern = std::make_unique<const RE2>(
        program_->foldedTexts[(*program_)[right.node].textIndex], patternOptions(options));
    if (!pattern->ok()) failAt(right.begin, {}, patternProblem(*pattern));
    if (program_->patterns.size() == kMostPatterns) {
        failAt(right.begin, {}, "no more than 64 regular expressions");
    }
    program_->patterns.push_back(std::move(pattern));
    return static_cast<std::uint32_t>(program_->patterns.size() - 1);
}

void ProgramBuilder::foldTexts(std::uint32_t index, TextOptions options) {
    Node& node = program_->nodes[index];
    if (node.operation == Operation::List) {
        for (std::uint32_t i = node.first; i != kNoNode; i = (*program_)[i].next) {
            foldTexts(i, options);
        }
    }
    if (node.operation != Operation::Constant) return;
    const auto* text = std::get_if<std::string>(&program_->constants[node.index]);
    if (text == nullptr) return;
    node.folded = true;
    node.textIndex = static_cast<std::uint32_t>(program_->foldedTexts.size());
    program_->foldedTexts.emplace_back(FoldedText(*text, options).view());
}

void ProgramBuilder::beginQuantifier(std::string_view word) {
    const bool any = equalsWord(word, "ANY") || equalsWord(word, "SOME");
    quantifiers_.push_back(any                       ? Quantifier::Any
                           : equalsWord(word, "ALL") ? Quantifier::All
                                                     : Quantifier::None);
}

void ProgramBuilder::endQuantifier() {
    program_->nodes[operands_.back().node].quantifier = quantifiers_.back();
    quantifiers_.pop_back();
}

void ProgramBuilder::append(Chain& chain, std::uint32_t node) {
    (chain.first == kNoNode ? chain.first : program_->nodes[chain.last].next) = node;
    chain.last = node;
}

void ProgramBuilder::beginList() { lists_.emplace_back(); }

void ProgramBuilder::addMember() {
    const Operand member = pop();
    checkValue(member);
    append(lists_.back(), member.node);
}

void ProgramBuilder::endList(std::string_view all) {
    push({.operation = Operation::List, .first = lists_.back().first}, all);
    lists_.pop_back();
}

void ProgramBuilder::widen(std::string_view all) {
    operands_.back().begin = offsetOf(all.data());
    operands_.back().end = operands_.back().begin + all.size();
}

void ProgramBuilder::enter(const char* place) {
    if (depth_ == kDeepestFormat) fail(place, "no more than 64 levels of nesting");
    ++depth_;
}

std::unique_ptr<const Program> ProgramBuilder::finish() {
    checkCondition(operands_.back());
    if (usedArguments_ != arguments_.size()) {
        failAt(format_.size(), {}, "a % mark for each argument");
    }
    program_->root = operands_.back().node;
    return std::move(program_);
}

}  // namespace mezalith::platform::predicates
