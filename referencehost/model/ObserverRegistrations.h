#pragma once

#include <hostcontract/HostExport.h>

#include <QVarLengthArray>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Brennvik {

class DisplayItemEventObserver;

/// One observer's registration with an item; the serial number tells a
/// destroyed observer from a new one at the same address.
struct ObserverRegistration
{
    DisplayItemEventObserver* observer = nullptr;
    std::uint64_t serial = 0;
};

/// The registrations of one item in the order they were made, contiguous.
///
/// Nearly every item is followed by one row, so the first registration is
/// held inline and no registration allocates until a second one comes; the
/// store is no larger than a vector.
class BRENNVIK_HOST_EXPORT ObserverRegistrations
{
public:
    ObserverRegistrations() = default;
    ObserverRegistrations(const ObserverRegistrations&) = delete;
    ObserverRegistrations& operator=(const ObserverRegistrations&) = delete;

    const ObserverRegistration* begin() const;
    const ObserverRegistration* end() const;
    std::size_t size() const;
    bool empty() const;

    void append(const ObserverRegistration& registration);
    /// Removes the registration of \a observer; true when there was one.
    bool remove(const DisplayItemEventObserver* observer);
    /// Hands every registration over in order, leaving this store empty.
    QVarLengthArray<ObserverRegistration, 4> takeAll();

private:
    // Used while there is at most one registration and m_more is null.
    ObserverRegistration m_first;
    // All registrations once there have been two at the same time.
    std::unique_ptr<std::vector<ObserverRegistration>> m_more;
};

} // namespace Brennvik
