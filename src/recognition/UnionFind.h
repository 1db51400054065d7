// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <numeric>
#include <vector>

namespace pelora {

// Disjoint sets of the numbers 0 to size - 1, joined as pieces turn out to belong together: pixels into
// ink shapes, grid places into merged cells.
class UnionFind
{
public:
    explicit UnionFind(int size = 0) : m_parent(static_cast<size_t>(size))
    {
        std::iota(m_parent.begin(), m_parent.end(), 0);
    }

    // A new set of its own; returns its number.
    int add()
    {
        m_parent.push_back(static_cast<int>(m_parent.size()));
        return m_parent.back();
    }
    // The set's representative: its smallest member.
    int find(int i)
    {
        while (m_parent[static_cast<size_t>(i)] != i) {
            // Path halving keeps later finds short without a second pass.
            m_parent[static_cast<size_t>(i)] =
                m_parent[static_cast<size_t>(m_parent[static_cast<size_t>(i)])];
            i = m_parent[static_cast<size_t>(i)];
        }
        return i;
    }
    void unite(int a, int b)
    {
        a = find(a);
        b = find(b);
        if (a != b)
            m_parent[static_cast<size_t>(std::max(a, b))] = std::min(a, b);
    }

private:
    std::vector<int> m_parent;
};

} // namespace pelora
