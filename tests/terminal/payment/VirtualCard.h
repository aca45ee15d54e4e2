#pragma once

#include <ZvtTerminal.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

/// The program virtual-card-terminal with its own codec and its own books.
class VirtualCard
{
public:
    explicit VirtualCard(const QStringList& options = {})
    {
        m_process.start(PYTHON, QStringList{VIRTUAL_CARD_TERMINAL, "--port", "0", "--interactive"} +
                                    options);
        m_port = static_cast<quint16>(line().mid(5).toUInt());
    }
    ~VirtualCard()
    {
        m_process.closeWriteChannel();
        m_process.kill();
        m_process.waitForFinished();
    }
    VirtualCard(const VirtualCard&) = delete;
    VirtualCard& operator=(const VirtualCard&) = delete;

    quint16 port() const { return m_port; }

    /// Sends a line of its script; false if it does not take it.
    bool say(const QByteArray& words)
    {
        m_process.write(words + '\n');
        return line() == "ok";
    }

    /// Its books, a line "payment 190" for each transaction.
    QStringList books()
    {
        QStringList lines;
        for (const QJsonValue& each : entries())
            lines.append(
                QStringLiteral("%1 %2").arg(each["kind"].toString()).arg(each["amount"].toInt()));
        return lines;
    }

    QJsonArray entries()
    {
        m_process.write("books\n");
        return QJsonDocument::fromJson(line()).array();
    }

    /// How to reach it; after `silence` milliseconds it is given up.
    rivo::payment::ZvtSettings settings(int silence) const
    {
        rivo::payment::ZvtSettings made;
        made.host = QStringLiteral("127.0.0.1");
        made.port = m_port;
        made.connectTime = 2000;
        made.acknowledgeTime = silence;
        made.answerTime = silence;
        made.retryTime = 5;
        return made;
    }

private:
    QByteArray line()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(20000))
                qFatal("virtual-card-terminal: %s", m_process.readAllStandardError().constData());
        }
        return m_process.readLine().trimmed();
    }

    QProcess m_process;
    quint16 m_port = 0;
};
