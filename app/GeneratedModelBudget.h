#pragma once

#include <QString>

#include <optional>

namespace Brennvik {

/// The memory that the reference application needs to show a generated model
/// of \a itemCount display items: a fixed base and a share per item, measured
/// as the peak resident size with the main window and every dialog open.
quint64 estimatedMemoryForGeneratedModel(quint64 itemCount);

/// The physical memory that new allocations can have now without swapping;
/// empty where the system does not tell.
std::optional<quint64> availablePhysicalMemory();

/// Why a generated model of \a itemCount items is refused when \a available
/// bytes are free: its estimate does not fit. Empty when it fits or when
/// nothing is known of the memory.
QString generatedModelRefusal(quint64 itemCount, std::optional<quint64> available);

} // namespace Brennvik
