#pragma once

#include <QExplicitlySharedDataPointer>
#include <QSharedData>

#include <optional>
#include <utility>

namespace tagmoor {

// A group of a record that may be absent, held apart from the record and shared between its
// copies: an absent group costs one pointer, and a copied record (the list, the model, a run's
// snapshot) shares its groups until one copy changes them. Reads like std::optional; a
// non-const access gives the copy a group of its own first.
template <typename T> class SharedGroup {
public:
    using value_type = T;

    SharedGroup() = default;
    SharedGroup(std::nullopt_t) {}
    SharedGroup(const T& value) : m_node(new Node{value}) {}
    SharedGroup(T&& value) : m_node(new Node{std::move(value)}) {}

    SharedGroup& operator=(std::nullopt_t) {
        reset();
        return *this;
    }
    SharedGroup& operator=(const T& value) {
        m_node = new Node{value};
        return *this;
    }
    SharedGroup& operator=(T&& value) {
        m_node = new Node{std::move(value)};
        return *this;
    }

    bool has_value() const { return bool(m_node); }
    explicit operator bool() const { return has_value(); }

    const T& operator*() const { return m_node->value; }
    T& operator*() { return own(); }
    const T* operator->() const { return &m_node->value; }
    T* operator->() { return &own(); }

    const T& value() const {
        if (!m_node)
            throw std::bad_optional_access();
        return m_node->value;
    }
    T& value() {
        if (!m_node)
            throw std::bad_optional_access();
        return own();
    }

    template <typename... Args> T& emplace(Args&&... args) {
        m_node = new Node{T(std::forward<Args>(args)...)};
        return m_node->value;
    }
    void reset() { m_node.reset(); }

    friend bool operator==(const SharedGroup& a, const SharedGroup& b) {
        if (a.m_node == b.m_node)
            return true;
        return a.m_node && b.m_node && a.m_node->value == b.m_node->value;
    }

private:
    struct Node : QSharedData {
        explicit Node(T v) : value(std::move(v)) {}
        T value;
    };

    T& own() {
        m_node.detach();
        return m_node->value;
    }

    QExplicitlySharedDataPointer<Node> m_node;
};

} // namespace tagmoor
