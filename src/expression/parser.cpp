#include "expression/parser.h"

#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "expression/lexer.h"

namespace veldra::detail {
namespace {

struct VariableName {
    std::string_view name;
    ExprVar var;
};
constexpr VariableName VARIABLES[] = {
    {"O", ExprVar::O},           {"C", ExprVar::C},       {"E", ExprVar::E},
    {"A", ExprVar::A},           {"N", ExprVar::N},       {"ENERGY_LEVEL", ExprVar::ENERGY_LEVEL},
    {"WEIGHT", ExprVar::WEIGHT}, {"TIME", ExprVar::TIME}, {"DISTANCE", ExprVar::DISTANCE},
};

struct ConstantName {
    std::string_view name;
    double value;
};
constexpr ConstantName CONSTANTS[] = {{"pi", std::numbers::pi}, {"e", std::numbers::e}};

struct Function {
    std::string_view name;
    Op op;
    bool variadic;  // takes op_arity(op) or more arguments, folded left: min(a, b, c) = min(min(a,
                    // b), c)
};
constexpr Function FUNCTIONS[] = {
    {"min", Op::Min, true},    {"max", Op::Max, true},      {"clamp", Op::Clamp, false},
    {"abs", Op::Abs, false},   {"sqrt", Op::Sqrt, false},   {"exp", Op::Exp, false},
    {"log", Op::Log, false},   {"pow", Op::Pow, false},     {"floor", Op::Floor, false},
    {"ceil", Op::Ceil, false}, {"round", Op::Round, false}, {"sign", Op::Sign, false},
    {"lerp", Op::Lerp, false},
};

// Higher binds tighter; all of these are left-associative. Unary operators bind tighter than
// any of them, and ^ tighter still (see parse_power).
struct BinaryOperator {
    TokenKind token;
    Op op;
    int precedence;
};
constexpr BinaryOperator BINARY_OPERATORS[] = {
    {TokenKind::or_or, Op::Or, 1},       {TokenKind::and_and, Op::And, 2},
    {TokenKind::equal_equal, Op::Eq, 3}, {TokenKind::bang_equal, Op::Ne, 3},
    {TokenKind::less, Op::Lt, 4},        {TokenKind::less_equal, Op::Le, 4},
    {TokenKind::greater, Op::Gt, 4},     {TokenKind::greater_equal, Op::Ge, 4},
    {TokenKind::plus, Op::Add, 5},       {TokenKind::minus, Op::Sub, 5},
    {TokenKind::star, Op::Mul, 6},       {TokenKind::slash, Op::Div, 6},
    {TokenKind::percent, Op::Mod, 6},
};

const BinaryOperator* find_binary_operator(TokenKind kind) {
    for (const BinaryOperator& op : BINARY_OPERATORS) {
        if (op.token == kind) {
            return &op;
        }
    }
    return nullptr;
}

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lower(a[i]) != lower(b[i])) {
            return false;
        }
    }
    return true;
}

// Names are case-sensitive, and "energy_level" for "ENERGY_LEVEL" is the likely slip.
std::string unknown_name_message(std::string_view name) {
    std::string message = "unknown name " + quoted(name);
    auto suggest = [&](std::string_view known) {
        if (equal_ignoring_case(name, known)) {
            message += "; did you mean " + quoted(known) + "?";
            return true;
        }
        return false;
    };
    for (const VariableName& v : VARIABLES) {
        if (suggest(v.name))
            return message;
    }
    for (const ConstantName& c : CONSTANTS) {
        if (suggest(c.name))
            return message;
    }
    for (const Function& f : FUNCTIONS) {
        if (suggest(f.name))
            return message;
    }
    return message;
}

std::string arity_message(const Function& function) {
    const int count = op_arity(function.op);
    return "function " + quoted(function.name) + " takes " +
           (function.variadic ? "at least " : "") + std::to_string(count) +
           (count == 1 ? " argument" : " arguments");
}

class Parser {
public:
    Parser(std::string_view source, ExprVarMask given) : lexer_(source), given_(given) {
        advance();
    }
    std::variant<ParsedExpression, ExpressionError> run();

private:
    NodeId parse_ternary();
    NodeId parse_binary(int min_precedence);
    NodeId parse_unary();
    NodeId parse_power();
    NodeId parse_primary();
    NodeId parse_name();
    NodeId parse_call(const Function& function, std::size_t column);

    // Parses one nested operand (in parentheses, a call, a branch, after a prefix operator or
    // ^); every recursion of the parser passes through here, so MAX_NESTING bounds it.
    template <class Parse>
    NodeId nested(Parse parse);
    bool expect(TokenKind kind, std::string_view message);
    NodeId fail(std::size_t column, std::string message);
    NodeId unexpected();
    void advance() { token_ = lexer_.next(); }

    Lexer lexer_;
    Token token_;
    Ast ast_;
    int depth_ = 0;
    std::optional<ExpressionError> error_;
    ExprVarMask given_;
    ExprVarMask reads_ = 0;
};

std::variant<ParsedExpression, ExpressionError> Parser::run() {
    if (token_.kind == TokenKind::end) {
        return ExpressionError{1, "empty expression"};
    }
    const NodeId root = parse_ternary();
    if (root != NO_NODE && token_.kind != TokenKind::end) {
        unexpected();
    }
    if (error_) {
        return std::move(*error_);
    }
    return ParsedExpression{std::move(ast_), root, reads_};
}

template <class Parse>
NodeId Parser::nested(Parse parse) {
    if (depth_ == MAX_NESTING) {
        return fail(token_.column, "expression nested too deeply");
    }
    ++depth_;
    const NodeId result = parse();
    --depth_;
    return result;
}

bool Parser::expect(TokenKind kind, std::string_view message) {
    if (token_.kind != kind) {
        fail(token_.column, std::string(message));
        return false;
    }
    advance();
    return true;
}

NodeId Parser::fail(std::size_t column, std::string message) {
    if (!error_) {
        error_ = ExpressionError{column, std::move(message)};
    }
    return NO_NODE;
}

NodeId Parser::unexpected() {
    switch (token_.kind) {
        case TokenKind::end:
            return fail(token_.column, "unexpected end of expression");
        case TokenKind::bad_character:
            return fail(token_.column, "unexpected character '" + std::string(token_.text) + "'");
        case TokenKind::bad_number:
            return fail(token_.column, "number out of range");
        default:
            return fail(token_.column, "unexpected '" + std::string(token_.text) + "'");
    }
}

NodeId Parser::parse_ternary() {
    const NodeId condition = parse_binary(1);
    if (condition == NO_NODE || token_.kind != TokenKind::question) {
        return condition;
    }
    advance();
    const NodeId if_true = nested([this] { return parse_ternary(); });
    if (if_true == NO_NODE || !expect(TokenKind::colon, "expected ':'")) {
        return NO_NODE;
    }
    const NodeId if_false = nested([this] { return parse_ternary(); });
    if (if_false == NO_NODE) {
        return NO_NODE;
    }
    return ast_.apply(Op::Select, {condition, if_true, if_false});
}

// Precedence climbing: each right operand is parsed with the next higher precedence, which
// makes every level left-associative.
NodeId Parser::parse_binary(int min_precedence) {
    NodeId lhs = parse_unary();
    while (lhs != NO_NODE) {
        const BinaryOperator* op = find_binary_operator(token_.kind);
        if (op == nullptr || op->precedence < min_precedence) {
            break;
        }
        advance();
        const NodeId rhs = parse_binary(op->precedence + 1);
        lhs = rhs == NO_NODE ? NO_NODE : ast_.apply(op->op, {lhs, rhs});
    }
    return lhs;
}

NodeId Parser::parse_unary() {
    const TokenKind kind = token_.kind;
    if (kind != TokenKind::minus && kind != TokenKind::bang && kind != TokenKind::plus) {
        return parse_power();
    }
    advance();
    const NodeId operand = nested([this] { return parse_unary(); });
    if (operand == NO_NODE || kind == TokenKind::plus) {
        return operand;
    }
    return ast_.apply(kind == TokenKind::minus ? Op::Neg : Op::Not, {operand});
}

// ^ takes a primary on its left and a unary expression on its right: -2^2 is -(2^2), 2^-1
// is 0.5, and 2^3^2 is 2^(3^2).
NodeId Parser::parse_power() {
    const NodeId base = parse_primary();
    if (base == NO_NODE || token_.kind != TokenKind::caret) {
        return base;
    }
    advance();
    const NodeId exponent = nested([this] { return parse_unary(); });
    return exponent == NO_NODE ? NO_NODE : ast_.apply(Op::Pow, {base, exponent});
}

NodeId Parser::parse_primary() {
    switch (token_.kind) {
        case TokenKind::number: {
            const NodeId node = ast_.constant(token_.value);
            advance();
            return node;
        }
        case TokenKind::name:
            return parse_name();
        case TokenKind::left_paren: {
            advance();
            const NodeId inner = nested([this] { return parse_ternary(); });
            if (inner == NO_NODE || !expect(TokenKind::right_paren, "expected ')'")) {
                return NO_NODE;
            }
            return inner;
        }
        default:
            return unexpected();
    }
}

NodeId Parser::parse_name() {
    const Token name = token_;
    for (const VariableName& v : VARIABLES) {
        if (name.text == v.name) {
            if (!expr_var_mask_has(given_, v.var))
                return fail(name.column,
                            "the variable " + quoted(v.name) + " is not given to this formula");
            reads_ = static_cast<ExprVarMask>(reads_ | expr_var_bit(v.var));
            advance();
            return ast_.variable(v.var);
        }
    }
    for (const ConstantName& c : CONSTANTS) {
        if (name.text == c.name) {
            advance();
            return ast_.constant(c.value);
        }
    }
    for (const Function& f : FUNCTIONS) {
        if (name.text == f.name) {
            advance();
            if (token_.kind != TokenKind::left_paren) {
                return fail(token_.column, "expected '(' after " + quoted(f.name));
            }
            return parse_call(f, name.column);
        }
    }
    return fail(name.column, unknown_name_message(name.text));
}

NodeId Parser::parse_call(const Function& function, std::size_t column) {
    advance();  // the '('
    std::vector<NodeId> args;
    if (token_.kind != TokenKind::right_paren) {
        for (;;) {
            const NodeId arg = nested([this] { return parse_ternary(); });
            if (arg == NO_NODE) {
                return NO_NODE;
            }
            args.push_back(arg);
            if (token_.kind == TokenKind::right_paren) {
                break;
            }
            if (token_.kind != TokenKind::comma) {
                return fail(token_.column, "expected ',' or ')'");
            }
            advance();
        }
    }
    advance();  // the ')'
    const std::size_t needed = static_cast<std::size_t>(op_arity(function.op));
    if (args.size() < needed || (!function.variadic && args.size() > needed)) {
        return fail(column, arity_message(function));
    }
    switch (needed) {
        case 1:
            return ast_.apply(function.op, {args[0]});
        case 3:
            return ast_.apply(function.op, {args[0], args[1], args[2]});
        default: {
            NodeId result = args[0];
            for (std::size_t i = 1; i < args.size(); ++i) {
                result = ast_.apply(function.op, {result, args[i]});
            }
            return result;
        }
    }
}

}  // namespace

std::string_view variable_name(ExprVar var) {
    for (const VariableName& v : VARIABLES)
        if (v.var == var)
            return v.name;
    return {};
}

std::variant<ParsedExpression, ExpressionError> parse_expression(std::string_view source,
                                                                 ExprVarMask given) {
    return Parser(source, given).run();
}

}  // namespace veldra::detail
