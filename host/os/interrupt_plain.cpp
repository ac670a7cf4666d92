// A system without Ctrl-C: who wants a run to end ends the program.

#include "host/os/interrupt.h"

namespace npar_host {

struct InterruptWatch::State {};

InterruptWatch::InterruptWatch() = default;
InterruptWatch::~InterruptWatch() = default;
bool InterruptWatch::Interrupted() const { return false; }

InterruptWatch::Cancelling::Cancelling(InterruptWatch& watch, std::function<void()>)
    : watch(watch) {}
InterruptWatch::Cancelling::~Cancelling() { static_cast<void>(watch); }

}  // namespace npar_host
