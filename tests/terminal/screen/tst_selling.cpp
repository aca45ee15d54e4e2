#include "SellingHarness.h"

#include <QtQuickTest>

// Generated from SellingHarness.h: the import Rivo.SellingTest 1.0 with the singleton Harness.
#include <SellingRegistration.inc>

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void applicationAvailable() { prepareScreens(); }
};

QUICK_TEST_MAIN_WITH_SETUP(selling, Setup)
#include "tst_selling.moc"
