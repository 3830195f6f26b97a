#pragma once

#include <hostcontract/DisplayItemInterface.h>

#include <functional>
#include <memory>

namespace Brennvik {

/// What a walk of a display item tree does after visiting an item.
enum class WalkStep { Descend, SkipChildren, Stop };

/// Visits \a root and its descendants in pre-order through getChildren(),
/// with a stack of its own, so that any depth is safe. An item's children are
/// read right after it is visited. Empty children are skipped, and a child that
/// is the item itself or one of its ancestors is not followed: a broken tree
/// costs no more than a sound one.
void walkDisplayTree(const std::shared_ptr<DisplayItemInterface>& root,
                     const std::function<WalkStep(const std::shared_ptr<DisplayItemInterface>&)>& visit);

} // namespace Brennvik
