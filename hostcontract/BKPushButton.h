#pragma once

#include "BKWidgetInterface.h"

#include <QPushButton>

namespace Brennvik {

/// The kit's push button.
class BRENNVIK_HOST_EXPORT BKPushButton : public QPushButton, public BKWidgetInterface
{
    Q_OBJECT
public:
    explicit BKPushButton(QWidget* parent);
    ~BKPushButton() override;

    QWidget* getStatusWidget() const override;
};

} // namespace Brennvik
