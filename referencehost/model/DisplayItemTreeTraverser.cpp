#include "DisplayTreeWalk.h"
#include "HostCallLog.h"

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayItemTreeTraverser.h>

namespace Brennvik {

namespace {

// Display trees can be deep, and a processor may change the tree while we
// walk it. Children are read when their parent is visited, so an item removed
// by the processor before its turn is still visited (we hold it), while
// children added to an already visited item are not.
void walk(const std::shared_ptr<DisplayItemInterface>& root,
          DisplayItemTreeTraverser::NodeProcessorInterface& processor, bool visibleOnly)
{
    walkDisplayTree(root, [&processor, visibleOnly](const std::shared_ptr<DisplayItemInterface>& item) {
        if (visibleOnly && !item->isVisible())
            return WalkStep::SkipChildren;
        processor.processNode(item);
        return WalkStep::Descend;
    });
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
    HostCallLog::note("processVisible");
    walk(root, processor, true);
}

} // namespace Brennvik
