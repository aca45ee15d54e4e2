#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace rivo::core
{

/// One settings.json: reads, judges and saves it.
///
/// The file holds a JSON object in UTF-8 of at most 1 MiB. Both keys are optional lists of texts;
/// other keys are left alone:
///
///     { "logLevels": ["log_fareproducts"], "passengerTypeCodesOrder": ["PT_ADULT", "PT_LFS"] }
class SettingsFile
{
public:
    /// The settings file of @p subFolder below @p basePath, whatever slashes the two carry.
    static QString pathIn(const QString& basePath, const QString& subFolder);

    /// Reads nothing yet: both values are empty.
    explicit SettingsFile(const QString& path);

    QString path() const { return m_path; }

    /// The names of the log levels that are switched on. Default: empty.
    QStringList logLevels() const { return m_logLevels; }
    /// The display order of passenger types as type-code texts. Default: empty.
    QStringList passengerTypeCodesOrder() const { return m_passengerTypeCodesOrder; }

    /// Takes over what the file holds and forgets what was set but not saved. Returns the problems,
    /// each naming file, place (line:column, or the JSON pointer of a key) and reason. A missing
    /// file or key means an empty value and is no problem; a value with a problem stays as it was.
    QStringList read();

    /// Replaces a value in memory; save() writes it.
    void setLogLevels(const QStringList& logLevels);
    void setPassengerTypeCodesOrder(const QStringList& codes);

    /// Writes the values that were set since the last read() into the file, atomically, creating
    /// its folder if needed. The file's other keys keep the values they have on disk now, numbers
    /// as doubles; keys are written in alphabetical order. Returns false, with the file untouched
    /// and the reason in @p problem, if that cannot be done, if what is there cannot be parsed or
    /// if not all of it could be read back.
    bool save(QString* problem = nullptr);

private:
    struct Document;
    Document load() const;

    QString m_path;
    QStringList m_logLevels;
    QStringList m_passengerTypeCodesOrder;
    QJsonObject m_unsaved;
};

} // namespace rivo::core
