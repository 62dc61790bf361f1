// The system's headers, in the one order and with the definitions that they need.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// clang-format off
#include <windows.h>
#include <ole2.h>
#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>
#include <dispex.h>
// clang-format on
