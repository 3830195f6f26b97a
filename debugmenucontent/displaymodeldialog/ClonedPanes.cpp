#include "ClonedPanes.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/PropertyPaneCopy.h>

#include <QBoxLayout>
#include <QCoreApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLayoutItem>
#include <QSizePolicy>
#include <QSpacerItem>
#include <QStringList>
#include <QTreeWidget>

namespace Brennvik {

namespace {

// Texts made at run time are translated in the form's context, as the form's
// own texts are (the dialog has no meta-object of its own for tr()).
QString translated(const char* text)
{
    return QCoreApplication::translate("DisplayModelDialogClass", text);
}

} // namespace

DisplayItemTreeWidget* addClonedTree(QWidget* dialog, QHBoxLayout* mainLayout)
{
    // Without the display item actions, and expanding on double click, unlike the original tree.
    auto* tree = new DisplayItemTreeWidget(dialog, false);
    tree->setObjectName(QStringLiteral("m_clonedDisplayItemTreeWidget"));
    tree->setExpandsOnDoubleClick(true);
    tree->header()->setStretchLastSection(true);
    tree->headerItem()->setText(0, translated("Cloned display items"));
    mainLayout->addWidget(tree);
    tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    return tree;
}

ClonedPane addClonedPane(QWidget* dialog, QVBoxLayout* column, const ClonedPaneNames& names)
{
    ClonedPane pane{};
    pane.header = new QHBoxLayout();
    pane.header->setSpacing(0);
    pane.header->setObjectName(QString::fromLatin1(names.header));
    pane.title = new QLabel(dialog);
    pane.title->setObjectName(QString::fromLatin1(names.title));
    pane.title->setText(translated(names.titleText));
    pane.header->addWidget(pane.title);
    pane.spacer = new QSpacerItem(40, 20, QSizePolicy::Expanding, QSizePolicy::Minimum);
    pane.header->addItem(pane.spacer);
    column->addLayout(pane.header);

    pane.pane = new QTreeWidget(dialog);
    pane.pane->setObjectName(QString::fromLatin1(names.pane));
    pane.pane->setColumnCount(2);
    pane.pane->setHeaderLabels(QStringList{translated("Name"), translated("Value")});
    addPropertyCopying(pane.pane);
    column->addWidget(pane.pane);
    return pane;
}

void clearLayout(QLayout* layout)
{
    if (!layout)
        return;
    while (QLayoutItem* item = layout->takeAt(0)) {
        // Later, not now: the widget may be in the middle of delivering the
        // signal that led here.
        if (QWidget* widget = item->widget())
            widget->deleteLater();
        if (QLayout* childLayout = item->layout())
            clearLayout(childLayout);
        delete item;
    }
}

} // namespace Brennvik
