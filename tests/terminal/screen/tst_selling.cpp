#include "SellingHarness.h"

#include <QtQuickTest>

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void applicationAvailable() { prepareScreens(); }
};

QUICK_TEST_MAIN_WITH_SETUP(selling, Setup)
#include "tst_selling.moc"
