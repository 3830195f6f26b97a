// Opens the display model dialog of the installed library on the reference
// host's sample and prints what its tree shows.
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>

#include <QApplication>
#include <QTreeWidgetItem>

#include <cstdio>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    const auto viewModel = Brennvik::buildSampleViewModel();
    Brennvik::SceneDrawAreaPresenter presenter;
    presenter.showViewModel(viewModel);

    Brennvik::DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);
    dialog.setDrawAreaPresenter(&presenter);
    dialog.show();

    auto* tree = dialog.findChild<Brennvik::DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    if (!tree || tree->topLevelItemCount() != 1) {
        std::fprintf(stderr, "consumer: the dialog shows no tree\n");
        return 1;
    }
    std::printf("top row: %s, %d rows below it\n", qPrintable(tree->topLevelItem(0)->text(0)),
                tree->topLevelItem(0)->childCount());
    return 0;
}
