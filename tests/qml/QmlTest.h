#pragma once

#include "LogCapture.h"
#include "TerminalHome.h"

#include <QObject>
#include <QStringList>
#include <QTest>

/// A test with the QML module. Any message of Qt or QML during a test function is a failure; the
/// library's log is kept off the console.
class QmlTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        texts().clear();
        m_previous = qInstallMessageHandler(note);
    }

    void cleanup()
    {
        qInstallMessageHandler(m_previous);
        QCOMPARE(texts().join(QLatin1Char('\n')), QString());
    }

protected:
    /// What Qt and QML reported since the test function began or since the last call.
    static QStringList takeTexts()
    {
        const QStringList taken = texts();
        texts().clear();
        return taken;
    }

private:
    static QStringList& texts()
    {
        static QStringList list;
        return list;
    }

    static void note(QtMsgType, const QMessageLogContext&, const QString& text)
    {
        texts().append(text);
    }

    QtMessageHandler m_previous = nullptr;
    TerminalHome m_home;
    LogCapture m_log;
};
