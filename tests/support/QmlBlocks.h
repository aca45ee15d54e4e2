#pragma once

#include <QRegularExpression>
#include <QStringList>

/// The blocks of QML in a markdown text, each from the line after "```qml" to the line before
/// "```".
inline QStringList qmlBlocks(const QString& markdown)
{
    static const QRegularExpression block(QStringLiteral("^```qml\n(.*?)^```$"),
                                          QRegularExpression::MultilineOption |
                                              QRegularExpression::DotMatchesEverythingOption);
    QStringList blocks;
    auto matches = block.globalMatch(markdown);
    while (matches.hasNext())
        blocks.append(matches.next().captured(1));
    return blocks;
}
