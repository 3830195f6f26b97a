#pragma once

#include "HostExport.h"

#include <QWidget>

#include <memory>

namespace Brennvik {

class DisplayModel2D;
class GenericPlotManager;

/// The widget that shows one 2D plot. It paints the display model of its
/// plot manager: the items that are drawn (visible, with visible ancestors)
/// over a frame, in tree order, the data range fitted to the items that
/// count in it. It repaints on every display update of that model.
class BRENNVIK_HOST_EXPORT BkHQWidget2D : public QWidget
{
    Q_OBJECT
public:
    explicit BkHQWidget2D(QWidget* parent = nullptr);
    ~BkHQWidget2D() override;

    /// May be null.
    GenericPlotManager* getPlotManager() const;
    /// Not owned; must outlive the widget or be replaced first. Null for none.
    /// The widget follows the manager's model even when it is replaced.
    void setPlotManager(GenericPlotManager* manager);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void listenTo(const std::shared_ptr<DisplayModel2D>& model);

    GenericPlotManager* m_plotManager = nullptr;
    // Weak: the manager may drop its model while we listen to it.
    std::weak_ptr<DisplayModel2D> m_listenedModel;
    int m_listenerId = 0;
};

} // namespace Brennvik
