#include "SellingHarness.h"

#include <QtQuickTest>

// Generated from SellingHarness.h: the import Rivo.SellingTest 1.0 with the singleton Harness.
#include <SellingRegistration.inc>

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void applicationAvailable() { prepareScreens(); }
    void qmlEngineAvailable(QQmlEngine*)
    {
        if (!m_complaints)
            m_complaints = std::make_unique<Complaints>();
    }
    void cleanupTestCase() { m_complaints.reset(); }

private:
    std::unique_ptr<Complaints> m_complaints;
};

QUICK_TEST_MAIN_WITH_SETUP(selling, Setup)
#include "tst_selling.moc"
