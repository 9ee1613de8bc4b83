#pragma once
// Splits a formula into tokens, one at a time, recording each token's column for error messages.

#include <cstddef>
#include <string_view>

namespace veldra::detail {

enum class TokenKind : unsigned char {
    number,
    name,
    plus,
    minus,
    star,
    slash,
    percent,
    caret,
    bang,
    less,
    less_equal,
    greater,
    greater_equal,
    equal_equal,
    bang_equal,
    and_and,
    or_or,
    question,
    colon,
    comma,
    left_paren,
    right_paren,
    end,
    bad_character,  // text holds the character (a whole UTF-8 sequence)
    bad_number,     // a number too large or too small for a double
};

struct Token {
    TokenKind kind = TokenKind::end;
    std::size_t column = 1;  // 1-based byte position of the token's first character
    std::string_view text;   // a view into the source
    double value = 0.0;      // number only
};

class Lexer {
public:
    explicit Lexer(std::string_view source) : source_(source) {}
    Token next();

private:
    Token lex_number(std::size_t start);
    Token lex_name(std::size_t start);
    Token lex_symbol(std::size_t start);
    Token make(TokenKind kind, std::size_t start, std::size_t length);
    bool digit_at(std::size_t pos) const;

    std::string_view source_;
    std::size_t pos_ = 0;
};

}  // namespace veldra::detail
