#include "RootOnlyDisplayModel.h"

namespace Brennvik {

RootOnlyDisplayModel::RootOnlyDisplayModel(std::shared_ptr<DisplayItemInterface> root)
    : m_root(std::move(root))
{
}

RootOnlyDisplayModel::~RootOnlyDisplayModel() = default;

DefaultEntryOwner* RootOnlyDisplayModel::getDefaultEntryOwner() const
{
    return nullptr;
}

Kind7Source* RootOnlyDisplayModel::getKind7Source() const
{
    return nullptr;
}

Kind6Provider* RootOnlyDisplayModel::getKind6Provider() const
{
    return nullptr;
}

std::shared_ptr<DisplayItemInterface> RootOnlyDisplayModel::getRootDisplayItem() const
{
    return m_root;
}

std::shared_ptr<Kind7Lookup> RootOnlyDisplayModel::getKind7Lookup() const
{
    return nullptr;
}

void RootOnlyDisplayModel::doDisplayUpdate(DisplayUpdateKind /*kind*/)
{
}

void RootOnlyDisplayModel::doVisibilityUpdate()
{
}

std::shared_ptr<ActiveContext> RootOnlyDisplayModel::getActiveContext() const
{
    return nullptr;
}

Kind6Index RootOnlyDisplayModel::getKind6Index() const
{
    return 0;
}

} // namespace Brennvik
