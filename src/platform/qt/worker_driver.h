#pragma once

#include "platform/ado/driver.h"

namespace quillan {

/// Sessions of `open_driver` whose calls, opening and closing included, run on a worker thread. The
/// calling thread, that of the windows, waits; while a call or a series of calls takes long it
/// repaints the windows, which take no input (see `InputBlocker`).
ado::DriverFactory OnWorkerThread(ado::DriverFactory open_driver);

}  // namespace quillan
