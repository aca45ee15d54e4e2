#pragma once

#include "PassengerTypesModel.h"

/// Read access to the lists that PassengerTypesModel keeps to itself.
class PassengerTypesModelInspector
{
public:
    explicit PassengerTypesModelInspector(const PassengerTypesModel& model) : m_model(model) {}

    const QVector<sProduct>& products() const { return m_model.m_products; }
    const QVector<sProduct>& dailyProducts() const { return m_model.m_dailyProducts; }
    const QVector<sProduct>& groupedProducts() const { return m_model.m_groupedProducts; }
    const QVector<int>& supportedTypeCodes() const { return m_model.m_supportedTypeCodes; }
    const QVector<int>& typeCodesOrder() const { return m_model.m_typeCodesOrder; }
    const QVector<int>& localTypeCodes() const { return m_model.m_localTypeCodes; }

private:
    const PassengerTypesModel& m_model;
};
