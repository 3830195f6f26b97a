#pragma once

#include <hostcontract/InitialEntryLookups.h>

#include <string>

namespace Brennvik {

/// The object active in the application, reduced to what the display model
/// needs of it: its kind (see ContextKind) and a name for reports.
class BRENNVIK_HOST_EXPORT SceneContext : public ActiveContext
{
public:
    explicit SceneContext(int kind, std::string name = {});
    ~SceneContext() override;

    int getContextKind() const override;
    const std::string& name() const;

private:
    int m_kind;
    std::string m_name;
};

} // namespace Brennvik
