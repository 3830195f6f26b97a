#include "ObserverRegistrations.h"

#include <algorithm>

namespace Brennvik {

const ObserverRegistration* ObserverRegistrations::begin() const
{
    return m_more ? m_more->data() : &m_first;
}

const ObserverRegistration* ObserverRegistrations::end() const
{
    return begin() + size();
}

std::size_t ObserverRegistrations::size() const
{
    if (m_more)
        return m_more->size();
    return m_first.observer ? 1 : 0;
}

bool ObserverRegistrations::empty() const
{
    return size() == 0;
}

void ObserverRegistrations::append(const ObserverRegistration& registration)
{
    if (m_more) {
        m_more->push_back(registration);
    } else if (!m_first.observer) {
        m_first = registration;
    } else {
        m_more = std::make_unique<std::vector<ObserverRegistration>>(
            std::vector<ObserverRegistration>{m_first, registration});
        m_first = {};
    }
}

bool ObserverRegistrations::remove(const DisplayItemEventObserver* observer)
{
    if (!observer)
        return false;
    if (!m_more) {
        if (m_first.observer != observer)
            return false;
        m_first = {};
        return true;
    }
    const auto it = std::find_if(m_more->begin(), m_more->end(),
                                 [observer](const ObserverRegistration& r) { return r.observer == observer; });
    if (it == m_more->end())
        return false;
    m_more->erase(it);
    // Back inline once one is left: the vector is freed with the last but one.
    if (m_more->size() <= 1) {
        m_first = m_more->empty() ? ObserverRegistration{} : m_more->front();
        m_more.reset();
    }
    return true;
}

QVarLengthArray<ObserverRegistration, 4> ObserverRegistrations::takeAll()
{
    QVarLengthArray<ObserverRegistration, 4> all(begin(), end());
    m_first = {};
    m_more.reset();
    return all;
}

} // namespace Brennvik
