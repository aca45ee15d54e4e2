#pragma once

#include <QCoreApplication>
#include <QEvent>

/// Lets the event loop destroy what deleteLater() was called for.
inline void runDeferredDeletions()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
