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

#include "Source.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

namespace
{

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
