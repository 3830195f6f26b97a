#pragma once

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/HostExport.h>

#include <cstddef>
#include <memory>
#include <unordered_map>

namespace Brennvik {

/// Which item of a deep copy stands for which original, so that references
/// between items (geometry lists, entry lookups) can follow the copy.
class BRENNVIK_HOST_EXPORT DisplayItemCloneMap
{
public:
    /// Records \a copy as the counterpart of \a original. An empty \a copy records
    /// that the original was deliberately left out of the copy.
    void add(const DisplayItemInterface* original, std::shared_ptr<DisplayItemInterface> copy);
    /// Whether \a original was met while copying (copied, shared or left out).
    bool contains(const DisplayItemInterface* original) const;
    /// The counterpart of \a original: its copy; empty when it was left out of
    /// the copy; \a original itself when it lies outside the copied trees.
    std::shared_ptr<DisplayItemInterface> remap(const std::shared_ptr<DisplayItemInterface>& original) const;
    std::size_t size() const;

private:
    std::unordered_map<const DisplayItemInterface*, std::shared_ptr<DisplayItemInterface>> m_counterparts;
};

} // namespace Brennvik
