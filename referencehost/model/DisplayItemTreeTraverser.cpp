#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayItemTreeTraverser.h>

#include <utility>
#include <vector>

namespace Brennvik {

namespace {

// Iterative pre-order walk: display trees can be deep, and a processor may
// change the tree while we walk it. Children are read when their parent is
// visited, so an item removed by the processor before its turn is still visited
// (we hold it), while children added to an already visited item are not.
void walk(const std::shared_ptr<DisplayItemInterface>& root,
          DisplayItemTreeTraverser::NodeProcessorInterface& processor, bool visibleOnly)
{
    if (!root)
        return;
    std::vector<std::shared_ptr<DisplayItemInterface>> pending{root};
    while (!pending.empty()) {
        std::shared_ptr<DisplayItemInterface> item = std::move(pending.back());
        pending.pop_back();
        if (visibleOnly && !item->isVisible())
            continue;
        processor.processNode(item);
        const DisplayItemList children = item->getChildren();
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            if (*it)
                pending.push_back(*it);
        }
    }
}

} // namespace

DisplayItemTreeTraverser::NodeProcessorInterface::NodeProcessorInterface() = default;

DisplayItemTreeTraverser::NodeProcessorInterface::~NodeProcessorInterface() = default;

void DisplayItemTreeTraverser::process(std::shared_ptr<DisplayItemInterface> root, NodeProcessorInterface& processor)
{
    walk(root, processor, false);
}

void DisplayItemTreeTraverser::processVisible(std::shared_ptr<DisplayItemInterface> root,
                                              NodeProcessorInterface& processor)
{
    walk(root, processor, true);
}

} // namespace Brennvik
