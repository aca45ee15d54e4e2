// Small mutations of C++ sources, one at a time.
//
//   mutate list SEED FILE...   one line for each mutant: id, file, line, kind, before, after
//   mutate apply ID FILE       FILE with that one mutation, to standard output
//
// The list is in the order of the sources for the seed 0, and in an order that the seed decides
// otherwise.
//
// The id is a digest of the file's name, of the lines before and after: it stays when lines move.
// The text is read as tokens, not as C++: what the compiler rejects is no mutant.
// Comments, texts, preprocessor lines, assertions and log records are left alone.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace
{

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

bool isWordCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

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

std::string digest(const std::string& text)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

struct Listed
{
    std::string id;
    Mutant mutant;
};

std::vector<Listed> listed(const std::string& file, const Source& source)
{
    std::map<std::string, int> seen;
    std::vector<Listed> mutants;
    for (const Mutant& mutant : source.mutants()) {
        const std::string text =
            file + "\n" + source.shown(mutant, false) + "\n" + source.shown(mutant, true);
        const int occurrence = seen[text]++;
        mutants.push_back({digest(text + "\n" + std::to_string(occurrence)), mutant});
    }
    return mutants;
}

std::string read(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        std::cerr << "mutate: cannot read " << file << '\n';
        std::exit(2);
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

void list(const std::string& seed, const std::vector<std::string>& files)
{
    std::vector<std::pair<std::string, std::string>> lines; // by what orders them
    for (const std::string& file : files) {
        const Source source(read(file));
        for (const auto& [id, mutant] : listed(file, source)) {
            const std::string line = id + '\t' + file + '\t' +
                                     std::to_string(source.lineOf(mutant.begin)) + '\t' +
                                     mutant.kind + '\t' + source.shown(mutant, false) + '\t' +
                                     source.shown(mutant, true);
            lines.emplace_back(seed == "0" ? std::string() : digest(seed + "\n" + id), line);
        }
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& [order, line] : lines)
        std::cout << line << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() >= 3 && arguments[0] == "list") {
        list(arguments[1], {arguments.begin() + 2, arguments.end()});
        return 0;
    }
    if (arguments.size() == 3 && arguments[0] == "apply") {
        const Source source(read(arguments[2]));
        for (const auto& [id, mutant] : listed(arguments[2], source)) {
            if (id == arguments[1]) {
                std::cout << source.apply(mutant);
                return 0;
            }
        }
        std::cerr << "mutate: " << arguments[2] << " has no mutant " << arguments[1] << '\n';
        return 2;
    }
    std::cerr << "usage: mutate list SEED FILE... | mutate apply ID FILE\n";
    return 2;
}
