#pragma once

#include <LiveFetcher.h>

#include <QByteArray>
#include <QList>
#include <QStringList>

/// What a fetcher reports.
struct Outcome
{
    QList<QByteArray> received;
    QStringList problems;
    int unchanged = 0;

    explicit Outcome(rivo::live::LiveFetcher& fetcher)
    {
        QObject::connect(&fetcher, &rivo::live::LiveFetcher::received, &fetcher,
                         [this](const QByteArray& bytes) { received.append(bytes); });
        QObject::connect(&fetcher, &rivo::live::LiveFetcher::failed, &fetcher,
                         [this](const QString& problem) { problems.append(problem); });
        QObject::connect(&fetcher, &rivo::live::LiveFetcher::unchanged, &fetcher,
                         [this] { ++unchanged; });
    }
};
