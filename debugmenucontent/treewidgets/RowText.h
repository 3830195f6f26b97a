#pragma once

#include <hostcontract/ShellDisplayItem.h>

#include <QString>

#include <memory>
#include <typeinfo>

namespace Brennvik {

/// Whether objects of the dynamic type \a type are known not to be shells.
bool isKnownNonShellType(const std::type_info& type);
/// Notes that objects of the dynamic type \a type are not shells.
void rememberNonShellType(const std::type_info& type);

/// The column-0 text of a row: the object's display name and, when the object
/// is also a shell, " [<shell type and name>]". Empty for a gone object.
/// Display item rows and edit-model rows name their objects alike.
template<class Item>
QString rowText(const std::shared_ptr<Item>& item)
{
    if (!item)
        return QString();
    QString text = QString::fromStdString(item->getDisplayName());
    // A failing cast walks the object's whole class hierarchy, and most rows
    // show no shell. Whether a class is a shell never changes, so each class
    // is cast once.
    const std::type_info& type = typeid(*item);
    if (isKnownNonShellType(type))
        return text;
    const auto shell = std::dynamic_pointer_cast<ShellDisplayItem>(item);
    if (!shell) {
        rememberNonShellType(type);
        return text;
    }
    text += QStringLiteral(" [");
    text += QString::fromStdString(shell->getShellTypeAndNameAsString());
    text += QStringLiteral("]");
    return text;
}

/// The decimal text of a row's index, as column 1 shows it.
QString rowIndexText(int index);

} // namespace Brennvik
