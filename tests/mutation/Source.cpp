#include "Source.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>

std::size_t Source::endOfPreprocessorLine(std::size_t at) const
{
    while (at < m_text.size() && (m_text[at] != '\n' || m_text[at - 1] == '\\'))
        ++at;
    return at;
}

/// @p at is a quotation mark, or the R of a raw text.
std::size_t Source::endOfText(std::size_t at) const
{
    if (m_text[at] == 'R') {
        const std::size_t bracket = m_text.find('(', at);
        const std::string end = ")" + m_text.substr(at + 2, bracket - at - 2) + "\"";
        return m_text.find(end, bracket) + end.size();
    }
    const char quote = m_text[at];
    for (++at; at < m_text.size() && m_text[at] != quote; ++at) {
        if (m_text[at] == '\\')
            ++at;
    }
    return at + 1;
}

void Source::tokenize()
{
    static const std::vector<std::string> signs{"<<=", ">>=", "->", "::", "++", "--",
                                                "<=",  ">=",  "==", "!=", "&&", "||",
                                                "+=",  "-=",  "*=", "/=", "<<"};
    bool isLineStart = true;
    for (std::size_t at = 0; at < m_text.size();) {
        const char c = m_text[at];
        if (c == '\n' || std::isspace(static_cast<unsigned char>(c)) != 0) {
            isLineStart = isLineStart || c == '\n';
            ++at;
            continue;
        }
        if (c == '#' && isLineStart) {
            at = endOfPreprocessorLine(at);
            continue;
        }
        isLineStart = false;
        if (m_text.compare(at, 2, "//") == 0) {
            at = std::min(m_text.find('\n', at), m_text.size());
            continue;
        }
        if (m_text.compare(at, 2, "/*") == 0) {
            at = m_text.find("*/", at) + 2;
            continue;
        }
        Kind kind = Kind::Sign;
        std::size_t end = at + 1;
        if (c == '"' || c == '\'' || m_text.compare(at, 2, "R\"") == 0) {
            kind = Kind::Text;
            end = endOfText(at);
        } else if (isWordCharacter(c)) {
            const bool isNumber = std::isdigit(static_cast<unsigned char>(c)) != 0;
            kind = isNumber ? Kind::Number : Kind::Word;
            while (end < m_text.size() &&
                   (isWordCharacter(m_text[end]) || (isNumber && m_text[end] == '.')))
                ++end;
        } else {
            for (const std::string& sign : signs) {
                if (m_text.compare(at, sign.size(), sign) == 0) {
                    end = at + sign.size();
                    break;
                }
            }
        }
        m_tokens.push_back({kind, at, end, m_text.substr(at, end - at)});
        at = end;
    }
}

int Source::lineOf(std::size_t offset) const
{
    int line = 1;
    for (std::size_t at = 0; at < offset; ++at)
        line += m_text[at] == '\n' ? 1 : 0;
    return line;
}

std::string Source::shown(const Mutant& mutant, bool after) const
{
    const std::size_t lineStart = m_text.rfind('\n', mutant.begin);
    const std::size_t begin = lineStart == std::string::npos ? 0 : lineStart + 1;
    const std::size_t end = std::min(m_text.find('\n', mutant.end - 1), m_text.size());
    const std::string middle =
        after ? mutant.replacement : m_text.substr(mutant.begin, mutant.end - mutant.begin);
    std::istringstream words(m_text.substr(begin, mutant.begin - begin) + middle +
                             m_text.substr(mutant.end, end - mutant.end));
    std::string line;
    for (std::string word; words >> word;)
        line += (line.empty() ? "" : " ") + word;
    return line;
}

/// As clang-format writes a comparison, unlike the brackets of a template.
bool Source::isSpaced(std::size_t i) const
{
    const Token& token = m_tokens[i];
    return token.begin > 0 &&
           std::isspace(static_cast<unsigned char>(m_text[token.begin - 1])) != 0 &&
           std::isspace(static_cast<unsigned char>(m_text[token.end])) != 0;
}

bool Source::isOperandBefore(std::size_t i) const
{
    return i > 0 && (m_tokens[i - 1].kind != Kind::Sign || is(i - 1, ")") || is(i - 1, "]")) &&
           !is(i - 1, "return") && !is(i - 1, "case");
}

std::size_t Source::closing(std::size_t open) const
{
    int depth = 0;
    for (std::size_t i = open; i < m_tokens.size(); ++i) {
        if (is(i, "(") || is(i, "[") || is(i, "{"))
            ++depth;
        else if (is(i, ")") || is(i, "]") || is(i, "}"))
            --depth;
        if (depth == 0)
            return i;
    }
    return m_tokens.size();
}

/// Of log records, assertions, attributes and the counts that only a debugger reads.
std::set<std::size_t> Source::quietTokens() const
{
    static const std::set<std::string> quiet{
        "LOG",   "Q_ASSERT",  "Q_UNUSED",   "static_assert", "instanceCount", "include",
        "using", "namespace", "Q_PROPERTY", "template",      "__attribute__"};
    std::set<std::size_t> tokens;
    for (std::size_t i = 0; i < m_tokens.size(); ++i) {
        if (!isWord(i) || quiet.count(m_tokens[i].text) == 0)
            continue;
        std::size_t first = i;
        if (first > 0 && (is(first - 1, "++") || is(first - 1, "int")))
            --first;
        for (std::size_t k = first; k < m_tokens.size(); ++k) {
            tokens.insert(k);
            if (is(k, ";") || is(k, "{") || is(k, "}"))
                break;
        }
    }
    return tokens;
}

/// The semicolon of the statement that begins here; the number of tokens if it is none.
std::size_t Source::endOfStatement(std::size_t first) const
{
    for (std::size_t i = first; i < m_tokens.size(); ++i) {
        if (is(i, ";"))
            return i;
        if (is(i, "(") || is(i, "[") || is(i, "{"))
            i = closing(i);
        else if (is(i, "}") || is(i, ":") || is(i, ")")) // of a loop, not of a statement
            break;
    }
    return m_tokens.size();
}

/// A call, an assignment or an emit, not a declaration.
bool Source::isRemovable(std::size_t first) const
{
    static const std::set<std::string> keywords{
        "return",  "if",        "for",    "while",    "switch",  "case",   "default",
        "const",   "static",    "auto",   "class",    "struct",  "enum",   "public",
        "private", "constexpr", "friend", "explicit", "virtual", "extern", "inline",
        "signals", "else",      "do",     "typename"};
    if (is(first, "emit") || is(first, "delete") || is(first, "break") || is(first, "continue") ||
        is(first, "++") || is(first, "--"))
        return true;
    if (!isWord(first) || keywords.count(m_tokens[first].text) != 0)
        return false;
    std::size_t i = first + 1;
    while (i < m_tokens.size()) {
        if (is(i, "::") || is(i, ".") || is(i, "->"))
            i += 2;
        else if (is(i, "["))
            i = closing(i) + 1;
        else
            break;
    }
    static const std::set<std::string> actions{"(", "=", "+=", "-=", "++", "--", "<<", "*="};
    return i < m_tokens.size() && actions.count(m_tokens[i].text) != 0;
}
