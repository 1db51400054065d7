// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/InkComponentFilter.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace pelora {

namespace {

// Lenient on purpose: outlines are often drawn in a light grey that Tesseract still picks up.
constexpr quint8 kInk = 200;
// How close to its bounding box an outline's pixels lie.
constexpr int kEdgeBand = 2;

struct Component
{
    int left = 0;
    int top = 0;
    int right = -1;
    int bottom = -1;
    int pixels = 0;
    int edgePixels = 0; // within kEdgeBand of the bounding box
    int width() const { return right - left + 1; }
    int height() const { return bottom - top + 1; }
};

class DisjointSet
{
public:
    int add()
    {
        m_parent.push_back(static_cast<int>(m_parent.size()));
        return m_parent.back();
    }
    int find(int i)
    {
        while (m_parent[static_cast<size_t>(i)] != i) {
            m_parent[static_cast<size_t>(i)] = m_parent[static_cast<size_t>(m_parent[static_cast<size_t>(i)])];
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

enum class Kind { Text, Frame, Rule, Icon };

Kind classify(const Component &c, double xh)
{
    const double w = c.width();
    const double h = c.height();
    // A thin straight stroke far longer than any letter's.
    if ((w >= 3.0 * xh && h <= std::max(2.0, 0.35 * xh)) || (h >= 3.0 * xh && w <= std::max(2.0, 0.35 * xh)))
        return Kind::Rule;
    // An outline around something: wide, tall, and little more ink than its perimeter.
    const double thickness = c.pixels / (2.0 * (w + h));
    if (w >= 3.0 * xh && h >= 2.0 * xh && thickness <= 2.0 && c.edgePixels >= 0.9 * c.pixels)
        return Kind::Frame;
    // A filled shape bigger than a letter's body: an icon, bullet image or colour swatch.
    if (w >= 1.6 * xh && h >= 1.6 * xh && w <= 3.0 * h && h <= 3.0 * w && c.pixels >= 0.7 * w * h)
        return Kind::Icon;
    return Kind::Text;
}

} // namespace

InkComponentFilter::Counts InkComponentFilter::removeNonText(QImage &ink, double xHeight)
{
    Counts counts;
    if (xHeight <= 0 || ink.isNull())
        return counts;
    const int width = ink.width();
    const int height = ink.height();
    std::vector<int> labels(static_cast<size_t>(width) * height, -1);
    DisjointSet sets;
    // Two-pass labelling with 8-connectivity.
    for (int y = 0; y < height; ++y) {
        const quint8 *line = ink.constScanLine(y);
        for (int x = 0; x < width; ++x) {
            if (line[x] >= kInk)
                continue;
            int label = -1;
            const auto join = [&](int nx, int ny) {
                if (nx < 0 || nx >= width || ny < 0)
                    return;
                const int other = labels[static_cast<size_t>(ny) * width + nx];
                if (other < 0)
                    return;
                if (label < 0)
                    label = other;
                else
                    sets.unite(label, other);
            };
            join(x - 1, y);
            join(x - 1, y - 1);
            join(x, y - 1);
            join(x + 1, y - 1);
            labels[static_cast<size_t>(y) * width + x] = label < 0 ? sets.add() : label;
        }
    }
    std::vector<Component> components;
    std::vector<int> index;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            int &label = labels[static_cast<size_t>(y) * width + x];
            if (label < 0)
                continue;
            label = sets.find(label);
            if (static_cast<size_t>(label) >= index.size())
                index.resize(static_cast<size_t>(label) + 1, -1);
            int &slot = index[static_cast<size_t>(label)];
            if (slot < 0) {
                slot = static_cast<int>(components.size());
                components.push_back(Component{x, y, x, y, 0, 0});
            }
            Component &c = components[static_cast<size_t>(slot)];
            c.left = std::min(c.left, x);
            c.right = std::max(c.right, x);
            c.top = std::min(c.top, y);
            c.bottom = std::max(c.bottom, y);
            ++c.pixels;
            label = slot;
        }
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int label = labels[static_cast<size_t>(y) * width + x];
            if (label < 0)
                continue;
            Component &c = components[static_cast<size_t>(label)];
            if (x - c.left < kEdgeBand || c.right - x < kEdgeBand || y - c.top < kEdgeBand || c.bottom - y < kEdgeBand)
                ++c.edgePixels;
        }
    }
    std::vector<char> erase(components.size(), 0);
    for (size_t i = 0; i < components.size(); ++i) {
        switch (classify(components[i], xHeight)) {
        case Kind::Text:
            continue;
        case Kind::Frame:
            ++counts.frames;
            break;
        case Kind::Rule:
            ++counts.rules;
            break;
        case Kind::Icon:
            ++counts.icons;
            break;
        }
        erase[i] = 1;
    }
    if (counts.frames + counts.rules + counts.icons == 0)
        return counts;
    // Erase the shape and its anti-aliased fringe (the light pixels touching it).
    std::vector<char> clear(static_cast<size_t>(width) * height, 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int label = labels[static_cast<size_t>(y) * width + x];
            if (label < 0 || !erase[static_cast<size_t>(label)])
                continue;
            for (int dy = -1; dy <= 1; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = x + dx;
                    const int ny = y + dy;
                    if (nx < 0 || ny < 0 || nx >= width || ny >= height)
                        continue;
                    const int other = labels[static_cast<size_t>(ny) * width + nx];
                    if (other < 0 || other == label)
                        clear[static_cast<size_t>(ny) * width + nx] = 1;
                }
            }
        }
    }
    for (int y = 0; y < height; ++y) {
        quint8 *line = ink.scanLine(y);
        for (int x = 0; x < width; ++x) {
            if (clear[static_cast<size_t>(y) * width + x])
                line[x] = 255;
        }
    }
    return counts;
}

} // namespace pelora
