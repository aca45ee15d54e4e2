// The search for tiles by letters.

#include "TileDesk.h"

#include "WordSearch.h"

#include <PassengerTypeItem.h>

#include <algorithm>
#include <iterator>

namespace rivo::terminal
{

void TileDesk::setSearching(bool isSearching)
{
    if (m_isSearching == isSearching)
        return;
    m_isSearching = isSearching;
    m_search.clear();
    emit searchChanged();
    show();
}

void TileDesk::setSearch(const QString& text)
{
    if (!m_isSearching || m_search == text)
        return;
    m_search = text;
    emit searchChanged();
    show();
}

QStringList TileDesk::wordsOf(int row) const
{
    const PassengerTypeItem& tile = *tileAt(row);
    QStringList all;
    for (const QString& text : {tile.description(), tile.fareProductName(), m_texts.at(row).zones,
                                m_texts.at(row).mark}) {
        QStringList& words = m_words[text];
        if (words.isEmpty())
            words = searchableWords(text);
        all += words;
    }
    return all;
}

QVector<int> TileDesk::found() const
{
    const QString begin = searchable(m_search);
    QVector<int> rows;
    std::copy_if(m_tiles.begin(), m_tiles.end(), std::back_inserter(rows),
                 [&](int row) { return begin.isEmpty() || hasWord(wordsOf(row), begin); });
    return rows;
}

QStringList TileDesk::letters() const
{
    if (!m_isSearching)
        return {};
    QStringList words;
    for (const int row : m_shown)
        words += wordsOf(row);
    return nextLetters(words, searchable(m_search));
}

} // namespace rivo::terminal
