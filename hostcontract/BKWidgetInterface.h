#pragma once

#include "HostExport.h"

#include <QFlags>

class QWidget;

namespace Brennvik {

/// Statuses a kit widget can show.
namespace BKWidgetStatus {
enum Status {
    Normal = 0x00,      ///< no mark
    Modified = 0x01,    ///< the value differs from its default
    Warning = 0x02,     ///< the value is doubtful
    Error = 0x04,       ///< the value is invalid
    ReadOnly = 0x08,    ///< shown, but the user cannot change it
    Highlighted = 0x10, ///< drawn to catch the eye (search hits, guidance)
};
Q_DECLARE_FLAGS(Statuses, Status)
} // namespace BKWidgetStatus

/// Status mix-in of the widget kit. A widget starts with the Normal status.
/// Changing the status updates the widget's look at once.
class BRENNVIK_HOST_EXPORT BKWidgetInterface
{
public:
    BKWidgetInterface();
    virtual ~BKWidgetInterface();

    /// Re-applies the look of the current status to the status widget.
    virtual void updateWidget();
    virtual void setBkStatus(QFlags<BKWidgetStatus::Status> status);
    virtual void setBkStatus(BKWidgetStatus::Status status, bool on);
    /// The widget that shows the status (the widget itself for the kit's widgets).
    virtual QWidget* getStatusWidget() const = 0;
    /// Called after every change of the status.
    virtual void onStatusChanged();
    virtual bool getBkStatus(BKWidgetStatus::Status status) const;
    virtual QFlags<BKWidgetStatus::Status> getBkStatus();

    /// The colour that marks \a status (invalid for Normal).
    static const char* statusColorName(QFlags<BKWidgetStatus::Status> status);

private:
    QFlags<BKWidgetStatus::Status> m_status;
};

} // namespace Brennvik

Q_DECLARE_OPERATORS_FOR_FLAGS(Brennvik::BKWidgetStatus::Statuses)
