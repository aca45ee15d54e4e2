#pragma once

#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "Products.h"
#include "TerminalHome.h"

#include <limits>
#include <memory>

inline constexpr int lowest = std::numeric_limits<int>::min();
inline constexpr int highest = std::numeric_limits<int>::max();

inline const QStringList layoutTypes{"PT_ADULT", "PT_STUDENT_1"};

/// New selection grids in a home that configures the display order, their log, and their owner.
class GridUnderTest
{
protected:
    /// Once for all tests.
    void configure()
    {
        const TerminalHome home({"PT_STUDENT_1", "PT_DISABLED", "PT_ADULT"});
        m_home = qgetenv("HOME");
    }

    /// Before each test.
    void start()
    {
        qputenv("HOME", m_home);
        m_owner = std::make_unique<QObject>();
        m_log = std::make_unique<LogCapture>();
    }

    /// After each test.
    void end()
    {
        m_log.reset();
        m_owner.reset();
    }

    std::unique_ptr<PassengerTypesModel> newModel(const QString& products, bool logFareProducts)
    {
        auto model = std::make_unique<PassengerTypesModel>(m_owner.get());
        model->setLogFareProducts(logFareProducts);
        addProducts(*model, products);
        return model;
    }

    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    QByteArray m_home;
};
