// Threads for the background.
#pragma once

#include <functional>
#include <thread>

namespace qx {

/// Starts a thread that no signal of the program interrupts: they are meant for the others.
std::thread quietThread(std::function<void()> work);

} // namespace qx
