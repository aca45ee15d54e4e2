#pragma once

#include "FeedOptions.h"
#include "TextForms.h"

#include <QString>

#include <limits>

namespace rivo::feed
{

/// What a value must be, beyond its type.
struct FieldRule
{
    bool isRequired = false; ///< the key or column must be there; a text must not be empty
    double min = std::numeric_limits<int>::min();
    double max = std::numeric_limits<int>::max();
    bool (*isFit)(const QString& text) = nullptr; ///< what texts must answer true to
    const char* fitInWords = nullptr;
    const char* companion = nullptr; ///< key or column that must be there too
    bool isOfMap = false;            ///< no fare depends on the value: a wrong one is left out

    constexpr FieldRule within(double least, double most) const
    {
        FieldRule rule = *this;
        rule.min = least;
        rule.max = most;
        return rule;
    }

    constexpr FieldRule satisfying(bool (*predicate)(const QString&), const char* inWords) const
    {
        FieldRule rule = *this;
        rule.isFit = predicate;
        rule.fitInWords = inWords;
        return rule;
    }

    constexpr FieldRule beside(const char* key) const
    {
        FieldRule rule = *this;
        rule.companion = key;
        return rule;
    }

    constexpr FieldRule ofMap() const
    {
        FieldRule rule = *this;
        rule.isOfMap = true;
        return rule;
    }

    /// False for NaN.
    bool allows(double number) const { return number >= min && number <= max; }
    /// Required texts are not empty; none is longer than the limit; all are fit.
    bool allows(const QString& text, const FeedLimits& limits) const;

    /// "an integer from 1 to 5", or "1" for a range of one value.
    QString inWords(const char* kind) const;
    /// "a text of 1 to 1000 characters", or what else makes it fit.
    QString textInWords(const FeedLimits& limits) const;
};

constexpr FieldRule required{true};
constexpr FieldRule optional{false};

constexpr FieldRule currencyRule = required.satisfying(isCurrencyCode, "a code such as \"EUR\"");
constexpr FieldRule priceRule = required.within(0, 1'000'000);

} // namespace rivo::feed
