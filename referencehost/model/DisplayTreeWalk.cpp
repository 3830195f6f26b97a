#include "DisplayTreeWalk.h"

#include <unordered_set>
#include <vector>

namespace Brennvik {

void walkDisplayTree(const std::shared_ptr<DisplayItemInterface>& root,
                     const std::function<WalkStep(const std::shared_ptr<DisplayItemInterface>&)>& visit)
{
    struct Level
    {
        const DisplayItemInterface* item;
        DisplayItemList children;
        std::size_t next = 0;
    };
    std::vector<Level> levels;
    std::unordered_set<const DisplayItemInterface*> onPath;
    // False once the walk is to stop.
    const auto enter = [&](const std::shared_ptr<DisplayItemInterface>& item) {
        const WalkStep step = visit(item);
        if (step == WalkStep::Descend) {
            levels.push_back({item.get(), item->getChildren()});
            onPath.insert(item.get());
        }
        return step != WalkStep::Stop;
    };
    if (!root || !enter(root))
        return;
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.children.size()) {
            onPath.erase(level.item);
            levels.pop_back();
            continue;
        }
        const std::shared_ptr<DisplayItemInterface> child = level.children[level.next++];
        if (child && onPath.count(child.get()) == 0 && !enter(child))
            return;
    }
}

} // namespace Brennvik
