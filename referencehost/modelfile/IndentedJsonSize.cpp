#include "IndentedJsonSize.h"

#include <QJsonArray>
#include <QJsonValue>

#include <cmath>

namespace Brennvik {

namespace {

/// Bytes of \a text between quotes: UTF-8, with the escapes Qt writes.
qint64 escapedSize(const QString& text)
{
    qint64 size = 0;
    for (int i = 0; i < text.size(); ++i) {
        const ushort unit = text.at(i).unicode();
        if (unit == '"' || unit == '\\' || unit == '\b' || unit == '\f' || unit == '\n' || unit == '\r' || unit == '\t')
            size += 2;
        else if (unit < 0x20)
            size += 6; // \u00XX
        else if (unit < 0x80)
            size += 1;
        else if (unit < 0x800)
            size += 2;
        else if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            size += 4;
            ++i;
        } else if (QChar::isSurrogate(unit))
            size += 6; // a lone surrogate is written as \uXXXX
        else
            size += 3;
    }
    return size;
}

qint64 numberSize(double number)
{
    if (std::floor(number) == number && std::fabs(number) < 9007199254740992.0)
        return QByteArray::number(static_cast<qint64>(number)).size();
    return QByteArray::number(number, 'g', QLocale::FloatingPointShortest).size();
}

qint64 valueSize(const QJsonValue& value, int indent);

/// "[\n" or "{\n", the entries each on a line one level in, "]" or "}" at \a indent.
qint64 containerSize(qint64 entries, qint64 entriesSize, int indent)
{
    if (entries == 0)
        return 2 + 4 * indent + 1;
    const qint64 lineStarts = entries * 4 * (indent + 1);
    const qint64 separators = (entries - 1) * 2; // ",\n"
    return 2 + lineStarts + entriesSize + separators + 1 + 4 * indent + 1;
}

qint64 objectSize(const QJsonObject& object, int indent)
{
    qint64 size = 0;
    for (auto it = object.constBegin(); it != object.constEnd(); ++it)
        size += 1 + escapedSize(it.key()) + 3 + valueSize(it.value(), indent + 1); // "key": value
    return containerSize(object.size(), size, indent);
}

qint64 arraySize(const QJsonArray& array, int indent)
{
    qint64 size = 0;
    for (const QJsonValue& element : array)
        size += valueSize(element, indent + 1);
    return containerSize(array.size(), size, indent);
}

qint64 valueSize(const QJsonValue& value, int indent)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? 4 : 5;
    case QJsonValue::Double:
        return numberSize(value.toDouble());
    case QJsonValue::String:
        return 2 + escapedSize(value.toString());
    case QJsonValue::Array:
        return arraySize(value.toArray(), indent);
    case QJsonValue::Object:
        return objectSize(value.toObject(), indent);
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return 4; // null
}

} // namespace

qint64 indentedJsonSize(const QJsonObject& document)
{
    // The document ends with a line break.
    return objectSize(document, 0) + 1;
}

} // namespace Brennvik
