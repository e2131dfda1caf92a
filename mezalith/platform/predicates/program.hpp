// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/object.hpp>
#include <mezalith/platform/predicates/folded_text.hpp>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <re2/re2.h>

namespace mezalith::platform::predicates {

/// What a node of a predicate says. Those up to `Matches` are conditions, the others values.
enum class Operation : std::uint8_t {
    Or,   ///< of two operands or more
    And,  ///< likewise
    Not,
    True,
    False,
    Equal,  ///< from here to `Matches`: comparisons of two operands
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Between,
    In,
    Contains,
    BeginsWith,
    EndsWith,
    Like,
    Matches,
    Constant,
    Self,
    Path,
    List,
    Sum,      ///< of two operands or more; those that are `inverse` are subtracted
    Product,  ///< likewise; those that are `inverse` divide
    Power,
    Minus,
};

/// Which members of the left operand a comparison is about.
enum class Quantifier : std::uint8_t { Itself, Any, All, None };

/// How a comparison is written.
struct Sign {
    std::string_view text;
    Operation operation;
};

/// All of them, of several for one comparison the canonical one first.
inline constexpr std::array<Sign, 17> kSigns{{{"==", Operation::Equal},
                                              {"=", Operation::Equal},
                                              {"!=", Operation::NotEqual},
                                              {"<>", Operation::NotEqual},
                                              {"<", Operation::Less},
                                              {"<=", Operation::LessOrEqual},
                                              {"=<", Operation::LessOrEqual},
                                              {">", Operation::Greater},
                                              {">=", Operation::GreaterOrEqual},
                                              {"=>", Operation::GreaterOrEqual},
                                              {"BETWEEN", Operation::Between},
                                              {"IN", Operation::In},
                                              {"CONTAINS", Operation::Contains},
                                              {"BEGINSWITH", Operation::BeginsWith},
                                              {"ENDSWITH", Operation::EndsWith},
                                              {"LIKE", Operation::Like},
                                              {"MATCHES", Operation::Matches}}};

/// No node.
inline constexpr std::uint32_t kNoNode = std::numeric_limits<std::uint32_t>::max();

/// A node of a predicate. Its operands are a chain of nodes: `first`, then the `next` of each.
struct Node {
    Operation operation;
    Quantifier quantifier = Quantifier::Itself;  ///< of a comparison
    TextOptions options{};                       ///< of a comparison
    bool inverse = false;                        ///< as an operand of a sum or product
    bool folded = false;          ///< a constant of which `folded` has the text to compare
    std::uint32_t index = 0;      ///< of the constant or path, or of the pattern of `Matches`
    std::uint32_t textIndex = 0;  ///< of a constant's folded text
    std::uint32_t first = kNoNode;
    std::uint32_t next = kNoNode;
};

inline bool isCondition(const Node& node) { return node.operation <= Operation::Matches; }

/// A predicate ready to be evaluated: nodes that refer to each other by their indices.
struct Program {
    std::vector<Node> nodes;
    std::uint32_t root = kNoNode;
    std::vector<Value> constants;
    std::vector<std::vector<std::string>> paths;
    std::vector<std::string> foldedTexts;  ///< constants as their comparisons see them
    std::vector<std::unique_ptr<const RE2>> patterns;

    const Node& operator[](std::uint32_t index) const { return nodes[index]; }
};

/// Whether `value` is a number that is written with a minus.
bool isNegative(const Value& value);

/// The predicate as text, in its one canonical form; reads back to an equal program.
std::string formatOf(const Program& program);

}  // namespace mezalith::platform::predicates
