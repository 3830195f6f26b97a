#pragma once

#include <hostcontract/HostExport.h>

#include <QString>

#include <variant>
#include <vector>

namespace Brennvik {

/// Where a value sits in a JSON document: the member keys and array indexes
/// from the top-level value down to it. The empty path is the top-level value.
class BRENNVIK_HOST_EXPORT JsonPath
{
public:
    /// A member key or an array index.
    using Step = std::variant<QString, int>;

    JsonPath();

    void appendKey(const QString& key);
    void appendIndex(int index);
    void removeLast();
    /// The path one step longer.
    JsonPath withKey(const QString& key) const;
    JsonPath withIndex(int index) const;

    bool isEmpty() const;
    int size() const;
    const Step& at(int position) const;
    const std::vector<Step>& steps() const;

    /// The value's name for messages: its key in quotes followed by the indexes
    /// below it, e.g. "children"[2] or "businessProperties"[0][1]; "the top level"
    /// for the empty path.
    QString describe() const;
    /// All steps, e.g. /displayModel/root/children/2 (a JSON pointer, with "~"
    /// and "/" in keys escaped as "~0" and "~1").
    QString toPointer() const;

    bool operator==(const JsonPath& other) const;
    bool operator!=(const JsonPath& other) const;

private:
    std::vector<Step> m_steps;
};

} // namespace Brennvik
