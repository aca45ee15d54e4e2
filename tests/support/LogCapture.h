#pragma once

#include <core/Logging.h>

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <string>

/// Collects the records of logger "default" while it lives, and keeps them off the console.
///
///     LogCapture log;
///     model.printProducts(products);
///     QCOMPARE(log.messages(), QStringList{"..."});
class LogCapture
{
public:
    struct Record
    {
        el::Level level = el::Level::Unknown;
        QString loggerId;
        QString file; ///< as compiled, relative to the repository
        int line = 0;
        QString function; ///< full signature
        QString message;
    };

    LogCapture() : m_id(nextId()), m_console(console() && console()->enabled())
    {
        el::Helpers::installLogDispatchCallback<Collector>(m_id);
        collector()->records = &m_records;
        if (m_console)
            console()->setEnabled(false);
    }

    ~LogCapture()
    {
        el::Helpers::uninstallLogDispatchCallback<Collector>(m_id);
        if (m_console)
            console()->setEnabled(true);
    }

    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QVector<Record> records() const { return m_records; }

    QStringList messages() const
    {
        QStringList texts;
        for (const Record& record : m_records)
            texts.append(record.message);
        return texts;
    }

    /// The messages of one level only.
    QStringList messages(el::Level level) const
    {
        QStringList texts;
        for (const Record& record : m_records) {
            if (record.level == level)
                texts.append(record.message);
        }
        return texts;
    }

    void clear() { m_records.clear(); }

    /// Calls `observer` while each further record is being written.
    void observe(const std::function<void()>& observer) { collector()->observer = observer; }

private:
    struct Collector : el::LogDispatchCallback
    {
        QVector<Record>* records = nullptr;
        std::function<void()> observer;

        void handle(const el::LogDispatchData* data) override
        {
            const el::LogMessage* message = data->logMessage();
            if (!records || message->logger()->id() != "default")
                return;
            records->append({message->level(), QString::fromStdString(message->logger()->id()),
                             QString::fromStdString(message->file()),
                             static_cast<int>(message->line()),
                             QString::fromStdString(message->func()),
                             QString::fromStdString(message->message())});
            if (observer)
                observer();
        }
    };

    static std::string nextId()
    {
        static int count = 0;
        return "LogCapture-" + std::to_string(++count);
    }

    static el::LogDispatchCallback* console()
    {
        return el::Helpers::logDispatchCallback<el::base::DefaultLogDispatchCallback>(
            "DefaultLogDispatchCallback");
    }

    Collector* collector() const { return el::Helpers::logDispatchCallback<Collector>(m_id); }

    const std::string m_id;
    const bool m_console;
    QVector<Record> m_records;
};
