#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace rivo::feed
{

/// One reason why a feed was not loaded.
struct FeedProblem
{
    QString file;     ///< path, as the caller gave it
    int line = 0;     ///< from 1; 0 = the file as a whole
    int column = 0;   ///< character of the line, from 1; 0 = not known
    QString pointer;  ///< JSON pointer (RFC 6901); empty in CSV files and for a whole document
    QString field;    ///< JSON key or CSV column; empty when no single field is meant
    QString value;    ///< what was found, fit for display: texts quoted, cut and escaped
    QString expected; ///< what should have been there

    /// What toString() has behind the place.
    QString withoutPlace() const;
    /// One line: `coast.json:41: /products/3/price: "abc", expected a number from 0 to 1000000`.
    QString toString() const;
};

/// A message about something that was loaded and may be a mistake.
struct FeedNotice
{
    QString file;
    int line = 0; ///< from 1; 0 = the file as a whole
    QString message;

    /// One line: `lakeside/rider_categories.txt:4: ...`.
    QString toString() const;
};

/// The problems and notices of a feed; keeps the first ones and counts the others.
class FeedReport
{
public:
    static constexpr int maxKept = 1'000;

    void add(FeedProblem problem);
    /// A problem of a whole file (line 0) or of a line of it.
    void add(const QString& file, int line, const QString& value, const QString& expected);
    void add(FeedNotice notice);

    bool hasProblems() const { return !m_problems.isEmpty(); }
    const QVector<FeedProblem>& problems() const { return m_problems; }
    int furtherProblems() const { return m_furtherProblems; } ///< found but not kept
    const QVector<FeedNotice>& notices() const { return m_notices; }
    int furtherNotices() const { return m_furtherNotices; } ///< found but not kept

    /// Puts the problems from the one of number `first` on into the order of their lines.
    void orderByLine(int first);

    /// The kept problems, to complete them (lines are known late) or to order them.
    QVector<FeedProblem>& keptProblems() { return m_problems; }

private:
    QVector<FeedProblem> m_problems;
    QVector<FeedNotice> m_notices;
    int m_furtherProblems = 0;
    int m_furtherNotices = 0;
};

/// `text` fit for a terminal: control and direction-changing characters, line separators and
/// halves of surrogate pairs as \uXXXX.
QString printable(const QString& text);

/// printable(text) in quotes, cut to 80 characters.
QString quoted(const QString& text);

} // namespace rivo::feed
