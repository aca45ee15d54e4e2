#include "Content.h"

#include <DriversFile.h>
#include <FeedLoader.h>
#include <Instructions.h>
#include <QFileInfo>

namespace rivo::backoffice
{

namespace
{

QStringList problemsOfFeed(const QString& file)
{
    if (QFileInfo(file).isDir())
        return {QStringLiteral("%1: a folder cannot be published: pack it as .zip").arg(file)};
    return feed::loadFeed(file).problemLines();
}

} // namespace

QStringList problemsOf(office::PublicationKind kind, const QString& file)
{
    switch (kind) {
    case office::PublicationKind::Feed:
        return problemsOfFeed(file);
    case office::PublicationKind::Drivers:
        return drivers::readDrivers(file).problems;
    case office::PublicationKind::Limits:
        return office::readLimits(file).problems;
    case office::PublicationKind::Paid:
        break;
    }
    return office::readPaidShifts(file).problems;
}

} // namespace rivo::backoffice
