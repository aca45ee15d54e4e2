#include "Source.h"

#include <algorithm>
#include <map>

// Which mistakes are tried, token by token.

void Source::mutateSign(std::size_t i, const Add& add) const
{
    static const std::map<std::string, std::vector<std::string>> comparisons{
        {"<", {"<="}}, {"<=", {"<"}}, {">", {">="}}, {">=", {">"}}, {"==", {"!="}}, {"!=", {"=="}}};
    static const std::map<std::string, std::string> logic{{"&&", "||"}, {"||", "&&"}};
    static const std::map<std::string, std::string> arithmetic{
        {"+", "-"}, {"-", "+"}, {"*", "/"}, {"/", "*"}, {"%", "*"}, {"+=", "-="}, {"-=", "+="}};
    const std::string& text = m_tokens[i].text;
    if (isSpaced(i)) {
        if (const auto found = comparisons.find(text); found != comparisons.end()) {
            for (const std::string& other : found->second)
                add(i, i, other, "comparison");
        }
        if (const auto found = logic.find(text); found != logic.end())
            add(i, i, found->second, "logic");
        if (const auto found = arithmetic.find(text);
            found != arithmetic.end() && isOperandBefore(i))
            add(i, i, found->second, "sign");
    }
    if (text == "++" || text == "--")
        add(i, i, text == "++" ? "--" : "++", "sign");
    if (text == "-" && !isOperandBefore(i))
        add(i, i, "", "sign");
    if (text == "!")
        add(i, i, "", "negation");
}

void Source::mutateNumber(std::size_t i, const Add& add) const
{
    const std::string& text = m_tokens[i].text;
    add(i, i, "(" + text + " + 1)", "constant");
    if (text == "1")
        add(i, i, "0", "constant");
}

void Source::mutateWord(std::size_t i, const Add& add) const
{
    const std::string& text = m_tokens[i].text;
    if (text == "true" || text == "false")
        add(i, i, text == "true" ? "false" : "true", "constant");
    if ((text == "if" || text == "while") && is(i + 1, "(")) {
        const std::size_t close = closing(i + 1);
        // A declaration in the condition cannot be negated.
        if (close < m_tokens.size() && textBetween(i + 1, close).find(" = ") == std::string::npos &&
            !is(i + 2, "!"))
            add(i + 1, close, "(!" + textBetween(i + 1, close) + ")", "negation");
    }
    if (text == "return") {
        const std::size_t end = endOfStatement(i);
        if (end < m_tokens.size() && end > i + 1 && !is(i + 1, "{") && !is(i + 1, "nullptr") &&
            !is(i + 1, "true") && !is(i + 1, "false"))
            add(i + 1, end - 1, "{}", "return value");
    }
    // A row of a role table gets the number of the row after it.
    if (text.size() > 4 && text.compare(text.size() - 4, 4, "Role") == 0 && is(i + 1, ",") &&
        i > 2 && is(i - 1, "::") && is(i - 3, "{") && is(i + 4, ",") && is(i + 5, "{") &&
        isWord(i + 8))
        add(i, i, m_tokens[i + 8].text, "role");
}

void Source::mutateStatement(std::size_t i, const Add& add) const
{
    const bool isLabelled = i > 2 && is(i - 1, ":") && (is(i - 3, "case") || is(i - 2, "default"));
    const bool isNext = i > 0 && (is(i - 1, ";") || is(i - 1, "{") || is(i - 1, "}") ||
                                  is(i - 1, ")") || is(i - 1, "else"));
    if (!(isLabelled || isNext) || !isRemovable(i))
        return;
    const std::size_t end = endOfStatement(i);
    if (end < m_tokens.size())
        add(i, end, ";", "removed statement");
}

/// Exchanges neighbours in an argument list.
void Source::swapArguments(std::size_t i, const Add& add) const
{
    if (!is(i, "(") || i == 0 || !isWord(i - 1))
        return;
    const std::size_t close = closing(i);
    if (close >= m_tokens.size())
        return;
    std::vector<std::pair<std::size_t, std::size_t>> arguments;
    std::size_t first = i + 1;
    for (std::size_t k = i + 1; k <= close; ++k) {
        if (k < close && (is(k, "(") || is(k, "[") || is(k, "{"))) {
            k = closing(k);
        } else if (k == close || is(k, ",")) {
            if (k == first)
                return;
            arguments.emplace_back(first, k - 1);
            first = k + 1;
        }
    }
    for (std::size_t k = 0; k + 1 < arguments.size(); ++k) {
        const auto [a, b] = arguments[k];
        const auto [c, d] = arguments[k + 1];
        const std::string left = textBetween(a, b);
        const std::string right = textBetween(c, d);
        // Parameters of a definition would no more be those of its declaration.
        const auto isParameter = [this](std::size_t first, std::size_t last) {
            return is(first, "const") || (last > first && isWord(last) &&
                                          (isWord(last - 1) || is(last - 1, "&") ||
                                           is(last - 1, "*") || is(last - 1, ">")));
        };
        if (isParameter(a, b) || isParameter(c, d))
            continue;
        // Ranges the wrong way round crash at once: nothing to learn from.
        if (left != right && left.find("begin()") == std::string::npos)
            add(a, d, right + ", " + left, "swapped argument");
    }
}

std::vector<Mutant> Source::mutants() const
{
    std::vector<Mutant> mutants;
    const std::set<std::size_t> quiet = quietTokens();
    const Add add = [&](std::size_t first, std::size_t last, const std::string& replacement,
                        const char* kind) {
        mutants.push_back({m_tokens[first].begin, m_tokens[last].end, replacement, kind});
    };
    for (std::size_t i = 0; i < m_tokens.size(); ++i) {
        if (quiet.count(i) != 0)
            continue;
        switch (m_tokens[i].kind) {
        case Kind::Sign:
            mutateSign(i, add);
            swapArguments(i, add);
            break;
        case Kind::Number:
            mutateNumber(i, add);
            break;
        case Kind::Word:
            mutateWord(i, add);
            break;
        case Kind::Text:
            break;
        }
        mutateStatement(i, add);
    }
    return mutants;
}
