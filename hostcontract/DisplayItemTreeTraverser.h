#pragma once

#include "HostExport.h"

#include <memory>

namespace Brennvik {

class DisplayItemInterface;

/// Walks a display item subtree in pre-order (an item, then its children in order).
class BRENNVIK_HOST_EXPORT DisplayItemTreeTraverser
{
public:
    /// Visitor of a walk.
    class BRENNVIK_HOST_EXPORT NodeProcessorInterface
    {
    public:
        NodeProcessorInterface();
        virtual ~NodeProcessorInterface();
        /// Called once per visited item.
        virtual void processNode(std::shared_ptr<DisplayItemInterface> item) = 0;
    };

    /// Visits every item of the subtree of \a root, \a root first. An empty root visits nothing.
    static void process(std::shared_ptr<DisplayItemInterface> root, NodeProcessorInterface& processor);
    /// Visits the visible items only: an invisible item and its whole subtree are skipped,
    /// as they are not drawn.
    static void processVisible(std::shared_ptr<DisplayItemInterface> root, NodeProcessorInterface& processor);
};

} // namespace Brennvik
