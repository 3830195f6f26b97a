#pragma once

#include "BKWidgetInterface.h"

#include <QListWidget>

namespace Brennvik {

/// The kit's list: asks for the room of its rows (within bounds) instead of
/// QListWidget's fixed default size.
class BRENNVIK_HOST_EXPORT BKListWidget : public QListWidget, public BKWidgetInterface
{
    Q_OBJECT
public:
    explicit BKListWidget(QWidget* parent);
    ~BKListWidget() override;

    QWidget* getStatusWidget() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

} // namespace Brennvik
