#include "LoggerConfiguration_p.h"

#include "RegularFile_p.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <sys/stat.h>

namespace rivo::core
{

namespace
{

QString flagProblem(const QString& value)
{
    static const QStringList words{QStringLiteral("true"),  QStringLiteral("TRUE"),
                                   QStringLiteral("1"),     QStringLiteral("false"),
                                   QStringLiteral("FALSE"), QStringLiteral("0")};
    return words.contains(value) ? QString() : QStringLiteral("expected true or false");
}

QString numberProblem(const QString& value, uint least, uint most)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,10}$"));
    bool isInRange = digits.match(value).hasMatch();
    const uint number = isInRange ? value.toUInt(&isInRange) : 0;
    if (isInRange && number >= least && number <= most)
        return {};
    return QStringLiteral("expected a number from %1 to %2").arg(least).arg(most);
}

/// How long a date can become that is written as in %datetime{...}.
int longestDate(const QByteArray& format)
{
    int length = 0;
    for (int i = 0; i < format.size(); ++i) {
        if (format.at(i) != '%' || ++i == format.size()) {
            ++length;
            continue;
        }
        switch (format.at(i)) {
        case 'A': // Wednesday
        case 'B': // September
            length += 9;
            break;
        case 'g': // fraction of a second
        case 'z':
            length += 6;
            break;
        default:
            length += 4;
        }
    }
    return length;
}

/// The logger writes a date into 30 bytes and looks for its end behind them if it fills them.
QString dateProblem(const QString& value)
{
    static const QRegularExpression date(QStringLiteral(R"(%datetime\{([^}]*))"));
    QRegularExpressionMatchIterator dates = date.globalMatch(value);
    while (dates.hasNext()) {
        if (longestDate(dates.next().captured(1).toUtf8()) >= 30)
            return QStringLiteral("the date in %datetime{...} can exceed 29 characters");
    }
    return {};
}

/// Opening a FIFO for writing would wait for a reader, so only files and devices will do.
bool isWritableFile(const QString& path)
{
    struct stat status = {};
    const bool isFile = ::stat(QFile::encodeName(path).constData(), &status) == 0 &&
                        (S_ISREG(status.st_mode) || S_ISCHR(status.st_mode));
    if (!isFile)
        return false;
    return QFileInfo(path).isWritable();
}

QString fileNameProblem(const QString& value)
{
    static const QString timeStamp = QStringLiteral("%datetime");
    if (!QDir::isAbsolutePath(value))
        return QStringLiteral("expected an absolute path");
    // The logger reads out of bounds while it looks for a time stamp behind an escaped one.
    if (value.contains(QLatin1Char('%') + timeStamp))
        return QStringLiteral("%datetime must not be escaped");
    QString dateTrouble = dateProblem(value);
    if (!dateTrouble.isEmpty())
        return dateTrouble;

    const auto stampAt = value.indexOf(timeStamp);
    const QString folder = value.left(value.lastIndexOf(QLatin1Char('/'), stampAt) + 1);
    if (!QDir().mkpath(folder))
        return QStringLiteral("cannot create the folder %1").arg(folder);
    const bool hasFixedName = stampAt < 0 && QFileInfo::exists(value);
    if (hasFixedName ? !isWritableFile(value) : !QFileInfo(folder).isWritable())
        return QStringLiteral("cannot write there");
    return {};
}

QString valueProblem(el::ConfigurationType key, const QString& value)
{
    if (value.isEmpty())
        return QStringLiteral("has no value");
    switch (key) {
    case el::ConfigurationType::Enabled:
    case el::ConfigurationType::ToFile:
    case el::ConfigurationType::ToStandardOutput:
    case el::ConfigurationType::PerformanceTracking:
        return flagProblem(value);
    case el::ConfigurationType::SubsecondPrecision: // also the old name MILLISECONDS_WIDTH
        return numberProblem(value, 1, 6);
    case el::ConfigurationType::MaxLogFileSize:
    case el::ConfigurationType::LogFlushThreshold:
        return numberProblem(value, 0, 0x7fffffff);
    case el::ConfigurationType::Filename:
        return fileNameProblem(value);
    case el::ConfigurationType::Format:
        return dateProblem(value);
    case el::ConfigurationType::Unknown:
        break;
    }
    return QStringLiteral("is not a known key");
}

/// Reads a configuration line by line.
///
/// The logger's own parser is not used: it reports only the last line, writes its complaints to
/// standard error, and takes a half-read configuration for a good one.
class Parser
{
public:
    explicit Parser(el::Configurations* configuration) : m_configuration(configuration) {}

    /// Takes one line over. Returns what is wrong with it.
    QString take(const QString& line)
    {
        static const QRegularExpression blank(QStringLiteral(R"(^\s*(##.*)?$)"));
        static const QRegularExpression section(QStringLiteral(R"(^\s*\*\s*(\w+)\s*:\s*(##.*)?$)"));
        static const QRegularExpression setting(QStringLiteral(
            R"re(^\s*(\w+)\s*=\s*(?:"(?<quoted>[^"]*)"|(?<bare>[^"]*?))\s*(##.*)?$)re"));

        if (blank.match(line).hasMatch())
            return {};
        const QRegularExpressionMatch sectionMatch = section.match(line);
        if (sectionMatch.hasMatch())
            return openSection(sectionMatch.captured(1));
        const QRegularExpressionMatch settingMatch = setting.match(line);
        if (settingMatch.hasMatch()) {
            return set(settingMatch.captured(1), settingMatch.captured(QStringLiteral("quoted")) +
                                                     settingMatch.captured(QStringLiteral("bare")));
        }
        return QStringLiteral("expected \"* LEVEL:\", \"KEY = value\" or \"## comment\"");
    }

private:
    QString openSection(const QString& name)
    {
        m_level = el::LevelHelper::convertFromString(qUtf8Printable(name.toUpper()));
        if (m_level == el::Level::Unknown)
            return QStringLiteral("%1 is not a level").arg(name);
        return {};
    }

    QString set(const QString& name, const QString& value)
    {
        if (m_level == el::Level::Unknown)
            return QStringLiteral("%1 stands before the first \"* LEVEL:\"").arg(name);
        const el::ConfigurationType key =
            el::ConfigurationTypeHelper::convertFromString(qUtf8Printable(name));
        const QString problem = valueProblem(key, value);
        if (!problem.isEmpty())
            return QStringLiteral("%1: %2").arg(name, problem);
        m_configuration->set(m_level, key, value.toStdString());
        return {};
    }

    el::Configurations* m_configuration;
    el::Level m_level = el::Level::Unknown;
};

} // namespace

el::Configurations defaultLoggerConfiguration()
{
    el::Configurations configuration;
    configuration.setToDefault();
    configuration.setGlobally(el::ConfigurationType::ToFile, "false");
    configuration.setGlobally(el::ConfigurationType::Format,
                              "%datetime{%Y-%M-%d %H:%m:%s.%g} %level %loc %msg");
    return configuration;
}

QString applyLoggerConfiguration(const QString& path)
{
    const RegularFile file = RegularFile::read(path);
    if (!file.problem.isEmpty())
        return QStringLiteral("%1: %2").arg(path, file.problem);
    if (!file.exists)
        return {};

    el::Configurations configuration = defaultLoggerConfiguration();
    Parser parser(&configuration);
    int lineNumber = 0;
    const QStringList lines = QString::fromUtf8(file.content).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        ++lineNumber;
        const QString problem = parser.take(line);
        if (!problem.isEmpty())
            return QStringLiteral("%1:%2: %3").arg(path).arg(lineNumber).arg(problem);
    }
    el::Loggers::setDefaultConfigurations(configuration, true);
    return {};
}

} // namespace rivo::core
