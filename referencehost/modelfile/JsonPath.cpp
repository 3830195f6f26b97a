#include "JsonPath.h"

namespace Brennvik {

JsonPath::JsonPath() = default;

void JsonPath::appendKey(const QString& key)
{
    m_steps.emplace_back(key);
}

void JsonPath::appendIndex(int index)
{
    m_steps.emplace_back(index);
}

void JsonPath::removeLast()
{
    if (!m_steps.empty())
        m_steps.pop_back();
}

JsonPath JsonPath::withKey(const QString& key) const
{
    JsonPath path = *this;
    path.appendKey(key);
    return path;
}

JsonPath JsonPath::withIndex(int index) const
{
    JsonPath path = *this;
    path.appendIndex(index);
    return path;
}

bool JsonPath::isEmpty() const
{
    return m_steps.empty();
}

int JsonPath::size() const
{
    return static_cast<int>(m_steps.size());
}

const JsonPath::Step& JsonPath::at(int position) const
{
    return m_steps.at(static_cast<std::size_t>(position));
}

const std::vector<JsonPath::Step>& JsonPath::steps() const
{
    return m_steps;
}

QString JsonPath::describe() const
{
    if (m_steps.empty())
        return QStringLiteral("the top level");
    // The indexes at the end belong to the nearest key above them.
    int first = size();
    while (first > 0 && std::holds_alternative<int>(m_steps[static_cast<std::size_t>(first - 1)]))
        --first;
    QString text;
    if (first > 0)
        text = QLatin1Char('"') + std::get<QString>(m_steps[static_cast<std::size_t>(first - 1)]) + QLatin1Char('"');
    else
        text = QStringLiteral("the top level");
    for (int i = first; i < size(); ++i)
        text += QLatin1Char('[') + QString::number(std::get<int>(m_steps[static_cast<std::size_t>(i)]))
            + QLatin1Char(']');
    return text;
}

QString JsonPath::toPointer() const
{
    QString text;
    for (const Step& step : m_steps) {
        text += QLatin1Char('/');
        if (const auto* key = std::get_if<QString>(&step)) {
            QString escaped = *key;
            escaped.replace(QLatin1Char('~'), QLatin1String("~0"));
            escaped.replace(QLatin1Char('/'), QLatin1String("~1"));
            text += escaped;
        } else {
            text += QString::number(std::get<int>(step));
        }
    }
    return text;
}

bool JsonPath::operator==(const JsonPath& other) const
{
    return m_steps == other.m_steps;
}

bool JsonPath::operator!=(const JsonPath& other) const
{
    return !(*this == other);
}

} // namespace Brennvik
