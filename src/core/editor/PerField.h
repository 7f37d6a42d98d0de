#pragma once

#include "model/Field.h"

#include <array>
#include <cstddef>

namespace tagmoor {

// One value for each field of the form, reached by the field itself: what the form's
// controls hold and show.
template <class T> class PerField {
public:
    T& operator[](Field field) { return m_values[std::size_t(field)]; }
    const T& operator[](Field field) const { return m_values[std::size_t(field)]; }

    void fill(const T& value) { m_values.fill(value); }

    auto begin() { return m_values.begin(); }
    auto end() { return m_values.end(); }
    auto begin() const { return m_values.begin(); }
    auto end() const { return m_values.end(); }

    bool operator==(const PerField&) const = default;

private:
    std::array<T, kFieldCount> m_values{};
};

} // namespace tagmoor
