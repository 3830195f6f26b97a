#include "HostCallLog.h"

namespace Brennvik {

namespace {

HostCallLog*& listeningLog()
{
    static HostCallLog* log = nullptr;
    return log;
}

} // namespace

HostCallLog::HostCallLog()
    : m_hidden(listeningLog())
{
    listeningLog() = this;
}

HostCallLog::~HostCallLog()
{
    listeningLog() = m_hidden;
}

const std::vector<std::string>& HostCallLog::calls() const
{
    return m_calls;
}

void HostCallLog::clear()
{
    m_calls.clear();
}

void HostCallLog::note(const char* operation)
{
    if (HostCallLog* log = listeningLog())
        log->m_calls.emplace_back(operation);
}

} // namespace Brennvik
