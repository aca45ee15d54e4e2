#pragma once

#include <QString>
#include <QStringList>

namespace rivo::terminal
{

/// Capital letters without accents: what a search compares.
QString searchable(const QString& text);

/// The searchable words of a text: what stands between blanks and signs.
QStringList searchableWords(const QString& text);

/// Whether one of `words` begins with `begin`, which is searchable.
bool hasWord(const QStringList& words, const QString& begin);

/// The letters that follow `begin` in words that begin with it; sorted, each once.
QStringList nextLetters(const QStringList& words, const QString& begin);

} // namespace rivo::terminal
