#include "DriverDesk.h"

#include <SalesDesk.h>

#include <algorithm>

namespace rivo::drivers
{

namespace
{

constexpr int freeAttempts = 2;
constexpr int mostDoublings = 6;
constexpr int longestPin = 64;

} // namespace

DriverDesk::DriverDesk(const QVector<Driver>& drivers, QObject* parent)
    : QObject(parent), m_drivers(drivers)
{
    m_clock.start();
    m_idle.setSingleShot(true);
    connect(&m_idle, &QTimer::timeout, this, &DriverDesk::lock);
}

void DriverDesk::control(sales::SalesDesk& desk)
{
    const auto follow = [this, &desk] {
        desk.setDriver(m_current.number, m_current.name);
        desk.setLocked(isLocked());
    };
    connect(this, &DriverDesk::changed, &desk, follow);
    follow();
}

bool DriverDesk::refuse(const QString& reason)
{
    emit refused(reason);
    return false;
}

const Driver* DriverDesk::find(const QString& number) const
{
    bool isNumber = false;
    const qint64 wanted = number.trimmed().toLongLong(&isNumber);
    const auto found =
        std::find_if(m_drivers.begin(), m_drivers.end(),
                     [wanted](const Driver& driver) { return driver.number == wanted; });
    return isNumber && found != m_drivers.end() ? &*found : nullptr;
}

qint64 DriverDesk::keyOf(const QString& number) const
{
    const Driver* const driver = find(number);
    return driver == nullptr ? 0 : driver->number;
}

qint64 DriverDesk::waitAfter(int wrong) const
{
    return wrong <= freeAttempts
               ? 0
               : qint64(m_firstWait) << std::min(wrong - freeAttempts - 1, mostDoublings);
}

int DriverDesk::secondsToWait(const QString& number) const
{
    const qint64 left = m_attempts.value(keyOf(number)).next - m_clock.elapsed();
    return left <= 0 ? 0 : static_cast<int>((left + 999) / 1000);
}

bool DriverDesk::signIn(const QString& number, const QString& pin)
{
    if (!isRequired())
        return refuse(tr("There are no drivers to sign in."));
    const int seconds = secondsToWait(number);
    if (seconds > 0)
        return refuse(tr("Too many wrong attempts. Wait %n second(s).", nullptr, seconds));
    const Driver* const driver = find(number);
    // An unknown number takes as long as a known one.
    const bool isRight =
        isPinOf(driver == nullptr ? m_drivers.first() : *driver, pin.left(longestPin));
    if (driver == nullptr || !isRight || pin.size() > longestPin) {
        Attempts& attempts = m_attempts[keyOf(number)];
        attempts.next = m_clock.elapsed() + waitAfter(++attempts.wrong);
        return refuse(tr("Number or PIN is wrong."));
    }
    m_attempts.remove(driver->number);
    m_current = *driver;
    m_isLocked = false;
    touch();
    emit changed();
    return true;
}

bool DriverDesk::unlock(const QString& pin)
{
    return isSignedIn() ? signIn(QString::number(m_current.number), pin)
                        : refuse(tr("No driver is signed in."));
}

void DriverDesk::lock()
{
    if (!isSignedIn() || m_isLocked)
        return;
    m_isLocked = true;
    m_idle.stop();
    emit changed();
}

void DriverDesk::signOut()
{
    if (!isSignedIn())
        return;
    m_current = Driver();
    m_isLocked = false;
    m_idle.stop();
    emit changed();
}

void DriverDesk::setIdleTime(int milliseconds)
{
    m_idle.setInterval(milliseconds);
    touch();
}

void DriverDesk::touch()
{
    m_touchedAt = m_clock.elapsed();
    if (m_idle.interval() > 0 && isSignedIn() && !m_isLocked)
        m_idle.start();
    else
        m_idle.stop();
}

} // namespace rivo::drivers
