#include "IdTable.h"

#include "TextForms.h"

#include <algorithm>
#include <numeric>

namespace rivo::feed
{

int IdTable::append(std::string_view id)
{
    m_texts.append(id);
    m_ends.push_back(m_texts.size());
    return size() - 1;
}

QVector<QPair<int, int>> IdTable::seal()
{
    m_order.resize(m_ends.size());
    std::iota(m_order.begin(), m_order.end(), 0);
    std::sort(m_order.begin(), m_order.end(), [this](int left, int right) {
        const int order = at(left).compare(at(right));
        return order != 0 ? order < 0 : left < right;
    });
    QVector<QPair<int, int>> repeated;
    size_t kept = 0;
    for (const int number : m_order) {
        if (kept > 0 && at(m_order[kept - 1]) == at(number))
            repeated.append({number, m_order[kept - 1]});
        else
            m_order[kept++] = number;
    }
    m_order.resize(kept);
    std::sort(repeated.begin(), repeated.end());
    return repeated;
}

QVector<int> IdTable::unify()
{
    seal();
    IdTable distinct;
    QVector<int> numbers;
    numbers.reserve(size());
    for (int i = 0; i < size(); ++i) {
        const int first = find(at(i));
        numbers.append(first == i ? distinct.append(at(i)) : numbers.at(first));
    }
    distinct.seal();
    *this = std::move(distinct);
    return numbers;
}

int IdTable::find(std::string_view id) const
{
    const auto place =
        std::lower_bound(m_order.begin(), m_order.end(), id,
                         [this](int number, std::string_view text) { return at(number) < text; });
    return place != m_order.end() && at(*place) == id ? *place : -1;
}

int IdTable::find(const QString& id) const
{
    const QByteArray text = id.toUtf8();
    return find(std::string_view(text.constData(), static_cast<size_t>(text.size())));
}

std::string_view IdTable::at(int number) const
{
    const auto index = static_cast<size_t>(number);
    const size_t begin = index == 0 ? 0 : m_ends[index - 1];
    return {m_texts.data() + begin, m_ends[index] - begin};
}

QString IdTable::text(int number) const
{
    if (number < 0)
        return {};
    const std::string_view id = at(number);
    return QString::fromUtf8(id.data(), static_cast<int>(id.size()));
}

QVector<int> IdTable::publicNumbers() const
{
    QVector<int> numbers;
    numbers.reserve(size());
    for (int i = 0; i < size(); ++i)
        numbers.append(positiveInteger(text(i)));
    if (numbers.contains(0))
        std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

} // namespace rivo::feed
