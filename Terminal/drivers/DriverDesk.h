#pragma once

#include "DriversFile.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

namespace rivo::sales
{
class SalesDesk;
}

namespace rivo::drivers
{

/// Who drives. Without drivers there is no sign-in, and the driver is number 0. Refused calls
/// return false and emit refused() with the reason in words.
///
/// Three wrong PINs in a row for a number are followed by a wait, which doubles with each further
/// one. The wait does not hang on the clock of the day.
class DriverDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool required READ isRequired CONSTANT)
    Q_PROPERTY(bool signedIn READ isSignedIn NOTIFY changed)
    Q_PROPERTY(bool locked READ isLocked NOTIFY changed)
    Q_PROPERTY(double number READ number NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)

public:
    explicit DriverDesk(const QVector<Driver>& drivers, QObject* parent = nullptr);

    /// The desk that records who sells, and is locked while no driver is signed in or the terminal
    /// is locked. Its basket stays. `desk` lives no longer than this.
    void control(sales::SalesDesk& desk);

    bool isRequired() const { return !m_drivers.isEmpty(); }
    bool isSignedIn() const { return m_current.number != 0; }
    /// Whether a PIN is needed before anything else: no driver is signed in, or lock() was called.
    bool isLocked() const { return isRequired() && (m_isLocked || !isSignedIn()); }
    double number() const { return static_cast<double>(m_current.number); } ///< 0 = none
    QString name() const { return m_current.name; }

    /// Signs a driver in, also in the place of another one. Refused while the number has to wait.
    Q_INVOKABLE bool signIn(const QString& number, const QString& pin);

    /// The same for the driver who is signed in.
    Q_INVOKABLE bool unlock(const QString& pin);

    /// Asks for the PIN before anything else; without effect without a driver.
    Q_INVOKABLE void lock();
    Q_INVOKABLE void signOut();

    /// Locks after so many milliseconds without touch(); 0, as at the start, never.
    void setIdleTime(int milliseconds);
    Q_INVOKABLE void touch(); ///< the driver is there
    /// Milliseconds since the last touch(), at first since the start.
    qint64 untouchedFor() const { return m_clock.elapsed() - m_touchedAt; }

    /// Seconds until the number may try again; 0 = now.
    Q_INVOKABLE int secondsToWait(const QString& number) const;

    /// The first wait, in milliseconds; 5000 at the start.
    void setFirstWait(int milliseconds) { m_firstWait = milliseconds; }

signals:
    void changed();
    void refused(const QString& reason);

private:
    struct Attempts
    {
        int wrong = 0;
        qint64 next = 0; ///< time of m_clock before which nothing is tried
    };

    bool refuse(const QString& reason);
    const Driver* find(const QString& number) const;
    qint64 keyOf(const QString& number) const;
    qint64 waitAfter(int wrong) const;

    const QVector<Driver> m_drivers;
    Driver m_current; ///< number 0 = none
    bool m_isLocked = false;
    QHash<qint64, Attempts> m_attempts; ///< all unknown numbers together are 0
    QElapsedTimer m_clock;
    qint64 m_touchedAt = 0; ///< time of m_clock
    int m_firstWait = 5000;
    QTimer m_idle;
};

} // namespace rivo::drivers
