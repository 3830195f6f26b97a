#pragma once

#include <hostcontract/HostExport.h>

#include <string>
#include <vector>

namespace Brennvik {

/// The host operations the module calls, by name and in order, for as long
/// as the log exists: lets tests pin the order in which the module asks the
/// host. Only the operations whose order callers depend on note themselves.
///
/// One log listens at a time: a newer one hides an older one until it goes.
/// GUI thread only, like every other host call.
class BRENNVIK_HOST_EXPORT HostCallLog
{
public:
    HostCallLog();
    ~HostCallLog();
    HostCallLog(const HostCallLog&) = delete;
    HostCallLog& operator=(const HostCallLog&) = delete;

    /// The names noted so far, oldest first.
    const std::vector<std::string>& calls() const;
    void clear();

    /// Appends \a operation to the listening log; nothing without one.
    static void note(const char* operation);

private:
    HostCallLog* m_hidden;
    std::vector<std::string> m_calls;
};

} // namespace Brennvik
