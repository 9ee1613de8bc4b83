#include "expression/lexer.h"

#include <charconv>
#include <system_error>

namespace veldra::detail {
namespace {

bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}
bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
bool is_name_start(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool is_name_char(char c) {
    return is_name_start(c) || is_digit(c);
}

struct Symbol {
    std::string_view text;
    TokenKind kind;
};

// Two-character symbols come first so "<=" is not read as "<" followed by "=".
constexpr Symbol SYMBOLS[] = {
    {"<=", TokenKind::less_equal}, {">=", TokenKind::greater_equal}, {"==", TokenKind::equal_equal},
    {"!=", TokenKind::bang_equal}, {"&&", TokenKind::and_and},       {"||", TokenKind::or_or},
    {"+", TokenKind::plus},        {"-", TokenKind::minus},          {"*", TokenKind::star},
    {"/", TokenKind::slash},       {"%", TokenKind::percent},        {"^", TokenKind::caret},
    {"!", TokenKind::bang},        {"<", TokenKind::less},           {">", TokenKind::greater},
    {"?", TokenKind::question},    {":", TokenKind::colon},          {",", TokenKind::comma},
    {"(", TokenKind::left_paren},  {")", TokenKind::right_paren},
};

}  // namespace

Token Lexer::make(TokenKind kind, std::size_t start, std::size_t length) {
    pos_ = start + length;
    Token token;
    token.kind = kind;
    token.column = start + 1;
    token.text = source_.substr(start, length);
    return token;
}

bool Lexer::digit_at(std::size_t pos) const {
    return pos < source_.size() && is_digit(source_[pos]);
}

Token Lexer::next() {
    while (pos_ < source_.size() && is_space(source_[pos_])) {
        ++pos_;
    }
    if (pos_ >= source_.size()) {
        return make(TokenKind::end, source_.size(), 0);
    }
    const char c = source_[pos_];
    if (is_digit(c) || (c == '.' && digit_at(pos_ + 1))) {
        return lex_number(pos_);
    }
    if (is_name_start(c)) {
        return lex_name(pos_);
    }
    return lex_symbol(pos_);
}

// digits [. digits] [(e|E) [+|-] digits], or . digits [exponent]. An "e" that is not followed
// by digits is not part of the number, so "2e" reads as 2 followed by the name e.
Token Lexer::lex_number(std::size_t start) {
    std::size_t end = start;
    while (digit_at(end)) {
        ++end;
    }
    if (end < source_.size() && source_[end] == '.') {
        ++end;
        while (digit_at(end)) {
            ++end;
        }
    }
    if (end < source_.size() && (source_[end] == 'e' || source_[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < source_.size() && (source_[exponent] == '+' || source_[exponent] == '-')) {
            ++exponent;
        }
        if (digit_at(exponent)) {
            end = exponent;
            while (digit_at(end)) {
                ++end;
            }
        }
    }
    Token token = make(TokenKind::number, start, end - start);
    const char* first = source_.data() + start;
    const auto [last, error] = std::from_chars(first, first + token.text.size(), token.value);
    if (error != std::errc() || last != first + token.text.size()) {
        token.kind = TokenKind::bad_number;
    }
    return token;
}

Token Lexer::lex_name(std::size_t start) {
    std::size_t end = start;
    while (end < source_.size() && is_name_char(source_[end])) {
        ++end;
    }
    return make(TokenKind::name, start, end - start);
}

Token Lexer::lex_symbol(std::size_t start) {
    const std::string_view rest = source_.substr(start);
    for (const Symbol& symbol : SYMBOLS) {
        if (rest.starts_with(symbol.text)) {
            return make(symbol.kind, start, symbol.text.size());
        }
    }
    // Report a multi-byte character whole so the message prints it intact.
    std::size_t length = 1;
    if (static_cast<unsigned char>(rest[0]) >= 0x80) {
        while (length < rest.size() && (static_cast<unsigned char>(rest[length]) & 0xC0) == 0x80) {
            ++length;
        }
    }
    return make(TokenKind::bad_character, start, length);
}

}  // namespace veldra::detail
