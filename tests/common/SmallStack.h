#pragma once

#include <functional>

namespace Brennvik::Test {

/// Runs \a work to its end on a thread with a stack of 256 KiB. A walk that
/// recursed once per level of a tree overflows it within a few thousand
/// levels, so that a test can prove a walk safe for a million levels with a
/// tree short enough for CI. Check the results on the calling thread.
void runOnSmallStack(const std::function<void()>& work);

} // namespace Brennvik::Test
