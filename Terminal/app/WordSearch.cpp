#include "WordSearch.h"

#include <algorithm>

namespace rivo::terminal
{

QString searchable(const QString& text)
{
    QString result;
    const QString parts = text.normalized(QString::NormalizationForm_KD).toUpper();
    for (const QChar& letter : parts) {
        if (!letter.isMark())
            result.append(letter);
    }
    return result;
}

QStringList searchableWords(const QString& text)
{
    QStringList words;
    QString word;
    const QString letters = searchable(text) + QLatin1Char(' ');
    for (const QChar& letter : letters) {
        if (letter.isLetterOrNumber()) {
            word.append(letter);
        } else if (!word.isEmpty()) {
            words.append(word);
            word.clear();
        }
    }
    return words;
}

bool hasWord(const QStringList& words, const QString& begin)
{
    return std::any_of(words.begin(), words.end(),
                       [&](const QString& word) { return word.startsWith(begin); });
}

QStringList nextLetters(const QStringList& words, const QString& begin)
{
    QStringList letters;
    for (const QString& word : words) {
        if (word.size() > begin.size() && word.startsWith(begin))
            letters.append(word.at(begin.size()));
    }
    std::sort(letters.begin(), letters.end());
    letters.erase(std::unique(letters.begin(), letters.end()), letters.end());
    return letters;
}

} // namespace rivo::terminal
