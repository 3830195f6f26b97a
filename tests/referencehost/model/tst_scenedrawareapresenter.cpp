#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>

#include <QtTest>

using namespace Brennvik;

class tst_SceneDrawAreaPresenter : public QObject
{
    Q_OBJECT

private slots:
    void startsEmpty();
    void showViewModelRecordsAndCallsBack();
    void historyDoesNotKeepModelsAlive();
};

void tst_SceneDrawAreaPresenter::startsEmpty()
{
    SceneDrawAreaPresenter presenter;
    QCOMPARE(presenter.getViewModel(), nullptr);
    QCOMPARE(presenter.showCount(), 0);
    QVERIFY(presenter.shownHistory().empty());
}

void tst_SceneDrawAreaPresenter::showViewModelRecordsAndCallsBack()
{
    SceneDrawAreaPresenter presenter;
    auto original = std::make_shared<SceneViewModel>();
    auto clone = original->cloneViewModel(false);
    std::vector<std::shared_ptr<ViewModelInterface>> notified;
    presenter.setChangeCallback([&](const std::shared_ptr<ViewModelInterface>& viewModel) {
        // The presenter draws the new model by the time it tells.
        QCOMPARE(presenter.getViewModel(), viewModel);
        notified.push_back(viewModel);
    });

    presenter.showViewModel(original);
    presenter.showViewModel(clone);
    presenter.showViewModel(nullptr);
    presenter.showViewModel(original);

    QCOMPARE(presenter.getViewModel(), std::static_pointer_cast<ViewModelInterface>(original));
    QCOMPARE(presenter.showCount(), 4);
    QCOMPARE(notified.size(), std::size_t(4));
    QCOMPARE(notified[1], clone);
    QCOMPARE(notified[2], nullptr);
    const auto& history = presenter.shownHistory();
    QCOMPARE(history[0].lock(), std::static_pointer_cast<ViewModelInterface>(original));
    QCOMPARE(history[1].lock(), clone);
    QCOMPARE(history[2].lock(), nullptr);
}

void tst_SceneDrawAreaPresenter::historyDoesNotKeepModelsAlive()
{
    SceneDrawAreaPresenter presenter;
    std::weak_ptr<ViewModelInterface> first;
    {
        auto viewModel = std::make_shared<SceneViewModel>();
        first = viewModel;
        presenter.showViewModel(viewModel);
    }
    QVERIFY(!first.expired()); // drawn now: held
    presenter.showViewModel(std::make_shared<SceneViewModel>());
    QVERIFY(first.expired());
    QCOMPARE(presenter.showCount(), 2);
}

QTEST_GUILESS_MAIN(tst_SceneDrawAreaPresenter)
#include "tst_scenedrawareapresenter.moc"
