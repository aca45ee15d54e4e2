#pragma once

#include <cctype>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

enum class Kind { Word, Number, Text, Sign };

struct Token
{
    Kind kind;
    std::size_t begin;
    std::size_t end;
    std::string text;
};

struct Mutant
{
    std::size_t begin;
    std::size_t end;
    std::string replacement;
    std::string kind;
};

inline bool isWordCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// A C++ source as tokens, and its mutants.
class Source
{
public:
    explicit Source(std::string text) : m_text(std::move(text)) { tokenize(); }

    std::vector<Mutant> mutants() const;
    std::string apply(const Mutant& mutant) const
    {
        return m_text.substr(0, mutant.begin) + mutant.replacement + m_text.substr(mutant.end);
    }

    int lineOf(std::size_t offset) const;
    /// The lines that the mutant touches, before or after, as one line with single blanks.
    std::string shown(const Mutant& mutant, bool after) const;

private:
    void tokenize();
    std::size_t endOfPreprocessorLine(std::size_t at) const;
    std::size_t endOfText(std::size_t at) const;

    bool is(std::size_t i, const char* text) const
    {
        return i < m_tokens.size() && m_tokens[i].text == text;
    }
    bool isWord(std::size_t i) const
    {
        return i < m_tokens.size() && m_tokens[i].kind == Kind::Word;
    }
    bool isSpaced(std::size_t i) const;
    bool isOperandBefore(std::size_t i) const;
    /// The token that closes the bracket at @p open; the number of tokens if none does.
    std::size_t closing(std::size_t open) const;
    std::string textBetween(std::size_t first, std::size_t last) const
    {
        return m_text.substr(m_tokens[first].begin, m_tokens[last].end - m_tokens[first].begin);
    }

    std::set<std::size_t> quietTokens() const;
    std::size_t endOfStatement(std::size_t first) const;
    bool isRemovable(std::size_t first) const;

    using Add = std::function<void(std::size_t, std::size_t, const std::string&, const char*)>;
    void mutateSign(std::size_t i, const Add& add) const;
    void mutateNumber(std::size_t i, const Add& add) const;
    void mutateWord(std::size_t i, const Add& add) const;
    void mutateStatement(std::size_t i, const Add& add) const;
    void swapArguments(std::size_t i, const Add& add) const;

    std::string m_text;
    std::vector<Token> m_tokens;
};
