// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/parser.hpp>
#include <mezalith/platform/predicates/program_builder.hpp>
#include <mezalith/platform/predicates/syntax.hpp>

#include <string>
#include <utility>

#include <tao/pegtl.hpp>

namespace mezalith::platform::predicates {
namespace {

namespace pegtl = tao::pegtl;
using pegtl::if_must;
using pegtl::must;
using pegtl::not_at;
using pegtl::one;
using pegtl::opt;
using pegtl::plus;
using pegtl::seq;
using pegtl::sor;
using pegtl::star;
using pegtl::two;

constexpr char kComparisonWanted[] = "a comparison such as == or IN";

/// `Opener`, then `Rest` one level deeper. `Rest` must match or raise an error.
template <typename Opener, typename... Rest>
struct nested {
    using rule_t = nested;
    using subs_t = pegtl::type_list<Opener, Rest...>;

    template <pegtl::apply_mode A, pegtl::rewind_mode, template <typename...> class Action,
              template <typename...> class Control, typename Input>
    static bool match(Input& in, ProgramBuilder& builder) {
        const char* place = in.current();
        if (!Control<Opener>::template match<A, pegtl::rewind_mode::required, Action, Control>(
                in, builder)) {
            return false;
        }
        builder.enter(place);
        static_cast<void>(
            Control<seq<Rest...>>::template match<A, pegtl::rewind_mode::active, Action, Control>(
                in, builder));
        builder.leave();
        return true;
    }
};

// ---- Words -------------------------------------------------------------------------------------

struct blanks : star<pegtl::space> {};
template <typename Rule>
struct padded : seq<Rule, blanks> {};

struct name_first : sor<one<'_'>, pegtl::alpha, pegtl::ranges<'\x80', '\xFF'>> {};
struct name_other : sor<name_first, pegtl::digit> {};
struct any_name : seq<name_first, star<name_other>> {};
template <typename Text>
struct word : seq<Text, not_at<name_other>> {};

struct word_and : padded<sor<two<'&'>, word<TAO_PEGTL_ISTRING("AND")>>> {};
struct word_or : padded<sor<two<'|'>, word<TAO_PEGTL_ISTRING("OR")>>> {};
struct word_not : padded<sor<seq<one<'!'>, not_at<one<'='>>>, word<TAO_PEGTL_ISTRING("NOT")>>> {};
struct word_self : word<TAO_PEGTL_ISTRING("SELF")> {};
struct constant_word
    : sor<word<TAO_PEGTL_ISTRING("TRUE")>, word<TAO_PEGTL_ISTRING("FALSE")>,
          word<TAO_PEGTL_ISTRING("YES")>, word<TAO_PEGTL_ISTRING("NO")>,
          word<TAO_PEGTL_ISTRING("NULL")>, word<TAO_PEGTL_ISTRING("NIL")>,
          word<TAO_PEGTL_ISTRING("TRUEPREDICATE")>, word<TAO_PEGTL_ISTRING("FALSEPREDICATE")>> {};
struct quantifier : sor<word<TAO_PEGTL_ISTRING("ANY")>, word<TAO_PEGTL_ISTRING("SOME")>,
                        word<TAO_PEGTL_ISTRING("ALL")>, word<TAO_PEGTL_ISTRING("NONE")>> {};
struct sign : sor<two<'='>, pegtl::string<'=', '<'>, pegtl::string<'=', '>'>, one<'='>,
                  pegtl::string<'!', '='>, pegtl::string<'<', '='>, pegtl::string<'<', '>'>,
                  one<'<'>, pegtl::string<'>', '='>, one<'>'>, word<TAO_PEGTL_ISTRING("BETWEEN")>,
                  word<TAO_PEGTL_ISTRING("IN")>, word<TAO_PEGTL_ISTRING("CONTAINS")>,
                  word<TAO_PEGTL_ISTRING("BEGINSWITH")>, word<TAO_PEGTL_ISTRING("ENDSWITH")>,
                  word<TAO_PEGTL_ISTRING("LIKE")>, word<TAO_PEGTL_ISTRING("MATCHES")>> {};

/// A name that is no word of the language.
struct free_name {
    using rule_t = free_name;
    using subs_t = pegtl::empty_list;

    template <typename Input, typename... States>
    static bool match(Input& in, States&&...) {
        std::size_t length = 0;
        while (length < in.size() && continuesName(in.peek_char(length))) ++length;
        const std::string_view text(in.current(), length);
        if (!isName(text) || isReserved(text)) return false;
        in.bump(length);
        return true;
    }
};

// ---- What must follow, and how errors call it --------------------------------------------------

template <typename Rule>
struct value_wanted : seq<Rule> {
    static std::string expected(const ProgramBuilder&) { return "a value"; }
};
template <typename Rule>
struct condition_wanted : seq<Rule> {
    static std::string expected(const ProgramBuilder&) { return "a condition"; }
};
template <typename Rule>
struct either_wanted : seq<Rule> {
    static std::string expected(const ProgramBuilder&) { return "a condition or a value"; }
};
template <typename Rule>
struct comparison_wanted : seq<Rule> {
    static std::string expected(const ProgramBuilder&) { return kComparisonWanted; }
};
template <char Quote>
struct closing_quote : one<Quote> {
    static std::string expected(const ProgramBuilder&) {
        return Quote == '"' ? "a closing \"" : "a closing '";
    }
};
struct closing_parenthesis : one<')'> {
    static std::string expected(const ProgramBuilder& builder) {
        return builder.endsInValue() ? "an operator or \")\"" : "AND, OR or \")\"";
    }
};
struct closing_brace : one<'}'> {
    static std::string expected(const ProgramBuilder& builder) {
        return builder.listHasMembers() ? R"("," or "}")" : R"(a value or "}")";
    }
};
struct closing_bracket : one<']'> {
    static std::string expected(const ProgramBuilder&) { return "\"]\""; }
};
struct all : pegtl::eof {
    static std::string expected(const ProgramBuilder& builder) {
        return builder.endsInValue() ? kComparisonWanted : "AND, OR or the end";
    }
};

// ---- Literals ----------------------------------------------------------------------------------

struct four_digits : pegtl::rep<4, pegtl::xdigit> {
    static std::string expected(const ProgramBuilder&) { return "four hexadecimal digits"; }
};
struct eight_digits : pegtl::rep<8, pegtl::xdigit> {
    static std::string expected(const ProgramBuilder&) { return "eight hexadecimal digits"; }
};
struct escaped : sor<one<'\\', '"', '\'', '/', 'n', 'r', 't', 'b', 'f'>,
                     if_must<one<'u'>, four_digits>, if_must<one<'U'>, eight_digits>> {
    static std::string expected(const ProgramBuilder&) {
        return R"(what a backslash may escape: \ " ' / n r t b f u U)";
    }
};
template <char Quote>
struct in_quotes
    : seq<one<Quote>, star<sor<if_must<one<'\\'>, escaped>, pegtl::not_one<Quote, '\\'>>>,
          must<closing_quote<Quote>>> {};
struct any_quotes : sor<in_quotes<'"'>, in_quotes<'\''>> {};
struct text : seq<any_quotes> {};

struct number_end : not_at<name_other> {
    static std::string expected(const ProgramBuilder&) { return "a blank or an operator"; }
};
struct exponent_digits : plus<pegtl::digit> {
    static std::string expected(const ProgramBuilder&) { return "the digits of an exponent"; }
};
struct exponent : seq<one<'e', 'E'>, opt<one<'+', '-'>>, must<exponent_digits>> {};
struct fraction : seq<one<'.'>, plus<pegtl::digit>> {};
struct digits
    : seq<sor<seq<plus<pegtl::digit>, opt<fraction>>, fraction>, opt<exponent>, must<number_end>> {
};
struct number : seq<digits> {};
/// The minus belongs to the number, unless the number is the base of a power.
struct negative_number : seq<one<'-'>, digits, not_at<blanks, two<'*'>>> {};

struct number_letters : seq<opt<sor<two<'l'>, one<'l', 'q', 'z', 'h', 'L'>>>,
                            one<'d', 'i', 'u', 'f', 'F', 'e', 'E', 'g', 'G'>> {};
// Without the failure at the end, an error would be told behind what had matched.
struct mark_letters : sor<seq<sor<one<'@'>, number_letters>, not_at<name_other>>, pegtl::failure> {
    static std::string expected(const ProgramBuilder&) {
        return "@, K, or a number's letter such as d or f";
    }
};
struct argument : if_must<one<'%'>, mark_letters> {};

// ---- Paths -------------------------------------------------------------------------------------

struct key_mark : seq<one<'%'>, one<'K'>, not_at<name_other>> {};
struct escaped_name : seq<one<'#'>, sor<any_name, any_quotes>> {};
struct first_name : sor<key_mark, escaped_name, free_name> {};
struct next_name : sor<key_mark, escaped_name, any_name> {};
struct key_wanted : seq<next_name> {
    static std::string expected(const ProgramBuilder&) { return "a key"; }
};
struct further_names : star<if_must<one<'.'>, key_wanted>> {};
struct path : seq<sor<word_self, first_name>, further_names> {};

// ---- Values ------------------------------------------------------------------------------------

struct disjunction;
struct sum;
struct unary;

struct group : nested<padded<one<'('>>, must<either_wanted<disjunction>, closing_parenthesis>> {};
struct member : seq<sum> {};
struct members : opt<member, star<padded<one<','>>, must<value_wanted<member>>>> {};
struct opening_brace : one<'{'> {};
struct list : nested<padded<opening_brace>, members, must<closing_brace>> {};
struct primary : padded<sor<number, text, group, list, constant_word, path, argument>> {};
struct power : nested<padded<two<'*'>>, must<value_wanted<unary>>> {};
struct minus : nested<padded<one<'-'>>, must<value_wanted<unary>>> {};
struct unary : sor<padded<negative_number>, minus, seq<primary, opt<power>>> {};

struct times : if_must<padded<seq<one<'*'>, not_at<one<'*'>>>>, value_wanted<unary>> {};
struct divided : if_must<padded<one<'/'>>, value_wanted<unary>> {};
struct product : seq<unary, star<sor<times, divided>>> {};
struct added : if_must<padded<one<'+'>>, value_wanted<product>> {};
struct subtracted : if_must<padded<one<'-'>>, value_wanted<product>> {};
struct sum : seq<product, star<sor<added, subtracted>>> {};

// ---- Conditions --------------------------------------------------------------------------------

struct option_letters : sor<TAO_PEGTL_ISTRING("CD"), TAO_PEGTL_ISTRING("DC"),
                            TAO_PEGTL_ISTRING("C"), TAO_PEGTL_ISTRING("D")> {
    static std::string expected(const ProgramBuilder&) { return "c, d or cd"; }
};
struct options : if_must<one<'['>, option_letters, closing_bracket> {};
struct compared : seq<padded<sign>, opt<padded<options>>, must<value_wanted<sum>>> {};
struct quantified : if_must<padded<quantifier>, value_wanted<sum>, comparison_wanted<compared>> {};
struct comparison : sor<quantified, seq<sum, opt<compared>>> {};
struct negation;
struct denied : nested<word_not, must<condition_wanted<negation>>> {};
struct negation : sor<denied, comparison> {};
struct and_also : if_must<word_and, condition_wanted<negation>> {};
struct conjunction : seq<negation, star<and_also>> {};
struct or_else : if_must<word_or, condition_wanted<conjunction>> {};
struct disjunction : seq<conjunction, star<or_else>> {};
struct predicate : seq<blanks, must<condition_wanted<disjunction>, all>> {};

// ---- What they build ---------------------------------------------------------------------------

template <void (ProgramBuilder::*Method)(std::string_view)>
struct Tells {
    template <typename Input>
    static void apply(const Input& in, ProgramBuilder& builder) {
        (builder.*Method)(in.string_view());
    }
};
template <void (ProgramBuilder::*Method)()>
struct Calls {
    static void apply0(ProgramBuilder& builder) { (builder.*Method)(); }
};
template <Operation Joined, bool Inverse = false>
struct Joins {
    static void apply0(ProgramBuilder& builder) { builder.join(Joined, Inverse); }
};

template <typename Rule>
struct Action {};
template <>
struct Action<number> : Tells<&ProgramBuilder::addNumber> {};
template <>
struct Action<negative_number> : Tells<&ProgramBuilder::addNumber> {};
template <>
struct Action<text> : Tells<&ProgramBuilder::addText> {};
template <>
struct Action<constant_word> : Tells<&ProgramBuilder::addWord> {};
template <>
struct Action<argument> : Tells<&ProgramBuilder::addArgument> {};
template <>
struct Action<first_name> : Tells<&ProgramBuilder::addName> {};
template <>
struct Action<next_name> : Tells<&ProgramBuilder::addName> {};
template <>
struct Action<path> : Tells<&ProgramBuilder::addPath> {};
template <>
struct Action<group> : Tells<&ProgramBuilder::widen> {};
template <>
struct Action<opening_brace> : Calls<&ProgramBuilder::beginList> {};
template <>
struct Action<member> : Calls<&ProgramBuilder::addMember> {};
template <>
struct Action<list> : Tells<&ProgramBuilder::endList> {};
template <>
struct Action<minus> : Tells<&ProgramBuilder::negate> {};
template <>
struct Action<power> : Joins<Operation::Power> {};
template <>
struct Action<times> : Joins<Operation::Product> {};
template <>
struct Action<divided> : Joins<Operation::Product, true> {};
template <>
struct Action<added> : Joins<Operation::Sum> {};
template <>
struct Action<subtracted> : Joins<Operation::Sum, true> {};
template <>
struct Action<sign> : Tells<&ProgramBuilder::beginComparison> {};
template <>
struct Action<option_letters> : Tells<&ProgramBuilder::setOptions> {};
template <>
struct Action<compared> : Calls<&ProgramBuilder::endComparison> {};
template <>
struct Action<quantifier> : Tells<&ProgramBuilder::beginQuantifier> {};
template <>
struct Action<quantified> : Calls<&ProgramBuilder::endQuantifier> {};
template <>
struct Action<denied> : Tells<&ProgramBuilder::deny> {};
template <>
struct Action<and_also> : Joins<Operation::And> {};
template <>
struct Action<or_else> : Joins<Operation::Or> {};

template <typename Rule>
struct Control : pegtl::normal<Rule> {
    template <typename Input>
    [[noreturn]] static void raise(const Input& in, ProgramBuilder& builder) {
        builder.fail(in.current(), Rule::expected(builder));
    }
};

PredicateError errorOf(std::string_view format, const SyntaxError& error) {
    const std::size_t offset = skipBlanks(format, error.offset);
    const Place place = placeOf(format, offset);
    return {place.line, place.column, error.found.empty() ? tokenAt(format, offset) : error.found,
            error.expected};
}

}  // namespace

PredicateError tooLong(std::size_t bytes) {
    return {1, 1, std::to_string(bytes) + " bytes",
            "no more than " + std::to_string(kLongestFormat)};
}

std::unique_ptr<const Program> parsePredicate(std::string_view format,
                                              std::span<const PredicateArgument> arguments,
                                              PredicateError& error) {
    std::size_t offset = 0;
    if (format.size() > kLongestFormat) {
        error = tooLong(format.size());
        return nullptr;
    }
    if (!isUTF8(format, &offset)) {
        const Place place = placeOf(format, offset);
        error = {place.line, place.column, "a byte that is not UTF-8", "a character"};
        return nullptr;
    }
    pegtl::memory_input<pegtl::tracking_mode::lazy> input(format.data(),
                                                          format.data() + format.size(), "");
    try {
        ProgramBuilder builder(format, arguments);
        pegtl::parse<predicate, Action, Control>(input, builder);
        return builder.finish();
    } catch (const SyntaxError& problem) {
        error = errorOf(format, problem);
        return nullptr;
    }
}

}  // namespace mezalith::platform::predicates
