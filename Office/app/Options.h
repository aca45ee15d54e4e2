#pragma once

#include <BrokerLink.h>
#include <Publisher.h>
#include <ReportText.h>

#include <QDate>
#include <QString>

class QCoreApplication;

namespace rivo::backoffice
{

/// What the user wants; `command` is empty if the command line is not understood.
struct Options
{
    QString command; ///< serve, report, gaps, web, positions, publish or publications
    DatabaseSettings database;
    office::BrokerSettings broker;
    QString share; ///< of the subscription
    ReportBy by = ReportBy::Driver;
    ReportFormat format = ReportFormat::Text;
    QDate from;
    QDate to;
    bool all = false;
    QString listen; ///< of the web page: address and port
    QString feed;   ///< whose routes the page's map has; empty = none
    QString output; ///< file of the positions
    int every = 0;  ///< seconds between two of them; 0 = once
    ToPublish publication;
};

/// Reads the command line. Ends the program for --help and --version.
Options optionsOf(const QCoreApplication& application);

} // namespace rivo::backoffice
