#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Brennvik {

/// The memory that the reference application needs to show a generated model
/// of \a itemCount display items in its main window and in \a openDialogs (the
/// names that --open takes; each counts once, unknown ones count nothing): a
/// fixed base, a share per item for the model with the main window and one
/// for each dialog that shows the model, measured as peak resident sizes.
quint64 estimatedMemoryForGeneratedModel(quint64 itemCount, const QStringList& openDialogs = {});

/// The physical memory that new allocations can have now without swapping;
/// empty where the system does not tell.
std::optional<quint64> availablePhysicalMemory();

/// Why a generated model of \a itemCount items, shown with \a openDialogs, is
/// refused when \a available bytes are free: its estimate does not fit. Empty
/// when it fits or when nothing is known of the memory.
QString generatedModelRefusal(quint64 itemCount, std::optional<quint64> available, const QStringList& openDialogs = {});

} // namespace Brennvik
