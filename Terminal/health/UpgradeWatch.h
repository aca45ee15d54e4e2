#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

namespace rivo::health
{

/// Notices that the package was upgraded while the program runs, and reports when it may restart.
///
/// The package's installation creates the file or changes its time. What the file was before this
/// object does not count.
class UpgradeWatch : public QObject
{
    Q_OBJECT

public:
    static constexpr int usualInterval = 60000; ///< milliseconds between two looks

    /// `mayRestart` is asked at each look after an upgrade, until it says yes.
    UpgradeWatch(const QString& file, std::function<bool()> mayRestart,
                 int interval = usualInterval, QObject* parent = nullptr);

signals:
    /// Once: the package was upgraded, and nothing is interrupted by a restart.
    void restartDue();

private:
    void look();

    const QByteArray m_file;
    const std::function<bool()> m_mayRestart;
    const QByteArray m_before;
    QTimer m_looks;
};

} // namespace rivo::health
