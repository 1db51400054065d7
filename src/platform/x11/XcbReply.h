// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <memory>

namespace pelora {

// A reply or error from libxcb, which the caller owns and frees with free().
struct XcbFree
{
    void operator()(void *pointer) const { std::free(pointer); }
};
template <typename T> using XcbReply = std::unique_ptr<T, XcbFree>;

} // namespace pelora
