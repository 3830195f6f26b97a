#pragma once

#include <QtGlobal>

namespace Brennvik {

/// Tells whether the dialog has removed rows since the watch began. A walk
/// that asks the host along the way may see the host's events remove the rows
/// it stands on: it then ends quietly.
class RowRemovalWatch
{
public:
    /// \a removals is the dialog's count of removed rows and rebuilds; it must outlive the watch.
    explicit RowRemovalWatch(const quint64& removals)
        : m_removals(removals)
        , m_start(removals)
    {
    }

    bool rowsRemoved() const { return m_removals != m_start; }

private:
    const quint64& m_removals;
    quint64 m_start;
};

} // namespace Brennvik
