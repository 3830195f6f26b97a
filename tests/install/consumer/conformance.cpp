// A host's conformance test program built against the installed package:
// the host's adapter (here over the reference host, standing in for the
// host's own implementation) handed to the kit.
#include <conformancekit/ConformanceHost.h>
#include <conformancekit/ConformanceTest.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <QApplication>

namespace {

using Brennvik::DisplayItem;
using Brennvik::DisplayItemInterface;

class ConsumerHost : public Brennvik::Conformance::ConformanceHost
{
public:
    std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) override
    {
        return std::make_shared<DisplayItem>(name);
    }
    void appendChild(const std::shared_ptr<DisplayItemInterface>& parent,
                     const std::shared_ptr<DisplayItemInterface>& child) override
    {
        std::dynamic_pointer_cast<DisplayItem>(parent)->appendChild(std::dynamic_pointer_cast<DisplayItem>(child));
    }
    void setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                     const std::string& value) override
    {
        std::dynamic_pointer_cast<DisplayItem>(item)->setBusinessProperty(name, value);
    }
    bool isIdentityProperty(const std::string& name) const override { return name.rfind("pointer", 0) == 0; }
    std::shared_ptr<Brennvik::ViewModelInterface>
    makeViewModel(const std::shared_ptr<DisplayItemInterface>& root) override
    {
        auto viewModel = std::make_shared<Brennvik::SceneViewModel>();
        viewModel->displayModel().setRootDisplayItem(std::dynamic_pointer_cast<DisplayItem>(root));
        return viewModel;
    }
};

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    ConsumerHost host;
    return Brennvik::Conformance::runAll(host, argc, argv);
}
