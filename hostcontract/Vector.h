#pragma once

#include <array>
#include <cstddef>
#include <type_traits>

namespace Brennvik {

/// A fixed-size vector of the host's math library, e.g. Vector<float,3> for a
/// point or a pixel position. Components start at zero.
template<typename T, int N>
class Vector
{
    static_assert(N > 0, "a vector has at least one component");

public:
    Vector() = default;

    /// A three-component vector from its components.
    template<int M = N, typename = std::enable_if_t<M == 3>>
    Vector(T x, T y, T z)
        : m_components{x, y, z}
    {
    }

    T& operator[](std::size_t index) { return m_components[index]; }
    const T& operator[](std::size_t index) const { return m_components[index]; }

    T x() const { return m_components[0]; }
    T y() const
    {
        static_assert(N >= 2, "no y component");
        return m_components[1];
    }
    T z() const
    {
        static_assert(N >= 3, "no z component");
        return m_components[2];
    }

    /// Component-wise sum.
    Vector& operator+=(const Vector& other)
    {
        for (std::size_t i = 0; i < std::size_t(N); ++i)
            m_components[i] += other.m_components[i];
        return *this;
    }

    friend Vector operator+(Vector left, const Vector& right) { return left += right; }
    friend bool operator==(const Vector& left, const Vector& right) { return left.m_components == right.m_components; }
    friend bool operator!=(const Vector& left, const Vector& right) { return !(left == right); }

private:
    std::array<T, std::size_t(N)> m_components{};
};

} // namespace Brennvik
