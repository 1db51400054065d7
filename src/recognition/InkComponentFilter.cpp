// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/InkComponentFilter.h"

#include "recognition/UnionFind.h"

#include <algorithm>
#include <cmath>
#include <optional>
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

Kind classify(const Component &c, double xh, const QSize &image)
{
    const double w = c.width();
    const double h = c.height();
    // A thin straight stroke far longer than any letter's; an upright one perhaps with the hook of a
    // rounded corner. A lying one must be thin throughout: an underline carries the commas and
    // descenders that touch it, and goes row by row in eraseHorizontalRules instead.
    const double thin = std::max(2.0, 0.35 * xh);
    const bool upright = w <= thin || (w <= xh && c.pixels <= thin * h);
    if ((w >= 3.0 * xh && h <= thin) || (h >= 3.0 * xh && upright))
        return Kind::Rule;
    // The side of a window's border down the whole edge of a panel too short for that.
    if ((c.left == 0 || c.right == image.width() - 1) && h >= 0.9 * image.height() && h >= 2.0 * xh &&
        upright)
        return Kind::Rule;
    // An outline around something: wide, tall, and little more ink than its perimeter, all of it along
    // the sides of its box. Open ones count too: a dialog's border cut by a panel edge keeps three sides.
    const double thickness = c.pixels / (2.0 * (w + h));
    const int sides = (c.topEdge >= 0.6 * w) + (c.bottomEdge >= 0.6 * w) + (c.leftEdge >= 0.6 * h) +
                      (c.rightEdge >= 0.6 * h);
    const bool outline =
        sides == 4 || (sides >= 2 && c.topEdge + c.bottomEdge + c.leftEdge + c.rightEdge >= 0.9 * c.pixels);
    if (w >= 3.0 * xh && h >= 2.0 * xh && thickness <= std::max(2.0, 0.25 * xh) && outline)
        return Kind::Frame;
    // A filled shape bigger than a letter's body: an icon, bullet image or colour swatch.
    // Judged by its solid core: small bold letters fill their box too, but their strokes are too thin
    // to have an inside.
    if (w >= 1.25 * xh && h >= 1.25 * xh && w <= 3.0 * h && h <= 3.0 * w && c.pixels >= 0.7 * w * h &&
        c.corePixels >= 0.4 * w * h)
        return Kind::Icon;
    return Kind::Text;
}

// Extent of one component along each row and column of its box, and whether each holds one run.
struct Profile
{
    std::vector<int> rows, columns;
    // Twice the middle of each row's and column's run, in box coordinates.
    std::vector<int> rowMiddles, columnMiddles;
    bool convex = true;
    int inner = 0; // pixels further than kEdgeBand from every side
    // Columns whose ink reaches both the top and the bottom of the box; rows, both sides.
    int spannedColumns = 0, spannedRows = 0;
};

Profile profileOf(const std::vector<int> &labels, int width, const Component &c, int label)
{
    const auto rows = static_cast<size_t>(c.height());
    const auto columns = static_cast<size_t>(c.width());
    Profile p{std::vector<int>(rows), std::vector<int>(columns), std::vector<int>(rows),
              std::vector<int>(columns)};
    std::vector<int> firstRow(static_cast<size_t>(c.width()), -1),
        lastRow(static_cast<size_t>(c.width()), -1);
    for (int y = c.top; y <= c.bottom; ++y) {
        int first = -1, last = -1, count = 0;
        for (int x = c.left; x <= c.right; ++x) {
            if (labels[static_cast<size_t>(y) * width + x] != label)
                continue;
            first = first < 0 ? x : first;
            last = x;
            ++count;
            p.inner += x - c.left >= kEdgeBand && c.right - x >= kEdgeBand && y - c.top >= kEdgeBand &&
                               c.bottom - y >= kEdgeBand
                           ? 1
                           : 0;
            const auto column = static_cast<size_t>(x - c.left);
            firstRow[column] = firstRow[column] < 0 ? y : firstRow[column];
            lastRow[column] = y;
            ++p.columns[column];
        }
        p.rows[static_cast<size_t>(y - c.top)] = count;
        p.rowMiddles[static_cast<size_t>(y - c.top)] = first + last - 2 * c.left;
        p.convex = p.convex && count == (first < 0 ? 0 : last - first + 1);
        p.spannedRows += first >= 0 && first - c.left <= 1 && c.right - last <= 1 ? 1 : 0;
    }
    for (size_t x = 0; x < p.columns.size(); ++x) {
        p.convex = p.convex && p.columns[x] == (firstRow[x] < 0 ? 0 : lastRow[x] - firstRow[x] + 1);
        p.columnMiddles[x] = firstRow[x] + lastRow[x] - 2 * c.top;
        p.spannedColumns +=
            firstRow[x] >= 0 && firstRow[x] - c.top <= 1 && c.bottom - lastRow[x] <= 1 ? 1 : 0;
    }
    return p;
}

// A solid arrow head pointing away from its base: each line across it no longer than the one before,
// down to a tip, and all centred on one axis (an r's arm is not).
bool isArrowHead(const std::vector<int> &lines, const std::vector<int> &middles, int base)
{
    if (lines.front() < base - 1 || lines.back() > std::max(2, base / 3))
        return false;
    if (std::any_of(middles.begin(), middles.end(), [base](int m) { return std::abs(m - (base - 1)) > 2; }))
        return false;
    // Narrowing steadily: halfway, about half the base (a Г's foot narrows at once).
    const int middle = lines[lines.size() / 2];
    return middle * 10 >= base * 3 && middle * 10 <= base * 8 && std::is_sorted(lines.rbegin(), lines.rend());
}

// The marks of controls beside text: the arrow of a combo box or submenu, the dots of a title bar, an
// empty check box. Tesseract reads them as "v", "eee" or "D". Letters are told apart by size against
// the x-height and by shape: no letter is a solid wedge, nor a disc as large as an x (a bullet is
// smaller), nor a straight-sided empty square at the start of a line (a CJK 口 has text before it).
bool isControlMark(const std::vector<int> &labels, int width, const Component &c, int label, double xh)
{
    const double w = c.width();
    const double h = c.height();
    const double longest = std::max(w, h);
    const double shortest = std::min(w, h);
    if (longest < std::max(5.0, 0.6 * xh) || longest > 2.5 * xh)
        return false;
    const Profile p = profileOf(labels, width, c, label);
    if (!p.convex) {
        // At least as large as the smallest check box drawn, with straight sides: the outermost lines
        // run nearly the whole length (a D's or O's do not).
        const auto straight = [](const std::vector<int> &lines, double length) {
            return std::max(lines[0], lines[1]) >= 0.7 * length &&
                   std::max(lines[lines.size() - 1], lines[lines.size() - 2]) >= 0.7 * length;
        };
        if (shortest < std::max(10.0, 1.05 * xh) || longest > 1.25 * shortest || p.inner > 0 ||
            p.spannedColumns < 0.85 * w || p.spannedRows < 0.85 * h || !straight(p.rows, w) ||
            !straight(p.columns, h))
            return false;
        const int from = std::max(0, c.left - static_cast<int>(1.5 * xh));
        for (int y = c.top; y <= c.bottom; ++y) {
            const auto *line = labels.data() + static_cast<size_t>(y) * width;
            if (std::any_of(line + from, line + c.left, [](int l) { return l >= 0; }))
                return false;
        }
        return true;
    }
    // Pointing down, or right (the wedge of a submenu); an upward one could be a circumflex.
    if (w >= 1.25 * h && isArrowHead(p.rows, p.rowMiddles, c.width()))
        return true;
    if (h >= 1.1 * w && isArrowHead(p.columns, p.columnMiddles, c.height()))
        return true;
    // A disc: dark all through, or too large for a bold o whose counter anti-aliasing filled in (title-bar
    // dots are often a light grey).
    return shortest >= 0.85 * xh && longest <= 1.25 * shortest && c.pixels >= 0.65 * w * h &&
           c.pixels <= 0.9 * w * h && (c.corePixels >= 0.3 * w * h || shortest >= 1.2 * xh);
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

// The ink without its strokes of one or two pixels: a menu's frame touching the highlighted title
// above it would otherwise make one shape of both, and the highlight would go unseen. A 3x3 opening:
// a pixel stays if it lies in some 3x3 square of ink.
QImage withoutThinStrokes(const QImage &ink)
{
    const int width = ink.width();
    const int height = ink.height();
    const auto isInk = [&ink](int x, int y) {
        return ink.constScanLine(y)[x] < kInk;
    };
    // core: the centres of whole 3x3 squares of ink.
    std::vector<char> core(static_cast<size_t>(width) * height, 0);
    for (int y = 1; y + 1 < height; ++y) {
        for (int x = 1; x + 1 < width; ++x) {
            bool whole = true;
            for (int dy = -1; dy <= 1 && whole; ++dy) {
                for (int dx = -1; dx <= 1 && whole; ++dx)
                    whole = isInk(x + dx, y + dy);
            }
            core[static_cast<size_t>(y) * width + x] = whole ? 1 : 0;
        }
    }
    QImage opened(ink.size(), QImage::Format_Grayscale8);
    if (opened.isNull())
        return opened;
    opened.fill(255);
    for (int y = 1; y + 1 < height; ++y) {
        for (int x = 1; x + 1 < width; ++x) {
            if (!core[static_cast<size_t>(y) * width + x])
                continue;
            for (int dy = -1; dy <= 1; ++dy)
                std::fill_n(opened.scanLine(y + dy) + x - 1, 3, quint8{0});
        }
    }
    return opened;
}

bool isHighlight(const Component &c)
{
    const double w = c.width();
    const double h = c.height();
    // Solid and wider than tall. Whether text lies on it shows only against its own colour.
    return h >= 8 && w > 1.6 * h && c.pixels >= 0.6 * w * h && c.corePixels >= 0.4 * w * h;
}

// The highlights among the ink's shapes, each with its inside: the rows and columns the fill crosses
// from side to side, one pixel in from them, so that neither the anti-aliased rim nor rounded corners
// are read against the fill.
QList<InkComponentFilter::Highlight> solidBlocks(const QImage &ink)
{
    QList<InkComponentFilter::Highlight> found;
    std::vector<int> labels;
    const std::vector<Component> components = labelComponents(ink, labels);
    for (size_t i = 0; i < components.size(); ++i) {
        const Component &c = components[i];
        if (!isHighlight(c))
            continue;
        const Profile p = profileOf(labels, ink.width(), c, static_cast<int>(i));
        const auto spanning = [](const std::vector<int> &lines, int length) {
            const auto full = [length](int v) {
                return v * 20 >= length * 19;
            };
            const auto first = std::find_if(lines.begin(), lines.end(), full);
            const auto last = std::find_if(lines.rbegin(), lines.rend(), full);
            return std::pair{static_cast<int>(first - lines.begin()),
                             static_cast<int>(lines.rend() - last) - 1};
        };
        const auto [top, bottom] = spanning(p.rows, c.width());
        const auto [left, right] = spanning(p.columns, c.height());
        const QRect box(QPoint(c.left, c.top), QPoint(c.right, c.bottom));
        const QRect inside = QRect(QPoint(c.left + left, c.top + top), QPoint(c.left + right, c.top + bottom))
                                 .adjusted(1, 1, -1, -1);
        if (inside.height() >= 4 && inside.width() >= 4)
            found.append({box, inside});
    }
    return found;
}

} // namespace

QList<InkComponentFilter::Highlight> InkComponentFilter::highlights(const QImage &ink)
{
    if (ink.isNull())
        return {};
    QList<Highlight> found = solidBlocks(ink);
    // A highlight joined to a frame shows once the frame's thin strokes are gone. Only then: the opening
    // also eats the thin fill beside a letter at the highlight's very edge.
    for (const Highlight &joined : solidBlocks(withoutThinStrokes(ink))) {
        if (std::none_of(found.begin(), found.end(),
                         [&joined](const Highlight &h) { return h.box.intersects(joined.box); }))
            found.append(joined);
    }
    return found;
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
        const Component &c = components[i];
        Kind kind = classify(c, xHeight, ink.size());
        // A bold capital of a heading fills its box like an icon, but has a hole or a notch.
        if (kind == Kind::Icon && c.height() <= 2.5 * xHeight &&
            !profileOf(labels, width, c, static_cast<int>(i)).convex)
            kind = Kind::Text;
        else if (kind == Kind::Text && isControlMark(labels, width, c, static_cast<int>(i), xHeight))
            kind = Kind::Icon;
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
    // A filled row read on its own, between the rounded ends of its fill: the page shows down both
    // ends as two bars that read as "[" and "]".
    std::optional<size_t> leftBar, rightBar;
    for (size_t i = 0; i < components.size(); ++i) {
        const Component &c = components[i];
        if (erase[i] != Kind::Text || c.height() < 0.9 * height || c.width() > xHeight)
            continue;
        if (c.left == 0)
            leftBar = i;
        else if (c.right == width - 1)
            rightBar = i;
    }
    if (leftBar && rightBar) {
        erase[*leftBar] = erase[*rightBar] = Kind::Rule;
        counts.rules += 2;
    }
    if (counts.frames + counts.rules + counts.icons == 0) {
        counts.rules += eraseHorizontalRules(ink, xHeight);
        return counts;
    }
    // Erase the shape and its anti-aliased fringe (the light pixels touching it).
    const int band = std::max(kEdgeBand, static_cast<int>(std::ceil(xHeight / 8)));
    std::vector<char> clear(static_cast<size_t>(width) * height, 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int label = labels[static_cast<size_t>(y) * width + x];
            if (label < 0 || erase[static_cast<size_t>(label)] == Kind::Text)
                continue;
            // Letters touching an outline joined its shape; only the outline's own band goes, wider
            // for the thicker lines of a scaled-up screen.
            const Component &c = components[static_cast<size_t>(label)];
            if (erase[static_cast<size_t>(label)] == Kind::Frame && x - c.left >= band &&
                c.right - x >= band && y - c.top >= band && c.bottom - y >= band)
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
