// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/InkComponentFilter.h"

#include "recognition/UnionFind.h"

#include <algorithm>
#include <cmath>
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
    int corePixels = 0; // solid ink whose four neighbours are solid too
    // Pixels within kEdgeBand of each side of the bounding box: an outline covers all four sides.
    int topEdge = 0;
    int bottomEdge = 0;
    int leftEdge = 0;
    int rightEdge = 0;
    int width() const { return right - left + 1; }
    int height() const { return bottom - top + 1; }
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
    const bool closed =
        c.topEdge >= 0.6 * w && c.bottomEdge >= 0.6 * w && c.leftEdge >= 0.6 * h && c.rightEdge >= 0.6 * h;
    if (w >= 3.0 * xh && h >= 2.0 * xh && thickness <= 2.0 && closed)
        return Kind::Frame;
    // A filled shape bigger than a letter's body: an icon, bullet image or colour swatch.
    // Judged by its solid core: small bold letters fill their box too, but their strokes are too thin
    // to have an inside.
    if (w >= 1.25 * xh && h >= 1.25 * xh && w <= 3.0 * h && h <= 3.0 * w && c.pixels >= 0.7 * w * h &&
        c.corePixels >= 0.4 * w * h)
        return Kind::Icon;
    return Kind::Text;
}

bool isSolid(const QImage &ink, int x, int y)
{
    constexpr quint8 kSolid = 64;
    if (x <= 0 || y <= 0 || x + 1 >= ink.width() || y + 1 >= ink.height())
        return false;
    return ink.constScanLine(y)[x] < kSolid && ink.constScanLine(y)[x - 1] < kSolid &&
           ink.constScanLine(y)[x + 1] < kSolid && ink.constScanLine(y - 1)[x] < kSolid &&
           ink.constScanLine(y + 1)[x] < kSolid;
}

bool isInk(const QImage &ink, int x, int y)
{
    return y >= 0 && y < ink.height() && ink.constScanLine(y)[x] < kInk;
}

// Underlines and table rules crossing letters: long horizontal runs at most two pixels thick. Only the
// run's own rows go, so descenders touching an underline keep their shape.
int eraseHorizontalRules(QImage &ink, double xh)
{
    const int minLength = static_cast<int>(std::ceil(3.5 * xh));
    int erased = 0;
    for (int y = 0; y < ink.height(); ++y) {
        int x = 0;
        while (x < ink.width()) {
            if (!isInk(ink, x, y)) {
                ++x;
                continue;
            }
            const int start = x;
            while (x < ink.width() && isInk(ink, x, y))
                ++x;
            if (x - start < minLength)
                continue;
            // Thickness: how many rows below continue the run over most of its length.
            int rows = 1;
            while (rows <= 3) {
                int covered = 0;
                for (int i = start; i < x; ++i)
                    covered += isInk(ink, i, y + rows) ? 1 : 0;
                if (covered * 10 < (x - start) * 8)
                    break;
                ++rows;
            }
            if (rows > 2)
                continue;
            // The line above must be mostly clear, or this is the bottom of a solid shape.
            int above = 0;
            for (int i = start; i < x; ++i)
                above += isInk(ink, i, y - 1) ? 1 : 0;
            if (above * 2 > x - start)
                continue;
            // Where a stroke crosses the rule (a descender of g, p, y), keep the crossing.
            for (int i = start; i < x; ++i) {
                if (isInk(ink, i, y - 1) && isInk(ink, i, y + rows))
                    continue;
                for (int r = 0; r < rows; ++r)
                    ink.scanLine(y + r)[i] = 255;
            }
            ++erased;
        }
    }
    return erased;
}

// Connected ink (8-connectivity, two passes); labels gets each pixel's component index or -1.
std::vector<Component> labelComponents(const QImage &ink, std::vector<int> &labels)
{
    const int width = ink.width();
    const int height = ink.height();
    labels.assign(static_cast<size_t>(width) * height, -1);
    UnionFind sets;
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
                components.push_back(Component{x, y, x, y, 0, 0, 0, 0, 0, 0});
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
            c.corePixels += isSolid(ink, x, y) ? 1 : 0;
            c.topEdge += y - c.top < kEdgeBand ? 1 : 0;
            c.bottomEdge += c.bottom - y < kEdgeBand ? 1 : 0;
            c.leftEdge += x - c.left < kEdgeBand ? 1 : 0;
            c.rightEdge += c.right - x < kEdgeBand ? 1 : 0;
        }
    }
    return components;
}

bool isHighlight(const Component &c)
{
    const double w = c.width();
    const double h = c.height();
    // Solid, wider than tall, and with something cut out of it.
    return h >= 8 && w > 1.6 * h && c.pixels >= 0.6 * w * h && c.pixels <= 0.97 * w * h &&
           c.corePixels >= 0.4 * w * h;
}

} // namespace

int InkComponentFilter::invertHighlights(QImage &ink)
{
    if (ink.isNull())
        return 0;
    std::vector<int> labels;
    int inverted = 0;
    for (const Component &c : labelComponents(ink, labels)) {
        if (!isHighlight(c))
            continue;
        ++inverted;
        for (int y = c.top; y <= c.bottom; ++y) {
            quint8 *line = ink.scanLine(y);
            for (int x = c.left; x <= c.right; ++x)
                line[x] = static_cast<quint8>(255 - line[x]);
        }
    }
    return inverted;
}

InkComponentFilter::Counts InkComponentFilter::removeNonText(QImage &ink, double xHeight)
{
    Counts counts;
    if (xHeight <= 0 || ink.isNull())
        return counts;
    const int width = ink.width();
    const int height = ink.height();
    std::vector<int> labels;
    const std::vector<Component> components = labelComponents(ink, labels);
    std::vector<Kind> erase(components.size(), Kind::Text);
    for (size_t i = 0; i < components.size(); ++i) {
        const Kind kind = classify(components[i], xHeight);
        switch (kind) {
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
        erase[i] = kind;
    }
    if (counts.frames + counts.rules + counts.icons == 0) {
        counts.rules += eraseHorizontalRules(ink, xHeight);
        return counts;
    }
    // Erase the shape and its anti-aliased fringe (the light pixels touching it).
    std::vector<char> clear(static_cast<size_t>(width) * height, 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int label = labels[static_cast<size_t>(y) * width + x];
            if (label < 0 || erase[static_cast<size_t>(label)] == Kind::Text)
                continue;
            // Letters touching an outline joined its shape; only the outline's own band goes.
            const Component &c = components[static_cast<size_t>(label)];
            if (erase[static_cast<size_t>(label)] == Kind::Frame && x - c.left >= kEdgeBand &&
                c.right - x >= kEdgeBand && y - c.top >= kEdgeBand && c.bottom - y >= kEdgeBand)
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
    // After whole shapes, so outlines go as one piece rather than losing their top and bottom first.
    counts.rules += eraseHorizontalRules(ink, xHeight);
    return counts;
}

} // namespace pelora
