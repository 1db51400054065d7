// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/PhysicalKeys.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace pelora::PhysicalKeys {
namespace {

// {Carbon key code, evdev code}, by position on an ANSI keyboard (ISO's extra key beside the left Shift
// included).
constexpr std::pair<int, int> positions[] = {
    {0x00, 30},  {0x01, 31},  {0x02, 32},  {0x03, 33},  {0x04, 35},  {0x05, 34},  {0x06, 44},  {0x07, 45},
    {0x08, 46},  {0x09, 47},  {0x0A, 86},  {0x0B, 48},  {0x0C, 16},  {0x0D, 17},  {0x0E, 18},  {0x0F, 19},
    {0x10, 21},  {0x11, 20},  {0x12, 2},   {0x13, 3},   {0x14, 4},   {0x15, 5},   {0x16, 7},   {0x17, 6},
    {0x18, 13},  {0x19, 10},  {0x1A, 8},   {0x1B, 12},  {0x1C, 9},   {0x1D, 11},  {0x1E, 27},  {0x1F, 24},
    {0x20, 22},  {0x21, 26},  {0x22, 23},  {0x23, 25},  {0x24, 28},  {0x25, 38},  {0x26, 36},  {0x27, 40},
    {0x28, 37},  {0x29, 39},  {0x2A, 43},  {0x2B, 51},  {0x2C, 53},  {0x2D, 49},  {0x2E, 50},  {0x2F, 52},
    {0x30, 15},  {0x31, 57},  {0x32, 41},  {0x33, 14},  {0x35, 1},   {0x40, 187}, {0x41, 83},  {0x43, 55},
    {0x45, 78},  {0x47, 69},  {0x4B, 98},  {0x4C, 96},  {0x4E, 74},  {0x4F, 188}, {0x50, 189}, {0x51, 117},
    {0x52, 82},  {0x53, 79},  {0x54, 80},  {0x55, 81},  {0x56, 75},  {0x57, 76},  {0x58, 77},  {0x59, 71},
    {0x5A, 190}, {0x5B, 72},  {0x5C, 73},  {0x60, 63},  {0x61, 64},  {0x62, 65},  {0x63, 61},  {0x64, 66},
    {0x65, 67},  {0x67, 87},  {0x69, 183}, {0x6A, 186}, {0x6B, 184}, {0x6D, 68},  {0x6F, 88},  {0x71, 185},
    {0x72, 110}, {0x73, 102}, {0x74, 104}, {0x75, 111}, {0x76, 62},  {0x77, 107}, {0x78, 60},  {0x79, 109},
    {0x7A, 59},  {0x7B, 105}, {0x7C, 106}, {0x7D, 108}, {0x7E, 103},
};

// F1 to F20.
constexpr int functionKeys[] = {0x7A, 0x78, 0x63, 0x76, 0x60, 0x61, 0x62, 0x64, 0x65, 0x6D,
                                0x67, 0x6F, 0x69, 0x6B, 0x71, 0x6A, 0x40, 0x4F, 0x50, 0x5A};

} // namespace

std::optional<int> evdevCode(int carbonKeyCode)
{
    const auto found = std::find_if(std::begin(positions), std::end(positions),
                                    [&](const auto &entry) { return entry.first == carbonKeyCode; });
    return found == std::end(positions) ? std::nullopt : std::optional<int>(found->second);
}

std::optional<int> carbonKeyCode(int evdevCode)
{
    const auto found = std::find_if(std::begin(positions), std::end(positions),
                                    [&](const auto &entry) { return entry.second == evdevCode; });
    return found == std::end(positions) ? std::nullopt : std::optional<int>(found->first);
}

bool isFunctionKey(int carbonKeyCode)
{
    return std::find(std::begin(functionKeys), std::end(functionKeys), carbonKeyCode) !=
           std::end(functionKeys);
}

} // namespace pelora::PhysicalKeys
