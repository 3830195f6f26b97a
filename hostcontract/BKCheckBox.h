#pragma once

#include "BKWidgetInterface.h"

#include <QCheckBox>

namespace Brennvik {

/// The kit's check box. With the ReadOnly status it shows its state but
/// ignores the mouse and the keyboard.
class BRENNVIK_HOST_EXPORT BKCheckBox : public QCheckBox, public BKWidgetInterface
{
    Q_OBJECT
public:
    explicit BKCheckBox(QWidget* parent);
    ~BKCheckBox() override;

    QWidget* getStatusWidget() const override;

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
};

} // namespace Brennvik
