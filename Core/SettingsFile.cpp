#include <core-private/SettingsFile.h>

#include "RegularFile_p.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSaveFile>

namespace rivo::core
{

namespace
{

QString logLevelsKey() { return QStringLiteral("logLevels"); }
QString passengerTypeCodesOrderKey() { return QStringLiteral("passengerTypeCodesOrder"); }

QString typeName(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return QStringLiteral("a truth value");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a text");
    case QJsonValue::Array:
        return QStringLiteral("a list");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Null:
    case QJsonValue::Undefined: // absent: not read
        break;
    }
    return QStringLiteral("null");
}

/// "line:column" of a byte offset, both from 1, columns in characters.
QString position(const QByteArray& text, int offset)
{
    const QByteArray before = text.left(offset);
    const QByteArray line = before.mid(before.lastIndexOf('\n') + 1);
    return QStringLiteral("%1:%2")
        .arg(before.count('\n') + 1)
        .arg(QString::fromUtf8(line).size() + 1);
}

/// Stores the list of texts under @p key, or an empty one if there is no such key. Returns what is
/// wrong with the value, which is then not stored.
QString takeTexts(const QJsonObject& root, const QString& key, QStringList* texts)
{
    const QJsonValue value = root.value(key);
    if (!value.isUndefined() && !value.isArray())
        return QStringLiteral("/%1: expected a list of texts, found %2").arg(key, typeName(value));

    const QJsonArray elements = value.toArray();
    QStringList taken;
    for (const QJsonValue& element : elements) {
        if (!element.isString()) {
            return QStringLiteral("/%1/%2: expected a text, found %3")
                .arg(key)
                .arg(taken.size())
                .arg(typeName(element));
        }
        taken.append(element.toString());
    }
    *texts = taken;
    return {};
}

/// A full disk accepts a part first and reports the error when the rest is written.
bool writeAll(const QByteArray& text, QIODevice* device)
{
    qint64 written = 0;
    qint64 more = 0;
    do {
        more = device->write(text.constData() + written, text.size() - written);
        written += more;
    } while (more > 0 && written < text.size());
    return written == text.size();
}

} // namespace

/// What is on disk: the root object, empty for a missing file, or why there is none.
struct SettingsFile::Document
{
    QJsonObject root;
    QString problem;
};

QString SettingsFile::pathIn(const QString& basePath, const QString& subFolder)
{
    return QDir::cleanPath(QStringLiteral("%1/%2/settings.json").arg(basePath, subFolder));
}

SettingsFile::SettingsFile(const QString& path) : m_path(path) {}

SettingsFile::Document SettingsFile::load() const
{
    const RegularFile file = RegularFile::read(m_path);
    if (!file.problem.isEmpty())
        return {{}, QStringLiteral("%1: %2").arg(m_path, file.problem)};
    if (!file.exists)
        return {};

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.content, &error);
    if (error.error != QJsonParseError::NoError) {
        return {{},
                QStringLiteral("%1:%2: %3")
                    .arg(m_path, position(file.content, error.offset), error.errorString())};
    }
    if (!document.isObject())
        return {{}, QStringLiteral("%1:1:1: expected an object, found a list").arg(m_path)};
    return {document.object(), {}};
}

QStringList SettingsFile::read()
{
    m_unsaved = {};
    const Document document = load();
    if (!document.problem.isEmpty())
        return {document.problem};

    QStringList problems;
    const QString wrongs[] = {
        takeTexts(document.root, logLevelsKey(), &m_logLevels),
        takeTexts(document.root, passengerTypeCodesOrderKey(), &m_passengerTypeCodesOrder)};
    for (const QString& wrong : wrongs) {
        if (!wrong.isEmpty())
            problems.append(QStringLiteral("%1: %2").arg(m_path, wrong));
    }
    return problems;
}

void SettingsFile::setLogLevels(const QStringList& logLevels)
{
    m_logLevels = logLevels;
    m_unsaved.insert(logLevelsKey(), QJsonArray::fromStringList(logLevels));
}

void SettingsFile::setPassengerTypeCodesOrder(const QStringList& codes)
{
    m_passengerTypeCodesOrder = codes;
    m_unsaved.insert(passengerTypeCodesOrderKey(), QJsonArray::fromStringList(codes));
}

bool SettingsFile::save(QString* problem)
{
    const auto refuse = [problem](const QString& reason) {
        if (problem)
            *problem = reason;
        return false;
    };
    Document document = load();
    if (!document.problem.isEmpty())
        return refuse(document.problem);
    for (auto it = m_unsaved.constBegin(); it != m_unsaved.constEnd(); ++it)
        document.root.insert(it.key(), it.value());
    const QByteArray text = QJsonDocument(document.root).toJson();
    if (text.size() > RegularFile::MaximumSize) {
        return refuse(QStringLiteral("%1: would be larger than %2 bytes")
                          .arg(m_path)
                          .arg(RegularFile::MaximumSize));
    }
    // Qt loses a byte-order mark at the start of a text, and with it one key becomes another.
    if (QJsonDocument::fromJson(text).object() != document.root) {
        return refuse(QStringLiteral("%1: would not be read back as it is, such as a text that "
                                     "begins with a byte-order mark")
                          .arg(m_path));
    }

    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    // Unbuffered: commit() would put in place what a full disk has left of a buffer.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !writeAll(text, &file) ||
        !file.commit())
        return refuse(QStringLiteral("%1: cannot be written: %2").arg(m_path, file.errorString()));
    m_unsaved = {};
    return true;
}

} // namespace rivo::core
