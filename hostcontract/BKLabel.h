#pragma once

#include "BKWidgetInterface.h"

#include <QLabel>

namespace Brennvik {

/// The event QWidget::enterEvent takes: QEnterEvent from Qt 6 on.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
using BKEnterEvent = QEnterEvent;
#else
using BKEnterEvent = QEvent;
#endif

/// The kit's label: a QLabel that draws its status as a coloured bar on its
/// left edge and shows its full text as tool tip when the text is elided.
class BRENNVIK_HOST_EXPORT BKLabel : public QLabel, public BKWidgetInterface
{
    Q_OBJECT
public:
    explicit BKLabel(QWidget* parent);
    ~BKLabel() override;

    QWidget* getStatusWidget() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void customEvent(QEvent* event) override;
    void enterEvent(BKEnterEvent* event) override;
};

} // namespace Brennvik
