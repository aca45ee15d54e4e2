// The input is a settings.json. What is to be taken from it is stated here apart from the reader.

#include "Fuzzing.h"

#include <core-private/SettingsFile.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using rivo::core::SettingsFile;

namespace
{

const QStringList formerLevels{QStringLiteral("former")};
const QStringList formerCodes{QStringLiteral("PT_FORMER"), QString()};

/// The list of texts at @p key, or what was there before if the value is anything else.
QStringList expected(const QJsonObject& root, const char* key, const QStringList& before,
                     int* problems)
{
    const QJsonValue value = root.value(QLatin1String(key));
    if (value.isUndefined())
        return {};
    QStringList texts;
    bool isGood = value.isArray();
    const QJsonArray elements = value.toArray();
    for (const QJsonValue& element : elements) {
        isGood = isGood && element.isString();
        texts.append(element.toString());
    }
    *problems += isGood ? 0 : 1;
    return isGood ? texts : before;
}

/// Where the problems of a read of @p path must point to.
void checkProblems(const QStringList& problems, const QString& path, int count)
{
    fuzzing::require(problems.size() == count, "another number of problems");
    for (const QString& problem : problems)
        fuzzing::require(problem.startsWith(path + QLatin1Char(':')), "a problem without a place");
}

/// A value is replaced, all else in the file stays.
void checkSaving(SettingsFile& file, const QByteArray& content, const QJsonDocument& before)
{
    const QStringList levels{QStringLiteral("saved"), QStringLiteral("\u00fc\"\\\n")};
    file.setLogLevels(levels);
    QString problem;
    const bool isSaved = file.save(&problem);
    fuzzing::require(isSaved == problem.isEmpty(), "save() and its problem disagree");
    QFile stored(file.path());
    fuzzing::require(stored.open(QIODevice::ReadOnly), "the file is gone");
    const QByteArray after = stored.readAll();
    if (!before.isObject()) {
        fuzzing::require(!isSaved && after == content, "a file that cannot be parsed was written");
        return;
    }
    QJsonObject root = before.object();
    root.insert(QStringLiteral("logLevels"), QJsonArray::fromStringList(levels));
    if (QJsonDocument::fromJson(QJsonDocument(root).toJson()).object() != root) {
        fuzzing::require(!isSaved && after == content, "what cannot be read back was written");
        return;
    }
    fuzzing::require(isSaved, qUtf8Printable(problem));
    fuzzing::require(QJsonDocument::fromJson(after).object() == root, "another key has changed");
    SettingsFile again(file.path());
    again.read();
    fuzzing::require(again.logLevels() == levels, "what was saved is not read back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QString path = fuzzing::folder() + QStringLiteral("/settings.json");
    const QByteArray content = fuzzing::bytes(data, size);
    SettingsFile file(path);
    fuzzing::write(path, R"({"logLevels":["former"],"passengerTypeCodesOrder":["PT_FORMER",""]})");
    fuzzing::require(file.read().isEmpty() && file.logLevels() == formerLevels &&
                         file.passengerTypeCodesOrder() == formerCodes,
                     "the former settings");

    fuzzing::write(path, content);
    const QStringList problems = file.read();
    const QJsonDocument document = QJsonDocument::fromJson(content);
    if (!document.isObject()) {
        checkProblems(problems, path, 1);
        fuzzing::require(file.logLevels() == formerLevels &&
                             file.passengerTypeCodesOrder() == formerCodes,
                         "the last good values are lost");
    } else {
        int count = 0;
        const QJsonObject root = document.object();
        const QStringList levels = expected(root, "logLevels", formerLevels, &count);
        const QStringList codes = expected(root, "passengerTypeCodesOrder", formerCodes, &count);
        checkProblems(problems, path, count);
        fuzzing::require(file.logLevels() == levels, "logLevels");
        fuzzing::require(file.passengerTypeCodesOrder() == codes, "passengerTypeCodesOrder");
    }
    checkSaving(file, content, document);
    return 0;
}
