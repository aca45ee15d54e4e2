#pragma once

#include <QByteArray>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QtTest>

/// GTFS feeds in short notation, one case after another:
///
///     == name of the case
///     stops.txt: A,Market / B,Station       these records below the header of the first case
///     areas.txt| area_id / 10               the whole file; \xNN is a byte
///     -shapes.txt                           without this file
///     > stops.txt:3: ...                    what is expected; the test states how
///
/// The first case is the base of the others; lines that begin with # are comments.
struct GtfsCase
{
    using Files = QMap<QString, QByteArray>;

    QString name;
    Files files;
    QStringList expected;
};

class GtfsCases
{
public:
    static QVector<GtfsCase> read(const QString& path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", qPrintable(path));
        QVector<GtfsCase> cases;
        const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
        for (const QString& line : lines) {
            if (line.startsWith("== "))
                cases.append(
                    {line.mid(3), cases.isEmpty() ? GtfsCase::Files() : cases[0].files, {}});
            else if (!line.isEmpty() && !line.startsWith('#'))
                addLine(line, cases.first().files, cases.last());
        }
        return cases;
    }

private:
    static void addLine(const QString& line, const GtfsCase::Files& base, GtfsCase& to)
    {
        static const QRegularExpression file("^([A-Za-z_-]+\\.(?:txt|TXT))([:|]) ?(.*)$");
        const QRegularExpressionMatch match = file.match(line);
        if (line.startsWith('-') && line.endsWith(".txt")) {
            to.files.remove(line.mid(1));
        } else if (!match.hasMatch()) {
            to.expected.append(line);
        } else {
            const QString name = match.captured(1);
            const QByteArray header = base.value(name).left(base.value(name).indexOf('\n') + 1);
            QByteArray rows = bytes(match.captured(3).replace(" / ", "\n"));
            if (!rows.isEmpty() && !rows.endsWith('\n'))
                rows += '\n';
            to.files.insert(name, match.captured(2) == ":" ? header + rows : rows);
        }
    }

    static QByteArray bytes(const QString& text)
    {
        QByteArray utf8 = text.toUtf8();
        for (int at = utf8.indexOf("\\x"); at >= 0; at = utf8.indexOf("\\x", at + 1))
            utf8.replace(at, 4, QByteArray::fromHex(utf8.mid(at + 2, 2)));
        return utf8;
    }
};
