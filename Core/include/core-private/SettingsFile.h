#pragma once

#include <core/CoreExport.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace rivo::core
{

/// One settings.json: reads, judges and saves it.
///
/// The file holds a JSON object; both keys are optional lists of texts, other keys are ignored:
/// { "logLevels": ["log_fareproducts"], "passengerTypeCodesOrder": ["PT_ADULT", "PT_STUDENT"] }
class RIVO_CORE_EXPORT SettingsFile
{
public:
    /// The settings file of @p subFolder below @p basePath, whatever slashes the two carry.
    static QString pathIn(const QString& basePath, const QString& subFolder);

    /// Reads nothing yet: both values are empty.
    explicit SettingsFile(QString path);

    QString path() const { return m_path; }
    QStringList logLevels() const { return m_logLevels; }
    QStringList passengerTypeCodesOrder() const { return m_passengerTypeCodesOrder; }

    /// Takes over what the file holds. Returns the problems, each naming file, place and reason.
    /// A missing file or key means an empty value and is no problem; a value with a problem stays.
    QStringList read();

private:
    QString m_path;
    QStringList m_logLevels;
    QStringList m_passengerTypeCodesOrder;
};

} // namespace rivo::core
