#pragma once

#include <hostcontract/ShellDisplayItem.h>

#include <QString>

#include <memory>

namespace Brennvik {

/// The column-0 text of a row: the object's display name and, when the object
/// is also a shell, " [<shell type and name>]". Empty for a gone object.
/// Display item rows and edit-model rows name their objects alike.
template<class Item>
QString rowText(const std::shared_ptr<Item>& item)
{
    if (!item)
        return QString();
    QString text = QString::fromStdString(item->getDisplayName());
    if (const auto shell = std::dynamic_pointer_cast<ShellDisplayItem>(item)) {
        text += QStringLiteral(" [");
        text += QString::fromStdString(shell->getShellTypeAndNameAsString());
        text += QStringLiteral("]");
    }
    return text;
}

/// The decimal text of a row's index, as column 1 shows it.
QString rowIndexText(int index);

} // namespace Brennvik
