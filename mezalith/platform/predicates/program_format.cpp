// SPDX-License-Identifier: MIT
#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/predicates/program.hpp>
#include <mezalith/platform/predicates/syntax.hpp>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <variant>

namespace mezalith::platform::predicates {
namespace {

/// How tightly a node's text holds together; an operand that is looser than wanted goes into
/// parentheses.
enum Tightness { kOr, kAnd, kNot, kComparison, kSum, kProduct, kUnary, kPower, kPrimary };

std::string_view signOf(Operation operation) {
    return std::ranges::find(kSigns, operation, &Sign::operation)->text;
}

const char* textOf(Quantifier quantifier) {
    switch (quantifier) {
        case Quantifier::Any:
            return "ANY ";
        case Quantifier::All:
            return "ALL ";
        case Quantifier::None:
            return "NONE ";
        default:
            return "";
    }
}

const char* textOf(TextOptions options) {
    if (options.ignoresCase) return options.ignoresDiacritics ? "[cd]" : "[c]";
    return options.ignoresDiacritics ? "[d]" : "";
}

/// Whole doubles keep a point or an exponent, to be read as doubles.
std::string realText(double value) {
    std::string text = shortestText(value);
    if (text.find_first_of(".e") == std::string::npos) text += ".0";
    return text;
}

std::string constantText(const Value& value) {
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "TRUE" : "FALSE";
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* real = std::get_if<double>(&value)) return realText(*real);
    if (const auto* text = std::get_if<std::string>(&value)) return quoted(*text);
    return "NULL";
}

std::string pathText(const std::vector<std::string>& path) {
    std::string text;
    for (const std::string& name : path) {
        if (!text.empty()) text += '.';
        if (!isName(name)) {
            text += '#' + quoted(name);
        } else {
            text += isReserved(name) ? '#' + name : name;
        }
    }
    return text;
}

class Writer {
  public:
    explicit Writer(const Program& program) : program_(program) {}

    std::string take() { return std::move(text_); }

    void write(std::uint32_t index, Tightness wanted) {
        const Node& node = program_[index];
        const bool loose = tightnessOf(node) < wanted;
        if (loose) text_ += '(';
        writeBare(node);
        if (loose) text_ += ')';
    }

  private:
    Tightness tightnessOf(const Node& node) const {
        switch (node.operation) {
            case Operation::Or:
                return kOr;
            case Operation::And:
                return kAnd;
            case Operation::Not:
                return kNot;
            case Operation::Sum:
                return kSum;
            case Operation::Product:
                return kProduct;
            case Operation::Minus:
                return kUnary;
            case Operation::Power:
                return kPower;
            case Operation::Constant:
                return isNegative(program_.constants[node.index]) ? kUnary : kPrimary;
            case Operation::True:
            case Operation::False:
                return kComparison;
            default:
                return isCondition(node) ? kComparison : kPrimary;
        }
    }

    void writeBare(const Node& node) {
        switch (node.operation) {
            case Operation::Or:
                return writeChain(node, " OR ", " OR ", kAnd);
            case Operation::And:
                return writeChain(node, " AND ", " AND ", kNot);
            case Operation::Not:
                return writeBehind("NOT ", node, kNot);
            case Operation::Sum:
                return writeChain(node, " + ", " - ", kProduct);
            case Operation::Product:
                return writeChain(node, " * ", " / ", kUnary);
            case Operation::Minus:
                return writeBehind("-", node, kUnary);
            case Operation::Power:
                write(node.first, kPrimary);
                text_ += " ** ";
                return write(program_[node.first].next, kUnary);
            case Operation::List:
                text_ += '{';
                writeChain(node, ", ", ", ", kSum);
                text_ += '}';
                return;
            default:
                return isCondition(node) && node.first != kNoNode ? writeComparison(node)
                                                                  : writeLeaf(node);
        }
    }

    void writeLeaf(const Node& node) {
        switch (node.operation) {
            case Operation::True:
                text_ += "TRUEPREDICATE";
                break;
            case Operation::False:
                text_ += "FALSEPREDICATE";
                break;
            case Operation::Self:
                text_ += "SELF";
                break;
            case Operation::Path:
                text_ += pathText(program_.paths[node.index]);
                break;
            default:
                text_ += constantText(program_.constants[node.index]);
        }
    }

    void writeBehind(const char* sign, const Node& node, Tightness wanted) {
        text_ += sign;
        write(node.first, wanted);
    }

    void writeChain(const Node& node, const char* sign, const char* inverseSign, Tightness wanted) {
        for (std::uint32_t i = node.first; i != kNoNode; i = program_[i].next) {
            if (i != node.first) text_ += program_[i].inverse ? inverseSign : sign;
            write(i, wanted);
        }
    }

    void writeComparison(const Node& node) {
        text_ += textOf(node.quantifier);
        write(node.first, kSum);
        text_ += ' ';
        text_ += signOf(node.operation);
        text_ += textOf(node.options);
        text_ += ' ';
        write(program_[node.first].next, kSum);
    }

    const Program& program_;
    std::string text_;
};

}  // namespace

bool isNegative(const Value& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole < 0;
    const auto* real = std::get_if<double>(&value);
    return real != nullptr && std::signbit(*real);
}

std::string formatOf(const Program& program) {
    Writer writer(program);
    writer.write(program.root, kOr);
    return writer.take();
}

}  // namespace mezalith::platform::predicates
