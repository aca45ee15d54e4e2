#include "DriversFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <cmath>

namespace rivo::drivers
{

namespace
{

constexpr qint64 largestFile = 4 * 1024 * 1024;
constexpr double largestNumber = 999999999;
constexpr int longestName = 100;
/// Fewer are guessed too fast; more keep a driver waiting for minutes.
constexpr double fewestIterations = 10000;
constexpr double mostIterations = 10000000;
constexpr int shortestSalt = 8;
constexpr int longestSalt = 64;
constexpr int hashSize = 32;

std::optional<double> wholeNumber(const QJsonValue& value, double least, double most)
{
    const double number = value.toDouble(-1.0);
    const bool isWhole = number == std::floor(number) && number >= least && number <= most;
    return isWhole ? std::make_optional(number) : std::nullopt;
}

/// The bytes that hexadecimal digits stand for; empty if there are other characters.
QByteArray bytesOf(const QJsonValue& value)
{
    const QByteArray text = value.toString().toLatin1().toLower();
    const QByteArray bytes = QByteArray::fromHex(text);
    return bytes.toHex() == text ? bytes : QByteArray();
}

/// What is wrong with an entry; sets `driver` if nothing is.
QString readDriver(const QJsonObject& entry, Driver& driver)
{
    static const QStringList keys{QStringLiteral("number"), QStringLiteral("name"),
                                  QStringLiteral("iterations"), QStringLiteral("salt"),
                                  QStringLiteral("hash")};
    const QStringList given = entry.keys();
    const auto unknown = std::find_if(given.begin(), given.end(),
                                      [](const QString& key) { return !keys.contains(key); });
    if (unknown != given.end())
        return QStringLiteral("unknown key \"%1\"").arg(*unknown);
    const auto number = wholeNumber(entry.value(keys.at(0)), 1.0, largestNumber);
    const auto iterations = wholeNumber(entry.value(keys.at(2)), fewestIterations, mostIterations);
    driver.name = entry.value(keys.at(1)).toString().simplified();
    driver.salt = bytesOf(entry.value(keys.at(3)));
    driver.hash = bytesOf(entry.value(keys.at(4)));
    if (!number)
        return QStringLiteral("\"number\" is a whole number from 1 to 999999999");
    if (driver.name.isEmpty() || driver.name.size() > longestName)
        return QStringLiteral("\"name\" is a text of 1 to 100 letters");
    if (!iterations)
        return QStringLiteral("\"iterations\" is a whole number from 10000 to 10000000");
    if (driver.salt.size() < shortestSalt || driver.salt.size() > longestSalt)
        return QStringLiteral("\"salt\" is 8 to 64 bytes in hexadecimal digits");
    if (driver.hash.size() != hashSize)
        return QStringLiteral("\"hash\" is 32 bytes in hexadecimal digits");
    driver.number = static_cast<qint64>(*number);
    driver.iterations = static_cast<int>(*iterations);
    return {};
}

/// The entries of a document; a problem if it is none.
QString readEntries(const QByteArray& content, QJsonArray& entries)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError)
        return QStringLiteral("at byte %1: %2").arg(error.offset).arg(error.errorString());
    const QJsonObject whole = document.object();
    const auto key = QStringLiteral("drivers");
    if (whole.keys() != QStringList(key) || !whole.value(key).isArray())
        return QStringLiteral("expected {\"drivers\": [...]}");
    entries = whole.value(key).toArray();
    return entries.isEmpty() ? QStringLiteral("there are no drivers") : QString();
}

QByteArray digestOf(const QString& pin, const Driver& driver)
{
    const QByteArray text = pin.toUtf8();
    QByteArray digest(hashSize, '\0');
    const bool isDone =
        PKCS5_PBKDF2_HMAC(text.constData(), text.size(),
                          reinterpret_cast<const unsigned char*>(driver.salt.constData()),
                          driver.salt.size(), driver.iterations, EVP_sha256(), digest.size(),
                          reinterpret_cast<unsigned char*>(digest.data())) == 1;
    return isDone ? digest : QByteArray();
}

} // namespace

DriversResult readDrivers(const QString& file)
{
    DriversResult result;
    const auto problem = [&](const QString& what) {
        result.problems.append(QStringLiteral("%1: %2").arg(file, what));
    };
    QFile content(file);
    if (!content.open(QIODevice::ReadOnly)) {
        problem(content.errorString());
        return result;
    }
    const QByteArray bytes = content.read(largestFile + 1);
    QJsonArray entries;
    const QString whole = bytes.size() > largestFile ? QStringLiteral("larger than 4 MiB")
                                                     : readEntries(bytes, entries);
    if (!whole.isEmpty())
        problem(whole);
    QVector<Driver> drivers;
    QSet<qint64> numbers;
    for (int at = 0; at < entries.size(); ++at) {
        Driver driver;
        QString wrong = readDriver(entries.at(at).toObject(), driver);
        if (wrong.isEmpty() && numbers.contains(driver.number))
            wrong = QStringLiteral("number %1 is there twice").arg(driver.number);
        if (!wrong.isEmpty())
            problem(QStringLiteral("driver %1: %2").arg(at + 1).arg(wrong));
        numbers.insert(driver.number);
        drivers.append(driver);
    }
    if (result.problems.isEmpty())
        result.drivers = drivers;
    return result;
}

bool isPinOf(const Driver& driver, const QString& pin)
{
    const QByteArray digest = digestOf(pin, driver);
    return digest.size() == driver.hash.size() &&
           CRYPTO_memcmp(digest.constData(), driver.hash.constData(),
                         static_cast<std::size_t>(digest.size())) == 0;
}

} // namespace rivo::drivers
